#include "HijriDate.h"

#include "Calendars.h"
#include "DayKey.h"
#include "JsonValues.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace orvel {

HijriDate HijriDate::approximate(const DayKey &day)
{
    const CalendarDate date = Calendars::ummAlQura(day.start(TimeZone::utc()) + 43200);
    return {date.day, date.month, date.year};
}

bool HijriDate::isValid() const
{
    return day >= 1 && day <= 30 && month >= 1 && month <= 12 && year >= 1 && year <= 9999;
}

std::string_view HijriDate::monthName() const
{
    // Clamped before subtracting: an extreme month must not overflow.
    return monthNames[static_cast<size_t>(std::clamp<int64_t>(month, 1, 12) - 1)];
}

std::string HijriDate::formatted() const
{
    return std::to_string(day) + " " + std::string(monthName()) + " " + std::to_string(year);
}

void to_json(nlohmann::json &json, const HijriDate &date)
{
    json = {{"day", date.day}, {"month", date.month}, {"year", date.year}};
}

void from_json(const nlohmann::json &json, HijriDate &date)
{
    date.day = JsonValues::integer(json, "day");
    date.month = JsonValues::integer(json, "month");
    date.year = JsonValues::integer(json, "year");
    if (!date.isValid())
        throw nlohmann::json::other_error::create(501, "Hijri date out of range", &json);
}

} // namespace orvel
