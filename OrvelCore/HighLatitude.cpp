#include "HighLatitude.h"

#include "Prayer.h"
#include "TimeZone.h"

#include <cmath>

namespace orvel::HighLatitude {

namespace {

constexpr double latitudeStep = 0.25;
constexpr int bisections = 24;

bool hasDaytime(const Hours &hours)
{
    return hours[Prayer::gunes] && hours[Prayer::ogle] && hours[Prayer::ikindi] && hours[Prayer::aksam];
}

// Walks towards the equator until `found` holds (the equator always has a sunrise) and finds the
// latitude where it begins to hold: that boundary moves smoothly with the sun's declination, so
// the times it lends do too, and they join the place's own on the day it regains them.
template<typename Predicate>
Hours nearest(double latitude, const std::function<Hours(double)> &hoursAt, Predicate found)
{
    const double direction = latitude > 0 ? -1 : 1;
    double outside = latitude;
    for (double candidate = latitude; std::fabs(candidate) > 0; candidate += direction * latitudeStep) {
        if (std::fabs(candidate) < latitudeStep)
            candidate = 0;
        if (!found(hoursAt(candidate))) {
            outside = candidate;
            continue;
        }
        double inside = candidate;
        for (int i = 0; i < bisections; ++i) {
            const double middle = (inside + outside) / 2;
            (found(hoursAt(middle)) ? inside : outside) = middle;
        }
        return hoursAt(inside);
    }
    return hoursAt(0);
}

double share(HighLatitudeRule rule, double angle, double night)
{
    switch (rule) {
    case HighLatitudeRule::seventhOfNight:
        return night / 7;
    case HighLatitudeRule::middleOfNight:
        return night / 2;
    case HighLatitudeRule::angleBased:
    case HighLatitudeRule::nearestLatitude:
        break;
    }
    return angle / 60 * night;
}

} // namespace

Resolved resolve(double latitude, const std::function<Hours(double)> &hoursAt, Angles angles, HighLatitudeRule rule)
{
    Hours hours = hoursAt(latitude);
    Resolved result;

    if (!hasDaytime(hours)) {
        const Hours substitute = nearest(latitude, hoursAt, hasDaytime);
        for (const Prayer::Value prayer : {Prayer::gunes, Prayer::ogle, Prayer::ikindi, Prayer::aksam}) {
            result.estimated[prayer] = true;
            hours[prayer] = substitute[prayer];
        }
        result.estimated[Prayer::ogle] = false; // noon is always the sun's own
    }

    const double sunrise = *hours[Prayer::gunes];
    const double sunset = *hours[Prayer::aksam];
    const double night = sunrise + 24 - sunset;

    const auto twilight = [&](Prayer::Value prayer, double angle) {
        const bool morning = prayer == Prayer::imsak;
        const double end = morning ? sunrise : sunset;
        const double portion = share(rule, angle, night);
        const std::optional<double> exact = hours[prayer];
        if (exact && !(angles.capByShare && portion < std::fabs(end - *exact)))
            return;
        if (!exact)
            result.estimated[prayer] = true;
        if (!exact && rule == HighLatitudeRule::nearestLatitude) {
            const Hours near = nearest(latitude, hoursAt, [&](const Hours &h) { return h[prayer].has_value(); });
            hours[prayer] = near[prayer];
            return;
        }
        hours[prayer] = morning ? end - portion : end + portion;
    };
    twilight(Prayer::imsak, angles.fajr);
    if (angles.isha)
        twilight(Prayer::yatsi, *angles.isha);
    if (angles.ishaInterval) {
        hours[Prayer::yatsi] = sunset + *angles.ishaInterval / 60;
        result.estimated[Prayer::yatsi] = result.estimated[Prayer::aksam];
    }

    for (const Prayer::Value prayer : Prayer::all)
        result.hours[prayer] = hours[prayer].value_or(0) + angles.adjustments[prayer] / 60;
    // The night's end must precede the sunrise it belongs to, and each time the one before it.
    const double adjustedSunrise = result.hours[Prayer::gunes];
    if (result.hours[Prayer::imsak] > adjustedSunrise) {
        result.hours[Prayer::imsak] = adjustedSunrise - share(HighLatitudeRule::angleBased, angles.fajr, night);
        result.estimated[Prayer::imsak] = true;
    }
    for (size_t i = 1; i < result.hours.size(); ++i) {
        if (result.hours[i] < result.hours[i - 1]) {
            result.hours[i] = result.hours[i - 1];
            result.estimated[i] = true;
        }
    }
    return result;
}

DayTimes dayTimes(const DayKey &day, const Resolved &resolved, int offsetSeconds)
{
    const Instant utcMidnight = day.start(TimeZone::utc());
    DayTimes result{day, {}, std::nullopt, resolved.estimated};
    const std::array<double, 6> minutes = spacedMinutes(resolved.hours, result.estimated);
    for (const Prayer::Value prayer : Prayer::all)
        result.times[prayer] = utcMidnight + minutes[prayer] * 60 - offsetSeconds;
    return result;
}

std::array<double, 6> spacedMinutes(const std::array<double, 6> &hours, std::array<bool, 6> &estimated)
{
    std::array<double, 6> minutes{};
    for (size_t i = 0; i < hours.size(); ++i) {
        minutes[i] = std::round(hours[i] * 60);
        if (i > 0 && minutes[i] < minutes[i - 1] + 1) {
            minutes[i] = minutes[i - 1] + 1;
            estimated[i] = true;
        }
    }
    return minutes;
}

} // namespace orvel::HighLatitude
