#pragma once

#include "DayKey.h"
#include "DaySource.h"
#include "StatusCommand.h"
#include "StatusText.h"

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace orvel::cli {

// `orvel-cli status --follow`: writes the status again each time what it shows changes, and
// never twice the same. The moments come from outside: the seconds of the command's own clock, or
// the signals of a running Orvel.
class StatusFollower {
public:
    StatusFollower(StatusCommand::Request request, DaySource source, std::ostream &out);

    // What a running Orvel says now; none when no Orvel runs, and the command's own words count.
    void setOrvelWords(const std::optional<StatusLine> &words);
    bool followsOrvel() const { return words_.has_value(); }
    // Writes the status of the minute of `now` unless it is what was written last.
    void show(Instant now);

private:
    StatusCommand::Request request_;
    DaySource source_;
    std::ostream &out_;
    std::optional<StatusLine> words_;
    std::vector<DayKey> loadedDays_;
    DaysAnswer answer_;
    std::string written_;
};

} // namespace orvel::cli
