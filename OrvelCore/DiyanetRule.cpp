#include "DiyanetRule.h"

#include "HighLatitude.h"
#include "Location.h"
#include "SolarPosition.h"
#include "TimeZone.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvel::DiyanetRule {

namespace {

constexpr double sunriseAltitude = -0.833;

// Diyanet's summer practice abroad as its published tables show it (northern Germany, 2025 and
// 2026, fitted by least squares on the days it replaces the angles): within a year, Yatsı after
// sunset and İmsak before sunrise grow almost linearly with the night. At the solstice in
// Hamburg's latitude this puts Yatsı 1 h 20 min after sunset, the Board's limit.
constexpr double practiceYatsiBase = -19.90;
constexpr double practiceYatsiPerNightMinute = 0.23512;
constexpr double practiceImsakBase = -20.56;
constexpr double practiceImsakPerNightMinute = 0.25797;

// Northern Cyprus lies north of this parallel; the Republic's towns south of it.
constexpr double kktcSouthernLatitude = 35.18;

double radians(double degrees) { return degrees * std::numbers::pi / 180; }
double degrees(double radians) { return radians * 180 / std::numbers::pi; }

// The six local hours at one latitude, for a sun fixed for the whole day.
HighLatitude::Hours hoursAt(double latitude, const SolarPosition &sun, double noon, double yatsi)
{
    const auto at = [&](double altitude, double sign) -> std::optional<double> {
        const auto h = sun.hourAngle(latitude, altitude);
        return h ? std::optional(noon + sign * *h) : std::nullopt;
    };
    const double asrAltitude = degrees(std::atan(1 / (1 + std::tan(radians(std::fabs(latitude - sun.declination))))));
    return {at(-imsakAngle, -1), at(sunriseAltitude, -1), noon, at(asrAltitude, 1), at(sunriseAltitude, 1), at(-yatsi, 1)};
}

// Where the night is short, İmsak and Yatsı come no further from its ends than the practice says.
// The night runs between the day's sunset and sunrise, those borrowed from the nearest latitude
// where the sun does not rise or set, so that the practice moves on smoothly through the polar days.
void applyPractice(HighLatitude::Resolved &resolved, const HighLatitude::Hours &sunHours)
{
    const double rise = resolved.hours[Prayer::gunes] - temkin[Prayer::gunes] / 60;
    const double set = resolved.hours[Prayer::aksam] - temkin[Prayer::aksam] / 60;
    const double night = std::max(0.0, (rise + 24 - set) * 60);
    const double yatsi = set + practiceYatsiMinutes(night) / 60 + temkin[Prayer::yatsi] / 60;
    const double imsak = rise - practiceImsakMinutes(night) / 60 + temkin[Prayer::imsak] / 60;
    const auto angleYatsi = sunHours[Prayer::yatsi];
    const auto angleImsak = sunHours[Prayer::imsak];
    if (!angleYatsi || yatsi < *angleYatsi + temkin[Prayer::yatsi] / 60) {
        resolved.hours[Prayer::yatsi] = yatsi;
        resolved.estimated[Prayer::yatsi] = true;
    }
    if (!angleImsak || imsak > *angleImsak + temkin[Prayer::imsak] / 60) {
        resolved.hours[Prayer::imsak] = imsak;
        resolved.estimated[Prayer::imsak] = true;
    }
}

bool isTurkishZone(std::string_view id)
{
    return id == "Europe/Istanbul" || id == "Asia/Istanbul" || id == "Turkey" || id == "Asia/Famagusta";
}

} // namespace

Region regionOf(std::string_view countryCode, double latitude, std::string_view timeZoneID)
{
    if (countryCode.empty())
        return isTurkishZone(timeZoneID) ? Region::turkey : Region::abroad;
    if (countryCode == "TR" || countryCode == "tr")
        return Region::turkey;
    if ((countryCode == "CY" || countryCode == "cy") && latitude >= kktcSouthernLatitude)
        return Region::turkey;
    return Region::abroad;
}

Region regionOf(const Location &location)
{
    return regionOf(location.countryCode, location.latitude, location.timeZoneID);
}

double practiceYatsiMinutes(double nightMinutes)
{
    return practiceYatsiBase + practiceYatsiPerNightMinute * nightMinutes;
}

double practiceImsakMinutes(double nightMinutes)
{
    return practiceImsakBase + practiceImsakPerNightMinute * nightMinutes;
}

DayTimes times(const DayKey &day, double latitude, double longitude, const TimeZone &zone, Region region, HighLatitudeRule rule)
{
    const SolarPosition sun = SolarPosition::at(day.julianDay());
    // Minutes are reckoned with the offset at local noon and turned back into instants with it, so
    // that on a clock-change day each time lands on its real moment.
    const int offset = zone.offsetSeconds(day.at(12 * 60, zone));
    const double noon = 12 - longitude / 15 - sun.equationOfTime + offset / 3600.0;
    const double yatsi = yatsiAngle(region);
    const auto sunHours = [&](double phi) { return hoursAt(phi, sun, noon, yatsi); };

    HighLatitude::Resolved resolved = HighLatitude::resolve(latitude, sunHours, {imsakAngle, yatsi, std::nullopt, false, temkin}, rule);
    if (region == Region::abroad && std::fabs(latitude) > practiceLatitude && rule == HighLatitudeRule::angleBased)
        applyPractice(resolved, sunHours(latitude));

    return HighLatitude::dayTimes(day, resolved, offset);
}

} // namespace orvel::DiyanetRule
