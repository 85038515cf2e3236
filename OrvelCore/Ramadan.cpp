#include "Ramadan.h"

#include "Calendars.h"
#include "TimeZone.h"

#include <limits>

namespace orvel::Ramadan {

namespace {

constexpr int64_t kadirEveDay = 26;
// Two days before the computed 1 Ramadan to 31 days after it, so that a month that the
// timetable's own Hijri dates start or end a day or two apart from the calendar is still covered.
constexpr int64_t candidatesBefore = 2;
constexpr int64_t candidatesAfter = 31;

} // namespace

bool isRamadan(const DayTimes &day)
{
    return day.hijriOrApproximate().month == month;
}

std::optional<int64_t> dayNumber(const DayTimes &day)
{
    const HijriDate hijri = day.hijriOrApproximate();
    if (hijri.month != month)
        return std::nullopt;
    return hijri.day;
}

bool isKadirEve(const DayTimes &day)
{
    const HijriDate hijri = day.hijriOrApproximate();
    return hijri.month == month && hijri.day == kadirEveDay;
}

int64_t upcomingYear(const DayTimes &day)
{
    const HijriDate hijri = day.hijriOrApproximate();
    return hijri.month <= month ? hijri.year : hijri.year + 1;
}

std::vector<DayKey> candidateDays(int64_t hijriYear)
{
    // The calendar counts years in 32 bits; a larger year must not wrap round to a valid one.
    if (hijriYear > std::numeric_limits<int32_t>::max() || hijriYear < std::numeric_limits<int32_t>::min())
        return {};
    const auto firstInstant = Calendars::fromUmmAlQura(hijriYear, month, 1);
    if (!firstInstant)
        return {};
    const DayKey first = DayKey::from(*firstInstant, TimeZone::utc());
    std::vector<DayKey> days;
    days.reserve(candidatesBefore + candidatesAfter + 1);
    for (int64_t offset = -candidatesBefore; offset <= candidatesAfter; ++offset)
        days.push_back(first.adding(offset));
    return days;
}

} // namespace orvel::Ramadan
