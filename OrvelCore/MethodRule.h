#pragma once

#include "CalculationMethod.h"
#include "DayKey.h"
#include "DayTimes.h"
#include "HighLatitudeRule.h"
#include "Location.h"

namespace orvel {

class TimeZone;

// The six times of the methods given by angles and intervals (Muslim World League, ISNA, Egypt,
// Umm al-Qura): the sun's position refined at each time, the method's adjustments, the
// high-latitude rule where the sun does not reach an angle. Diyanet has a rule of its own.
namespace MethodRule {

DayTimes times(const DayKey &day, const Location &location, CalculationMethod method, const TimeZone &zone,
               HighLatitudeRule rule = HighLatitudeRule::angleBased);

} // namespace MethodRule

} // namespace orvel
