#pragma once

#include "Instant.h"
#include "TimeZone.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orvel {

// A wall-clock reading in some zone.
struct CivilTime {
    int64_t year = 0;
    int64_t month = 1;
    int64_t day = 1;
    int64_t hour = 0;
    int64_t minute = 0;
    int64_t second = 0;

    auto operator<=>(const CivilTime &) const = default;
};

struct CalendarDate {
    int64_t year = 0;
    int64_t month = 1;
    int64_t day = 1;

    auto operator<=>(const CalendarDate &) const = default;
};

// Calendar arithmetic: the proleptic Gregorian calendar, and the Umm al-Qura calendar through ICU.
namespace Calendars {

// Days since 1970-01-01 of a proleptic Gregorian date, and back.
int64_t daysFromCivil(int64_t year, int64_t month, int64_t day);
CalendarDate civilFromDays(int64_t days);
int daysInMonth(int64_t year, int64_t month);

// The Gregorian wall-clock reading of the instant in the zone.
CivilTime civil(Instant instant, const TimeZone &zone);
// The instant of a wall-clock reading in the zone. Fields may run over (minute 1500 is 01:00 of
// the next day). A reading skipped by a clock change moves forward past the gap; a repeated one
// takes its first occurrence.
Instant wallClock(const CivilTime &time, const TimeZone &zone);
// "2026-03-10T18:47:00+03:00": the wall clock in the zone with the zone's offset at that instant.
std::string iso8601(Instant instant, const TimeZone &zone);
// The first instant of the Gregorian day in the zone (00:00, or the first existing moment when
// the zone skips midnight).
Instant startOfDay(int64_t year, int64_t month, int64_t day, const TimeZone &zone);
// The same wall-clock reading one calendar day later: 23 or 25 hours on a change day.
Instant nextDay(Instant instant, const TimeZone &zone);

// The Umm al-Qura date on which the instant falls, reckoned in UTC.
CalendarDate ummAlQura(Instant instant);
// 00:00 UTC of an Umm al-Qura date, or none when the calendar cannot form it.
std::optional<Instant> fromUmmAlQura(int64_t year, int64_t month, int64_t day);

} // namespace Calendars

} // namespace orvel
