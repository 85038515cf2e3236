#include "Qibla.h"

#include "OrvelFormat.h"
#include "TimeZone.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>
#include <tuple>

using namespace orvel;

namespace {

constexpr double pi = std::numbers::pi;
double rad(double d) { return d * pi / 180; }
double deg(double r) { return r * 180 / pi; }

struct Vector {
    double x, y, z;
};
Vector unit(double latitude, double longitude)
{
    return {std::cos(rad(latitude)) * std::cos(rad(longitude)), std::cos(rad(latitude)) * std::sin(rad(longitude)),
            std::sin(rad(latitude))};
}
Vector cross(Vector a, Vector b) { return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x}; }
double dot(Vector a, Vector b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

// The same two figures by another road: unit vectors, the great circle's normal against the local
// north and east, and the angle between the two points.
double bearingByVectors(double latitude, double longitude)
{
    const Vector here = unit(latitude, longitude);
    const Vector kaaba = unit(Qibla::kaabaLatitude, Qibla::kaabaLongitude);
    const Vector east = cross({0, 0, 1}, here);
    const Vector north = cross(here, east);
    const Vector toward = cross(cross(here, kaaba), here);
    return std::fmod(deg(std::atan2(dot(toward, east), dot(toward, north))) + 360, 360);
}
double distanceByVectors(double latitude, double longitude)
{
    const Vector here = unit(latitude, longitude);
    const Vector kaaba = unit(Qibla::kaabaLatitude, Qibla::kaabaLongitude);
    const Vector c = cross(here, kaaba);
    return 6371.0088 * std::atan2(std::sqrt(dot(c, c)), dot(here, kaaba));
}

// NOAA's solar position (the Spencer/Meeus-style series of its spreadsheet): the sun's azimuth
// from north at a Unix time.
double noaaAzimuth(double unixSeconds, double latitude, double longitude)
{
    const double jd = unixSeconds / 86400 + 2440587.5;
    const double t = (jd - 2451545) / 36525;
    const double l0 = std::fmod(280.46646 + t * (36000.76983 + t * 0.0003032), 360);
    const double m = 357.52911 + t * (35999.05029 - 0.0001537 * t);
    const double e = 0.016708634 - t * (0.000042037 + 0.0000001267 * t);
    const double c = std::sin(rad(m)) * (1.914602 - t * (0.004817 + 0.000014 * t))
        + std::sin(rad(2 * m)) * (0.019993 - 0.000101 * t) + std::sin(rad(3 * m)) * 0.000289;
    const double omega = 125.04 - 1934.136 * t;
    const double lambda = l0 + c - 0.00569 - 0.00478 * std::sin(rad(omega));
    const double epsilon = 23 + (26 + (21.448 - t * (46.815 + t * (0.00059 - t * 0.001813))) / 60) / 60
        + 0.00256 * std::cos(rad(omega));
    const double declination = deg(std::asin(std::sin(rad(epsilon)) * std::sin(rad(lambda))));
    const double y = std::pow(std::tan(rad(epsilon / 2)), 2);
    const double eot = 4 * deg(y * std::sin(2 * rad(l0)) - 2 * e * std::sin(rad(m)) + 4 * e * y * std::sin(rad(m)) * std::cos(2 * rad(l0))
                               - 0.5 * y * y * std::sin(4 * rad(l0)) - 1.25 * e * e * std::sin(2 * rad(m)));
    const double minutes = std::fmod(unixSeconds / 60, 1440);
    const double trueSolar = std::fmod(minutes + eot + 4 * longitude + 1440, 1440);
    const double hourAngle = trueSolar / 4 < 0 ? trueSolar / 4 + 180 : trueSolar / 4 - 180;
    const double zenith = deg(std::acos(std::sin(rad(latitude)) * std::sin(rad(declination))
                                        + std::cos(rad(latitude)) * std::cos(rad(declination)) * std::cos(rad(hourAngle))));
    const double cosAzimuth = (std::sin(rad(latitude)) * std::cos(rad(zenith)) - std::sin(rad(declination)))
        / (std::cos(rad(latitude)) * std::sin(rad(zenith)));
    const double azimuth = deg(std::acos(std::clamp(cosAzimuth, -1.0, 1.0)));
    return hourAngle > 0 ? std::fmod(azimuth + 180, 360) : std::fmod(540 - azimuth, 360);
}

struct Place {
    std::string name;
    double latitude, longitude;
    std::string zone;
};

const Place places[]{
    {"İstanbul", 41.0082, 28.9784, "Europe/Istanbul"},  {"New York", 40.7128, -74.0060, "America/New_York"},
    {"Tokyo", 35.6762, 139.6503, "Asia/Tokyo"},          {"Sydney", -33.8688, 151.2093, "Australia/Sydney"},
    {"Johannesburg", -26.2041, 28.0473, "Africa/Johannesburg"}, {"Hamburg", 53.5511, 9.9937, "Europe/Berlin"},
    {"São Paulo", -23.5505, -46.6333, "America/Sao_Paulo"},
};

} // namespace

// Four continents and more, against the same figures reached by vectors instead of trigonometric
// formulas; İstanbul's qibla is the one every Turkish mosque faces.
TEST(Qibla, BearingAndDistanceOnTheGreatCircle)
{
    for (const Place &place : places) {
        EXPECT_NEAR(Qibla::bearing(place.latitude, place.longitude), bearingByVectors(place.latitude, place.longitude), 0.01)
            << place.name;
        const double expected = distanceByVectors(place.latitude, place.longitude);
        EXPECT_NEAR(Qibla::distanceKm(place.latitude, place.longitude), expected, expected * 0.001) << place.name;
    }
    EXPECT_NEAR(Qibla::bearing(41.0082, 28.9784), 151.6, 0.2);
    EXPECT_EQ(Qibla::compassWord(Qibla::bearing(41.0082, 28.9784)), "güneydoğu");
    EXPECT_EQ(Qibla::compassWord(359), "kuzey");
    EXPECT_EQ(Qibla::compassWord(22.4), "kuzey");
    EXPECT_EQ(Qibla::compassWord(22.6), "kuzeydoğu");
    EXPECT_EQ(Qibla::compassWord(270), "batı");
}

// At the kıble saati NOAA's sun stands in the qibla's direction: its azimuth crosses the bearing
// within two minutes either side.
TEST(Qibla, TheSunStandsInTheQiblaAtItsHour)
{
    int found = 0;
    for (const Place &place : places) {
        const TimeZone zone = TimeZone::named(place.zone);
        const double target = Qibla::bearing(place.latitude, place.longitude);
        for (const DayKey day : {DayKey{2026, 3, 10}, DayKey{2026, 6, 21}, DayKey{2026, 12, 21}}) {
            const std::optional<Instant> at = Qibla::sunInDirection(day, place.latitude, place.longitude, zone);
            if (!at)
                continue;
            ++found;
            EXPECT_EQ(DayKey::from(*at, zone), day) << place.name;
            const auto off = [&](double minutes) {
                const double diff = noaaAzimuth(at->unixSeconds() + minutes * 60, place.latitude, place.longitude) - target;
                return std::remainder(diff, 360.0);
            };
            EXPECT_LE(off(-2) * off(2), 0) << place.name << " " << day.description();
        }
    }
    EXPECT_GE(found, 12);
    // In İstanbul the sun stands over the southeast in the late morning.
    const TimeZone istanbul = TimeZone::named("Europe/Istanbul");
    const auto at = Qibla::sunInDirection({2026, 3, 10}, 41.0082, 28.9784, istanbul);
    ASSERT_TRUE(at);
    const double hour = std::fmod((at->unixSeconds() + 3 * 3600) / 3600, 24);
    EXPECT_GT(hour, 9);
    EXPECT_LT(hour, 12.5);
}

// Diyanet: on 28 May and 16 July the sun stands over the Kaaba at Mecca's noon, and every city
// of Türkiye has the same kıble saati, 12:18 and 12:27 ("Dünya Kıble Günü"; the astronomer of
// its High Board of Religious Affairs, AA, 2019). From Edirne to Kars, and in several years.
TEST(Qibla, TheWorldQiblaDaysGiveDiyanetsMinuteAcrossTurkiye)
{
    const TimeZone zone = TimeZone::named("Europe/Istanbul");
    struct City {
        const char *name;
        double latitude, longitude;
    };
    const City cities[] = {{"Edirne", 41.677, 26.556}, {"İzmir", 38.419, 27.129}, {"İstanbul", 41.008, 28.978},
                           {"Ankara", 39.925, 32.837}, {"Antakya", 36.202, 36.160}, {"Trabzon", 41.005, 39.727},
                           {"Van", 38.501, 43.373},    {"Kars", 40.602, 43.097}};
    for (const int64_t year : {2026, 2027, 2030, 2035}) {
        for (const auto &[month, day, minute] : {std::tuple{5, 28, "12:18"}, std::tuple{7, 16, "12:27"}}) {
            for (const City &city : cities) {
                const auto at = Qibla::sunInDirection({year, month, day}, city.latitude, city.longitude, zone);
                ASSERT_TRUE(at) << city.name;
                EXPECT_EQ(OrvelFormat::time(*at, zone), minute) << city.name << " " << year;
            }
        }
    }
}
