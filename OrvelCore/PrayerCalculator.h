#pragma once

#include "CalculationMethod.h"
#include "DayKey.h"
#include "DayTimes.h"
#include "HighLatitudeRule.h"
#include "Location.h"

namespace orvel {

class TimeZone;

// One day's six times from the position of the sun alone, without the network. Diyanet's days are
// its own rule at its point of the place, with its calendar's Hijri date.
namespace PrayerCalculator {

DayTimes times(const DayKey &day, const Location &location, CalculationMethod method,
               HighLatitudeRule rule = HighLatitudeRule::angleBased);
// The same with the location's zone already resolved (for loops over many days).
DayTimes times(const DayKey &day, const Location &location, CalculationMethod method, const TimeZone &zone,
               HighLatitudeRule rule = HighLatitudeRule::angleBased);

// Julian day number at 0h UT of a Gregorian date.
double julian(int64_t year, int64_t month, int64_t day);

// Minutes after the start of the day of a time given in hours, the adjustment added before
// rounding (halves away from zero).
double roundedMinutes(double hours, double adjustment);

} // namespace PrayerCalculator

} // namespace orvel
