#include "DayKey.h"

#include "Calendars.h"
#include "JsonValues.h"

#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace orvel {

DayKey DayKey::from(Instant instant, const TimeZone &zone)
{
    const CivilTime time = Calendars::civil(instant, zone);
    return {time.year, time.month, time.day};
}

Instant DayKey::start(const TimeZone &zone) const
{
    return Calendars::startOfDay(year, month, day, zone);
}

Instant DayKey::at(int64_t minutes, const TimeZone &zone) const
{
    return Calendars::wallClock({year, month, day, 0, minutes, 0}, zone);
}

DayKey DayKey::adding(int64_t days) const
{
    const CalendarDate date = Calendars::civilFromDays(Calendars::daysFromCivil(year, month, day) + days);
    return {date.year, date.month, date.day};
}

std::string DayKey::description() const
{
    char text[48];
    std::snprintf(text, sizeof text, "%04lld-%02lld-%02lld", static_cast<long long>(year),
                  static_cast<long long>(month), static_cast<long long>(day));
    return text;
}

void to_json(nlohmann::json &json, const DayKey &day)
{
    json = {{"year", day.year}, {"month", day.month}, {"day", day.day}};
}

bool DayKey::isValid() const
{
    return year >= 1 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 && day <= Calendars::daysInMonth(year, month);
}

void from_json(const nlohmann::json &json, DayKey &day)
{
    day.year = JsonValues::integer(json, "year");
    day.month = JsonValues::integer(json, "month");
    day.day = JsonValues::integer(json, "day");
    if (!day.isValid())
        throw nlohmann::json::other_error::create(501, "no such date", &json);
}

int64_t DayKey::weekday() const
{
    // 1970-01-01 was a Thursday.
    const int64_t days = Calendars::daysFromCivil(year, month, day);
    return ((days + 4) % 7 + 7) % 7;
}

double DayKey::julianDay() const
{
    // Meeus, Astronomical Algorithms, 7.1: January and February count as months 13 and 14 of the
    // year before.
    auto y = static_cast<double>(year);
    auto m = static_cast<double>(month);
    if (month < 3) {
        y -= 1;
        m += 12;
    }
    const double a = std::floor(y / 100);
    const double b = 2 - a + std::floor(a * 0.25);
    return b + std::floor((y + 4716) * 365.25) + std::floor((m + 1) * 30.6001) + static_cast<double>(day) - 1524.5;
}

} // namespace orvel
