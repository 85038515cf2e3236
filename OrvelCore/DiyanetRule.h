#pragma once

#include "DayKey.h"
#include "DayTimes.h"
#include "HighLatitudeRule.h"

namespace orvel {

class TimeZone;

// Diyanet's own rule for the six times: the sun's declination and equation of time once a day,
// at 0h UT of the date; İmsak with the sun 18° below the horizon, Yatsı 17°, Güneş and Akşam at
// -0.833°, İkindi when a shadow is its length plus the noon shadow; the temkin minutes added to
// the unrounded time, which is then rounded to the nearest minute. Computed at the point where
// Diyanet computes the place, this gives Diyanet's published tables to the minute.
namespace DiyanetRule {

// Minutes added to each time before rounding, in Prayer order.
constexpr std::array<double, 6> temkin{0, -7, 5, 4, 7, 0};
constexpr double imsakAngle = 18;
constexpr double yatsiAngle = 17;

// The six times at the point, in the zone's wall clock of that day.
DayTimes times(const DayKey &day, double latitude, double longitude, const TimeZone &zone,
               HighLatitudeRule rule = HighLatitudeRule::angleBased);

} // namespace DiyanetRule

} // namespace orvel
