#include "PrayerCalculator.h"

#include "DiyanetCalendar.h"
#include "DiyanetRule.h"
#include "MethodRule.h"
#include "TimeZone.h"

namespace orvel::PrayerCalculator {

DayTimes times(const DayKey &day, const Location &location, CalculationMethod method, HighLatitudeRule rule)
{
    return times(day, location, method, location.timeZone(), rule);
}

DayTimes times(const DayKey &day, const Location &location, CalculationMethod method, const TimeZone &zone,
               HighLatitudeRule rule)
{
    if (method != CalculationMethod::diyanet)
        return MethodRule::times(day, location, method, zone, rule);
    // Diyanet computes each place at a point of its own, by its rule for the place's country.
    const GeoPoint point = location.diyanetPointOrOwn();
    DayTimes result = DiyanetRule::times(day, point.latitude, point.longitude, zone, DiyanetRule::regionOf(location), rule);
    result.hijri = DiyanetCalendar::date(day);
    return result;
}

} // namespace orvel::PrayerCalculator
