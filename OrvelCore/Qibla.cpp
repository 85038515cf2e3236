#include "Qibla.h"

#include "SolarPosition.h"
#include "TimeZone.h"

#include <array>
#include <cmath>
#include <numbers>

namespace orvel::Qibla {

namespace {

constexpr double earthRadiusKm = 6371.0088; // the IUGG mean radius
constexpr double unixEpochJulianDay = 2440587.5;
constexpr double daySeconds = 86400;

double radians(double degrees) { return degrees * std::numbers::pi / 180; }
double degrees(double radians) { return radians * 180 / std::numbers::pi; }

// Into [-180, 180).
double signedAngle(double degrees)
{
    const double wrapped = std::fmod(degrees + 180, 360);
    return (wrapped < 0 ? wrapped + 360 : wrapped) - 180;
}

struct SunSky {
    double azimuth;  // degrees from north, clockwise
    double altitude; // degrees
};

SunSky sunAt(Instant instant, double latitude, double longitude)
{
    const double unix = instant.unixSeconds();
    const SolarPosition sun = SolarPosition::at(unixEpochJulianDay + unix / daySeconds);
    // The hour angle from the apparent solar time at the place.
    const double utcHours = std::fmod(unix / 3600, 24);
    const double hourAngle = radians((utcHours + longitude / 15 + sun.equationOfTime - 12) * 15);
    const double phi = radians(latitude);
    const double delta = radians(sun.declination);
    const double altitude = std::asin(std::sin(phi) * std::sin(delta) + std::cos(phi) * std::cos(delta) * std::cos(hourAngle));
    const double azimuth = std::atan2(std::sin(hourAngle),
                                      std::cos(hourAngle) * std::sin(phi) - std::tan(delta) * std::cos(phi));
    return {std::fmod(degrees(azimuth) + 180 + 360, 360), degrees(altitude)};
}

} // namespace

double bearing(double latitude, double longitude)
{
    const double phi1 = radians(latitude);
    const double phi2 = radians(kaabaLatitude);
    const double deltaLambda = radians(kaabaLongitude - longitude);
    const double y = std::sin(deltaLambda) * std::cos(phi2);
    const double x = std::cos(phi1) * std::sin(phi2) - std::sin(phi1) * std::cos(phi2) * std::cos(deltaLambda);
    return std::fmod(degrees(std::atan2(y, x)) + 360, 360);
}

double distanceKm(double latitude, double longitude)
{
    const double phi1 = radians(latitude);
    const double phi2 = radians(kaabaLatitude);
    const double dPhi = phi2 - phi1;
    const double dLambda = radians(kaabaLongitude - longitude);
    const double a = std::pow(std::sin(dPhi / 2), 2) + std::cos(phi1) * std::cos(phi2) * std::pow(std::sin(dLambda / 2), 2);
    return 2 * earthRadiusKm * std::asin(std::min(1.0, std::sqrt(a)));
}

std::string_view compassWord(double bearing)
{
    static constexpr std::array<std::string_view, 8> words{"kuzey", "kuzeydoğu", "doğu", "güneydoğu",
                                                           "güney", "güneybatı", "batı", "kuzeybatı"};
    const double normal = std::fmod(std::fmod(bearing, 360) + 360, 360);
    return words[static_cast<size_t>(std::floor((normal + 22.5) / 45)) % words.size()];
}

std::string bearingText(double bearing)
{
    return std::to_string(std::lround(bearing) % 360) + "° (" + std::string(compassWord(bearing)) + ")";
}

std::string distanceText(double kilometres)
{
    const std::string digits = std::to_string(std::lround(kilometres));
    std::string grouped;
    for (size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0)
            grouped += '.';
        grouped += digits[i];
    }
    return grouped + " km";
}

std::optional<Instant> sunInDirection(const DayKey &day, double latitude, double longitude, const TimeZone &zone)
{
    const double target = bearing(latitude, longitude);
    const Instant start = day.start(zone);
    const Instant end = day.adding(1).start(zone);
    const auto offBy = [&](Instant at) { return signedAngle(sunAt(at, latitude, longitude).azimuth - target); };
    constexpr double step = 60;
    for (Instant at = start; at.seconds < end.seconds; at = at + step) {
        const Instant next = at + step;
        const double before = offBy(at);
        const double after = offBy(next);
        // The sun crosses the direction where the difference changes sign without jumping the
        // half circle behind it; only while it is up does a shadow point anywhere.
        if ((before <= 0) == (after <= 0) || std::fabs(after - before) > 90)
            continue;
        Instant low = at;
        Instant high = next;
        while (high.seconds - low.seconds > 0.5) {
            const Instant middle{(low.seconds + high.seconds) / 2};
            ((offBy(middle) <= 0) == (before <= 0) ? low : high) = middle;
        }
        if (sunAt(low, latitude, longitude).altitude > 0)
            return low.nearestMinute();
    }
    return std::nullopt;
}

} // namespace orvel::Qibla
