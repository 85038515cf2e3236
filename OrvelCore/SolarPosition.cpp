#include "SolarPosition.h"

#include <cmath>
#include <numbers>

namespace orvel {

namespace {

constexpr double j2000 = 2451545.0;

double radians(double degrees) { return degrees * std::numbers::pi / 180; }
double degrees(double radians) { return radians * 180 / std::numbers::pi; }

double wrap(double value, double divisor)
{
    const double remainder = std::fmod(value, divisor);
    return remainder < 0 ? remainder + divisor : remainder;
}

} // namespace

SolarPosition SolarPosition::at(double julianDay)
{
    const double d = julianDay - j2000;
    const double g = radians(wrap(357.529 + 0.98560028 * d, 360));
    const double q = wrap(280.459 + 0.98564736 * d, 360);
    const double l = radians(wrap(q + 1.915 * std::sin(g) + 0.020 * std::sin(2 * g), 360));
    const double e = radians(23.439 - 0.00000036 * d);
    const double rightAscension = wrap(degrees(std::atan2(std::cos(e) * std::sin(l), std::cos(l))) / 15, 24);
    const double declination = degrees(std::asin(std::sin(e) * std::sin(l)));
    // Mean longitude and right ascension straddle 0h/24h now and then: keep the difference small.
    return {declination, wrap(q / 15 - rightAscension + 12, 24) - 12};
}

std::optional<double> SolarPosition::hourAngle(double latitude, double altitude) const
{
    const double phi = radians(latitude);
    const double delta = radians(declination);
    const double c = (std::sin(radians(altitude)) - std::sin(phi) * std::sin(delta)) / (std::cos(phi) * std::cos(delta));
    if (!(c >= -1 && c <= 1))
        return std::nullopt;
    return degrees(std::acos(c)) / 15;
}

} // namespace orvel
