#pragma once

#include "DayKey.h"
#include "DayTimes.h"
#include "HighLatitudeRule.h"

#include <string_view>

namespace orvel {

class TimeZone;
struct Location;

// Diyanet's own rule for the six times: the sun's declination and equation of time once a day,
// at 0h UT of the date; İmsak with the sun 18° below the horizon, Yatsı 17° in Türkiye and 16°
// abroad, Güneş and Akşam at -0.833°, İkindi when a shadow is its length plus the noon shadow; the
// temkin minutes added to the unrounded time, which is then rounded to the nearest minute.
// Computed at the point where Diyanet computes the place, this gives Diyanet's published tables
// to the minute.
namespace DiyanetRule {

// Türkiye (and the KKTC, which Diyanet lists with Türkiye's provinces) or a country abroad, where
// Diyanet's foreign tables use another Yatsı angle and, beyond 45°, its own summer practice.
enum class Region { turkey, abroad };

// Minutes added to each time before rounding, in Prayer order.
constexpr std::array<double, 6> temkin{0, -7, 5, 4, 7, 0};
constexpr double imsakAngle = 18;
constexpr double yatsiAngle(Region region) { return region == Region::turkey ? 17 : 16; }

// Beyond this latitude abroad, İmsak and Yatsı follow Diyanet's practice for short nights.
constexpr double practiceLatitude = 45;

// The region of a place: its country when known (ISO 3166 code), else its zone.
Region regionOf(std::string_view countryCode, double latitude, std::string_view timeZoneID);
Region regionOf(const Location &location);

// Diyanet's practice where the night is short: Yatsı and İmsak this many minutes from sunset and
// sunrise, for a night (sunset to sunrise) of `nightMinutes`; never later (earlier) than the angle.
double practiceYatsiMinutes(double nightMinutes);
double practiceImsakMinutes(double nightMinutes);

// The six times at the point, in the zone's wall clock of that day.
DayTimes times(const DayKey &day, double latitude, double longitude, const TimeZone &zone, Region region = Region::turkey,
               HighLatitudeRule rule = HighLatitudeRule::angleBased);

} // namespace DiyanetRule

} // namespace orvel
