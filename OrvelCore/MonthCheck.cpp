#include "MonthCheck.h"

#include "PrayerCalculator.h"
#include "TimeZone.h"

namespace orvel::MonthCheck {

namespace {

// However short the night, Yatsı comes before the next morning's noon.
constexpr double latestYatsiPastMidnight = 12 * 3600;

bool isOrdered(const DayTimes &day)
{
    for (size_t i = 1; i < day.times.size(); ++i) {
        if (day.times[i] < day.times[i - 1])
            return false;
    }
    return true;
}

bool isDayWhole(const DayTimes &day, const DayKey &expected, const Location &location, CalculationMethod method,
                const TimeZone &zone)
{
    if (day.day != expected || !isOrdered(day) || (day.hijri && !day.hijri->isValid()))
        return false;
    const Instant start = expected.start(zone);
    const Instant end = expected.adding(1).start(zone);
    constexpr size_t yatsi = 5;
    for (size_t i = 0; i < yatsi; ++i) {
        if (day.times[i] < start || !(day.times[i] < end))
            return false;
    }
    if (day.times[yatsi] < end)
        return true;
    if (day.times[yatsi] - end > latestYatsiPastMidnight)
        return false;
    return !(PrayerCalculator::times(expected, location, method, zone)[Prayer::yatsi] < end);
}

} // namespace

bool isWhole(const std::vector<DayTimes> &days, MonthKey month, const Location &location, CalculationMethod method,
             const TimeZone &zone)
{
    const std::vector<DayKey> expected = month.days();
    if (days.size() != expected.size())
        return false;
    for (size_t i = 0; i < days.size(); ++i) {
        if (!isDayWhole(days[i], expected[i], location, method, zone))
            return false;
    }
    return true;
}

} // namespace orvel::MonthCheck
