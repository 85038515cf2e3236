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

std::string_view HijriDate::monthName() const
{
    return monthNames[static_cast<size_t>(std::clamp<int64_t>(month - 1, 0, 11))];
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
}

} // namespace orvel
