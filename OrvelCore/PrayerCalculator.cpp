#include "PrayerCalculator.h"

#include "TimeZone.h"

#include <array>
#include <cmath>
#include <optional>

namespace orvel::PrayerCalculator {

namespace {

constexpr double pi = 3.141592653589793;
constexpr double j2000 = 2451545.0;
// sin(−0.833°): the sun's upper limb on the horizon, refraction included.
constexpr double sinSunriseAltitude = -0.014538080502496949;
// Isha at 17° when a method names neither an angle nor an interval.
constexpr double sinDefaultIshaAltitude = -0.29237170472273677;
constexpr double defaultIshaPortion = 0.2833333333333333;
constexpr double asrShadowFactor = 1.0;
constexpr int refinementPasses = 2;

double radians(double degrees) { return degrees * pi / 180; }
double degrees(double radians) { return radians * 180 / pi; }
double sinDeg(double d) { return std::sin(radians(d)); }
double cosDeg(double d) { return std::cos(radians(d)); }
double tanDeg(double d) { return std::tan(radians(d)); }

// Floating remainder moved into [0, divisor).
double wrap(double value, double divisor)
{
    const double remainder = std::fmod(value, divisor);
    return remainder < 0 ? remainder + divisor : remainder;
}

struct SunPosition {
    double declination; // degrees
    double equationOfTime; // hours
};

// The sun of one day at one place; times are hours of local mean solar time.
class Sun {
public:
    Sun(double julianDay, double latitude)
        : jd_(julianDay)
        , sinLatitude_(sinDeg(latitude))
        , cosLatitude_(cosDeg(latitude))
        , latitude_(latitude)
    {
    }

    SunPosition position(double dayFraction) const
    {
        const double d = jd_ + dayFraction - j2000;
        const double g = wrap(357.529 + 0.98560028 * d, 360);
        const double q = wrap(280.459 + 0.98564736 * d, 360);
        const double l = wrap(q + 1.915 * sinDeg(g) + 0.020 * sinDeg(2 * g), 360);
        const double e = 23.439 - 0.00000036 * d;
        const double ra = wrap(degrees(std::atan2(cosDeg(e) * sinDeg(l), cosDeg(l))) / 15, 24);
        const double declination = degrees(std::asin(sinDeg(e) * sinDeg(l)));
        return {declination, q / 15 - ra};
    }

    double noon(double hours) const { return noonOf(position(hours / 24)); }

    // The hour angle's cosine for the sun at sin(altitude) = target, near the estimate.
    double cosine(double target, const SunPosition &sun) const
    {
        return (target - sinLatitude_ * sinDeg(sun.declination)) / (cosLatitude_ * cosDeg(sun.declination));
    }

    // The time at which the sun stands at sin(altitude) = target, or the estimate when it never
    // does that day. Reports |cosine| so that the caller can tell.
    double timeAt(double target, double estimate, bool morning, double *cosineMagnitude = nullptr) const
    {
        const SunPosition sun = position(estimate / 24);
        const double c = cosine(target, sun);
        if (cosineMagnitude)
            *cosineMagnitude = std::fabs(c);
        if (!(c >= -1 && c <= 1))
            return estimate;
        const double hourAngle = degrees(std::acos(c)) / 15;
        return morning ? noonOf(sun) - hourAngle : noonOf(sun) + hourAngle;
    }

    std::optional<double> asr(double estimate) const
    {
        const SunPosition sun = position(estimate / 24);
        const double altitude = degrees(std::atan(1 / (asrShadowFactor + tanDeg(std::fabs(latitude_ - sun.declination)))));
        const double c = cosine(sinDeg(altitude), sun);
        if (!(std::fabs(c) <= 1))
            return std::nullopt;
        return noonOf(sun) + degrees(std::acos(c)) / 15;
    }

private:
    static double noonOf(const SunPosition &sun) { return wrap(12 - sun.equationOfTime, 24); }

    double jd_;
    double sinLatitude_;
    double cosLatitude_;
    double latitude_;
};

} // namespace

double julian(int64_t year, int64_t month, int64_t day)
{
    auto y = static_cast<double>(year);
    auto m = static_cast<double>(month);
    if (month < 3) {
        y -= 1;
        m += 12;
    }
    const double a = std::floor(y / 100);
    const double b = 2 - a + std::floor(a * 0.25);
    return b + std::floor((y + 4716) * 365.25) + std::floor((m + 1) * 30.6001) + static_cast<double>(day) - 1524.5;
}

double roundedMinutes(double hours, double adjustment)
{
    return std::round(hours * 60 + adjustment);
}

DayTimes times(const DayKey &day, const Location &location, CalculationMethod method)
{
    return times(day, location, method, location.timeZone());
}

DayTimes times(const DayKey &day, const Location &location, CalculationMethod method, const TimeZone &zone)
{
    const CalculationParameters parameters = method.parameters();
    const Sun sun(julian(day.year, day.month, day.day) + location.longitude / -360, location.latitude);

    double fajr = 5, sunrise = 6, dhuhr = 12, asr = 13, sunset = 18, isha = 18;
    double fajrCosine = 0;
    bool ishaSolved = true;
    const double sinFajr = -sinDeg(parameters.fajrAngle);
    const double sinIsha = parameters.ishaAngle ? -sinDeg(*parameters.ishaAngle) : sinDefaultIshaAltitude;

    for (int pass = 0; pass < refinementPasses; ++pass) {
        fajr = sun.timeAt(sinFajr, fajr, true, &fajrCosine);
        sunrise = sun.timeAt(sinSunriseAltitude, sunrise, true);
        dhuhr = sun.noon(dhuhr);
        asr = sun.asr(asr).value_or(asr);
        sunset = sun.timeAt(sinSunriseAltitude, sunset, false);
        if (parameters.ishaInterval) {
            isha = sunset + *parameters.ishaInterval / 60;
        } else {
            double ishaCosine = 0;
            isha = sun.timeAt(sinIsha, isha, false, &ishaCosine);
            ishaSolved = ishaCosine <= 1;
        }
    }

    // The clock minutes are reckoned with the offset at local noon; the same offset turns them back
    // into instants, so that on a clock-change day each time lands on its real moment.
    const int noonOffset = zone.offsetSeconds(day.at(12 * 60, zone));
    const Instant utcMidnight = day.start(TimeZone::utc());
    const double zoneHours = noonOffset / 3600.0;
    const double correction = zoneHours - location.longitude / 15;
    fajr += correction;
    sunrise += correction;
    dhuhr += correction;
    asr += correction;
    sunset += correction;
    isha += correction;
    const double night = sunrise - sunset + 24;

    // Where the sun never gets deep enough (or the night is short), a share of the night stands in.
    const double fajrPortion = parameters.fajrAngle / 60 * night;
    if (fajrPortion < sunrise - fajr || !(fajrCosine <= 1))
        fajr = sunrise - fajrPortion;
    if (!parameters.ishaInterval) {
        const double ishaPortion = parameters.ishaAngle ? night * (*parameters.ishaAngle / 60) : night * defaultIshaPortion;
        if (!ishaSolved || ishaPortion < isha - sunset)
            isha = sunset + ishaPortion;
    }

    const std::array<double, 6> hours{fajr, sunrise, dhuhr, asr, sunset, isha};
    DayTimes result{day, {}, std::nullopt};
    for (const Prayer::Value prayer : Prayer::allCases) {
        result.times[prayer] = utcMidnight + roundedMinutes(hours[prayer], parameters.adjustment(prayer)) * 60 - noonOffset;
    }
    return result;
}

} // namespace orvel::PrayerCalculator
