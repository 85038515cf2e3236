#pragma once

#include "CalculationMethod.h"
#include "DayKey.h"
#include "DayTimes.h"
#include "HighLatitudeRule.h"
#include "Location.h"

namespace orvel {

class TimeZone;

// One day's six times from the position of the sun alone, without the network: Diyanet's rule at
// its point of the place, with its calendar's Hijri date, or the method's angles and intervals.
namespace PrayerCalculator {

DayTimes times(const DayKey &day, const Location &location, CalculationMethod method,
               HighLatitudeRule rule = HighLatitudeRule::angleBased);
// The same with the location's zone already resolved (for loops over many days).
DayTimes times(const DayKey &day, const Location &location, CalculationMethod method, const TimeZone &zone,
               HighLatitudeRule rule = HighLatitudeRule::angleBased);

} // namespace PrayerCalculator

} // namespace orvel
