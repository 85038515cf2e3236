#include "Kerahat.h"

#include <algorithm>

namespace orvel {

namespace {

struct KindTexts {
    std::string_view title;
    std::string_view explanation;
};

constexpr std::array<KindTexts, 3> texts{{
    {"Kerahat", "Güneş doğuşu sonrası"},
    {"Kerahat (istiva)", "Güneş tepedeyken"},
    {"Kerahat", "Güneş batmadan önce"},
}};

} // namespace

std::string_view KerahatKind::title() const { return texts[value_].title; }
std::string_view KerahatKind::explanation() const { return texts[value_].explanation; }

namespace Kerahat {

std::vector<KerahatInterval> intervals(const DayTimes &day, int64_t sunMinutes, int64_t istivaMinutes)
{
    const double sun = static_cast<double>(sunMinutes) * 60;
    const double istiva = static_cast<double>(istivaMinutes) * 60;
    KerahatInterval rising{KerahatKind::sunrise, day[Prayer::gunes], day[Prayer::gunes] + sun};
    KerahatInterval noon{KerahatKind::istiva, day[Prayer::ogle] - istiva, day[Prayer::ogle]};
    KerahatInterval setting{KerahatKind::sunset, day[Prayer::aksam] - sun, day[Prayer::aksam]};
    // Where the day is short (far north) the three would overlap: each gives way to the next, so
    // that they stay apart and in order, and one squeezed to nothing is left out.
    noon.start = std::max(noon.start, rising.start);
    rising.end = std::min(rising.end, noon.start);
    setting.start = std::max(setting.start, noon.end);
    std::vector<KerahatInterval> result;
    for (const KerahatInterval &interval : {rising, noon, setting}) {
        if (interval.start < interval.end)
            result.push_back(interval);
    }
    return result;
}

std::optional<KerahatInterval> active(Instant at, const std::vector<KerahatInterval> &intervals)
{
    for (const KerahatInterval &interval : intervals) {
        if (interval.contains(at))
            return interval;
    }
    return std::nullopt;
}

std::optional<KerahatInterval> next(Instant after, const std::vector<KerahatInterval> &intervals)
{
    std::optional<KerahatInterval> earliest;
    for (const KerahatInterval &interval : intervals) {
        // Strictly earlier only, so that of two equal starts the first in the list stays.
        if (interval.start > after && (!earliest || interval.start < earliest->start))
            earliest = interval;
    }
    return earliest;
}

} // namespace Kerahat

} // namespace orvel
