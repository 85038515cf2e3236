#pragma once

#include "DayKey.h"
#include "Instant.h"

#include <optional>
#include <string>
#include <string_view>

namespace orvel {

class TimeZone;

// The direction of the Kaaba from a place, on the great circle through both.
namespace Qibla {

constexpr double kaabaLatitude = 21.4225;
constexpr double kaabaLongitude = 39.8262;

// Degrees from true north, clockwise, in [0, 360).
double bearing(double latitude, double longitude);
// Kilometres along the great circle, on a sphere of the Earth's mean radius.
double distanceKm(double latitude, double longitude);
// "kuzey", "kuzeydoğu", "doğu", "güneydoğu", "güney", "güneybatı", "batı", "kuzeybatı".
std::string_view compassWord(double bearing);
// "152° (güneydoğu)": whole degrees with the compass word.
std::string bearingText(double bearing);
// "2.405 km": whole kilometres with Turkish thousands dots.
std::string distanceText(double kilometres);

// The "kıble saati": the minute of the day (in the zone) at which the sun, above the horizon,
// stands in the qibla's direction, so that a shadow points away from it; none on a day the sun
// never does. Rounded to the nearest minute, as timetables print it.
std::optional<Instant> sunInDirection(const DayKey &day, double latitude, double longitude, const TimeZone &zone);

} // namespace Qibla

} // namespace orvel
