#pragma once

#include <optional>

namespace orvel {

// The sun by the classic low-precision formulas (mean anomaly, mean longitude, ecliptic longitude
// with its 1.915°/0.020° terms): good to about a minute of time until 2050, and the formulas
// Diyanet's tables follow more closely than a precise ephemeris does.
struct SolarPosition {
    double declination = 0;    // degrees
    double equationOfTime = 0; // hours, apparent minus mean solar time

    static SolarPosition at(double julianDay);

    // Hours from local noon to the moment the sun stands at the altitude (degrees) at the
    // latitude; none on a day it never does.
    std::optional<double> hourAngle(double latitude, double altitude) const;

    bool operator==(const SolarPosition &) const = default;
};

} // namespace orvel
