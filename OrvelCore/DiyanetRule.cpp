#include "DiyanetRule.h"

#include "HighLatitude.h"
#include "PrayerCalculator.h"
#include "SolarPosition.h"
#include "TimeZone.h"

#include <cmath>
#include <numbers>

namespace orvel::DiyanetRule {

namespace {

constexpr double sunriseAltitude = -0.833;

double radians(double degrees) { return degrees * std::numbers::pi / 180; }
double degrees(double radians) { return radians * 180 / std::numbers::pi; }

// The six local hours at one latitude, for a sun fixed for the whole day.
HighLatitude::Hours hoursAt(double latitude, const SolarPosition &sun, double noon)
{
    const auto at = [&](double altitude, double sign) -> std::optional<double> {
        const auto h = sun.hourAngle(latitude, altitude);
        return h ? std::optional(noon + sign * *h) : std::nullopt;
    };
    const double asrAltitude = degrees(std::atan(1 / (1 + std::tan(radians(std::fabs(latitude - sun.declination))))));
    return {at(-imsakAngle, -1), at(sunriseAltitude, -1), noon, at(asrAltitude, 1), at(sunriseAltitude, 1), at(-yatsiAngle, 1)};
}

} // namespace

DayTimes times(const DayKey &day, double latitude, double longitude, const TimeZone &zone, HighLatitudeRule rule)
{
    const SolarPosition sun = SolarPosition::at(PrayerCalculator::julian(day.year, day.month, day.day));
    // Minutes are reckoned with the offset at local noon and turned back into instants with it, so
    // that on a clock-change day each time lands on its real moment.
    const int offset = zone.offsetSeconds(day.at(12 * 60, zone));
    const double noon = 12 - longitude / 15 - sun.equationOfTime + offset / 3600.0;

    const HighLatitude::Resolved resolved = HighLatitude::resolve(
        latitude, [&](double phi) { return hoursAt(phi, sun, noon); }, {imsakAngle, yatsiAngle, false, temkin}, rule);

    const Instant utcMidnight = day.start(TimeZone::utc());
    DayTimes result{day, {}, std::nullopt, resolved.estimated};
    for (const Prayer::Value prayer : Prayer::allCases)
        result.times[prayer] = utcMidnight + PrayerCalculator::roundedMinutes(resolved.hours[prayer], 0) * 60 - offset;
    return result;
}

} // namespace orvel::DiyanetRule
