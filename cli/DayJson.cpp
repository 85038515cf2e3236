#include "DayJson.h"

#include "Calendars.h"
#include "OrvelFormat.h"
#include "TimeZone.h"

#include <cmath>
#include <string>

namespace orvel::cli {

nlohmann::ordered_json dayJson(const DayTimes &day, const TimeZone &zone)
{
    const HijriDate hijri = day.hijriOrApproximate();
    auto times = nlohmann::ordered_json::array();
    auto unix = nlohmann::ordered_json::array();
    auto clock = nlohmann::ordered_json::array();
    auto estimated = nlohmann::ordered_json::array();
    for (const Prayer::Value prayer : Prayer::all) {
        const std::string name(Prayer(prayer).id());
        const Instant instant = day[prayer];
        times.push_back(Calendars::iso8601(instant, zone));
        unix.push_back(static_cast<int64_t>(std::llround(instant.unixSeconds())));
        clock.push_back(OrvelFormat::time(instant, zone));
        if (day.isEstimated(prayer))
            estimated.push_back(name);
    }
    return {
        {"date", day.day.description()},
        {"hijri", {{"day", hijri.day}, {"month", hijri.month}, {"year", hijri.year}}},
        {"hijriText", std::to_string(hijri.day) + " " + std::string(hijri.monthName()) + " " + std::to_string(hijri.year)},
        {"times", std::move(times)},
        {"unix", std::move(unix)},
        {"clock", std::move(clock)},
        {"estimated", std::move(estimated)},
    };
}

} // namespace orvel::cli
