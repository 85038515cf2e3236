#pragma once

#include "Instant.h"
#include "MonthKey.h"

#include <compare>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace orvel {

class TimeZone;

// A calendar day, independent of any zone. Day arithmetic runs in UTC so that no
// daylight-saving change can shift it.
struct DayKey {
    int64_t year = 0;
    int64_t month = 1;
    int64_t day = 1;

    // A real date of the years 1–9999, which calendar arithmetic can take.
    bool isValid() const;

    // The Gregorian day on which the instant falls in the zone.
    static DayKey from(Instant instant, const TimeZone &zone);

    // 00:00 of the day in the zone.
    Instant start(const TimeZone &zone) const;
    // The wall clock `minutes` after 00:00 of the day in the zone (see Calendars::wallClock).
    Instant at(int64_t minutes, const TimeZone &zone) const;
    DayKey adding(int64_t days) const;
    MonthKey monthKey() const { return {year, month}; }
    std::string description() const; // "2025-03-07"
    // The Julian day number at 0h UT of the date (2024-02-29: 2460369.5).
    double julianDay() const;
    // The day of the week, 0 for Sunday to 6 for Saturday.
    int64_t weekday() const;
    bool isFriday() const { return weekday() == 5; }

    auto operator<=>(const DayKey &) const = default;
};

void to_json(nlohmann::json &json, const DayKey &day);
void from_json(const nlohmann::json &json, DayKey &day);

} // namespace orvel

template<>
struct std::hash<orvel::DayKey> {
    size_t operator()(const orvel::DayKey &key) const noexcept
    {
        return std::hash<int64_t>()((key.year * 16 + key.month) * 32 + key.day);
    }
};
