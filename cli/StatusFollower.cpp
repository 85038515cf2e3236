#include "StatusFollower.h"

#include <ostream>

namespace orvel::cli {

StatusFollower::StatusFollower(StatusCommand::Request request, DaySource source, std::ostream &out)
    : request_(std::move(request))
    , source_(std::move(source))
    , out_(out)
{
}

void StatusFollower::setOrvelWords(const std::optional<StatusLine> &words)
{
    words_ = words;
}

void StatusFollower::show(Instant now)
{
    StatusCommand::Request request = request_;
    request.now = now.floorToMinute();
    // Today and tomorrow are asked for again only when the day changes.
    const std::vector<DayKey> days = StatusCommand::days(request);
    if (days != loadedDays_) {
        answer_ = source_(days, request.location, request.method, request.times);
        loadedDays_ = days;
    }
    StatusCommand::Moment moment = StatusCommand::moment(request, answer_);
    // An Orvel that has nothing loaded yet says nothing worth showing.
    if (words_ && !words_->text.empty())
        moment = StatusCommand::withWords(std::move(moment), *words_);
    std::string text = StatusCommand::output(request, moment);
    if (text == written_)
        return;
    written_ = std::move(text);
    out_ << written_ << std::flush;
}

} // namespace orvel::cli
