#include "QuietHours.h"

#include "Calendars.h"

#include <nlohmann/json.hpp>

namespace orvel {

bool QuietHours::contains(Instant instant, const TimeZone &zone) const
{
    if (!enabled || start == end)
        return false;
    const CivilTime time = Calendars::civil(instant, zone);
    const int64_t minute = time.hour * 60 + time.minute;
    if (start < end)
        return start <= minute && minute < end;
    return minute >= start || minute < end;
}

void to_json(nlohmann::json &json, const QuietHours &hours)
{
    json = {{"enabled", hours.enabled}, {"start", hours.start}, {"end", hours.end}};
}

void from_json(const nlohmann::json &json, QuietHours &hours)
{
    hours.enabled = json.at("enabled").get<bool>();
    hours.start = json.at("start").get<int64_t>();
    hours.end = json.at("end").get<int64_t>();
}

} // namespace orvel
