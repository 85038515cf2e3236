#include "QuietHours.h"

#include "Calendars.h"
#include "JsonValues.h"

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
    hours.start = JsonValues::integer(json, "start");
    hours.end = JsonValues::integer(json, "end");
}

} // namespace orvel
