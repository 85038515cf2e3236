#include "MethodRule.h"

#include "Calendars.h"
#include "HighLatitude.h"
#include "SolarPosition.h"
#include "TimeZone.h"

#include <array>
#include <cmath>
#include <optional>

namespace orvel::MethodRule {

namespace {

constexpr double pi = 3.141592653589793;
// sin(−0.833°): the sun's upper limb on the horizon, refraction included.
constexpr double sinSunriseAltitude = -0.014538080502496949;
// Isha at 17° when a method names neither an angle nor an interval.
constexpr double sinDefaultIshaAltitude = -0.29237170472273677;
constexpr double defaultIshaPortion = 0.2833333333333333;
constexpr double asrShadowFactor = 1.0;
constexpr int refinementPasses = 2;
constexpr int64_t ramadanMonth = 9;
constexpr double ramadanIshaInterval = 120;

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
        const SolarPosition sun = SolarPosition::at(jd_ + dayFraction);
        return {sun.declination, sun.equationOfTime};
    }

    double noon(double hours) const { return noonOf(position(hours / 24)); }

    // The hour angle's cosine for the sun at sin(altitude) = target, near the estimate.
    double cosine(double target, const SunPosition &sun) const
    {
        return (target - sinLatitude_ * sinDeg(sun.declination)) / (cosLatitude_ * cosDeg(sun.declination));
    }

    // The time at which the sun stands at sin(altitude) = target; none when it never does that day.
    std::optional<double> timeAt(double target, double estimate, bool morning) const
    {
        const SunPosition sun = position(estimate / 24);
        const double c = cosine(target, sun);
        if (!(c >= -1 && c <= 1))
            return std::nullopt;
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

DayTimes times(const DayKey &day, const Location &location, CalculationMethod method, const TimeZone &zone,
               HighLatitudeRule rule)
{
    CalculationParameters parameters = method.parameters();
    // Umm al-Qura's Yatsı comes two hours after Akşam in Ramadan, as the service gives it.
    if (method == CalculationMethod::ummAlQura && Calendars::ummAlQura(day.at(12 * 60, zone)).month == ramadanMonth)
        parameters.ishaInterval = ramadanIshaInterval;
    // The clock minutes are reckoned with the offset at local noon; the same offset turns them back
    // into instants, so that on a clock-change day each time lands on its real moment.
    const int noonOffset = zone.offsetSeconds(day.at(12 * 60, zone));
    const double correction = noonOffset / 3600.0 - location.longitude / 15;
    const double julianDay = day.julianDay() + location.longitude / -360;
    const double sinFajr = -sinDeg(parameters.fajrAngle);
    const double sinIsha = parameters.ishaAngle ? -sinDeg(*parameters.ishaAngle) : sinDefaultIshaAltitude;

    const auto hoursAt = [&](double latitude) {
        const Sun sun(julianDay, latitude);
        std::optional<double> fajr = 5, sunrise = 6, asr = 13, sunset = 18, isha = 18;
        double dhuhr = 12;
        const auto step = [](std::optional<double> &value, auto solve) {
            if (value)
                value = solve(*value);
        };
        for (int pass = 0; pass < refinementPasses; ++pass) {
            step(fajr, [&](double e) { return sun.timeAt(sinFajr, e, true); });
            step(sunrise, [&](double e) { return sun.timeAt(sinSunriseAltitude, e, true); });
            dhuhr = sun.noon(dhuhr);
            step(asr, [&](double e) { return sun.asr(e); });
            step(sunset, [&](double e) { return sun.timeAt(sinSunriseAltitude, e, false); });
            if (parameters.ishaInterval)
                isha = sunset ? std::optional(*sunset + *parameters.ishaInterval / 60) : std::nullopt;
            else
                step(isha, [&](double e) { return sun.timeAt(sinIsha, e, false); });
        }
        const auto local = [&](std::optional<double> hours) {
            return hours ? std::optional(*hours + correction) : std::nullopt;
        };
        return HighLatitude::Hours{local(fajr), local(sunrise), dhuhr + correction, local(asr), local(sunset), local(isha)};
    };

    HighLatitude::Angles angles{parameters.fajrAngle, std::nullopt, parameters.ishaInterval, true, {}};
    for (const Prayer::Value prayer : Prayer::all)
        angles.adjustments[prayer] = parameters.adjustment(prayer);
    if (!parameters.ishaInterval)
        angles.isha = parameters.ishaAngle ? *parameters.ishaAngle : defaultIshaPortion * 60;
    const HighLatitude::Resolved resolved = HighLatitude::resolve(location.latitude, hoursAt, angles, rule);

    return HighLatitude::dayTimes(day, resolved, noonOffset);
}

} // namespace orvel::MethodRule
