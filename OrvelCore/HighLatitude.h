#pragma once

#include "DayKey.h"
#include "DayTimes.h"
#include "HighLatitudeRule.h"

#include <array>
#include <functional>
#include <optional>

namespace orvel {

// Makes one day's six times exist and stand in order wherever the sun misbehaves.
namespace HighLatitude {

using Hours = std::array<std::optional<double>, 6>; // local clock hours; unset: never reached

struct Resolved {
    std::array<double, 6> hours{};
    std::array<bool, 6> estimated{};

    bool operator==(const Resolved &) const = default;
};

struct Angles {
    double fajr = 18;                 // degrees below the horizon
    std::optional<double> isha = 17;  // unset: Yatsı is a fixed interval and always exists
    // Minutes from Akşam to Yatsı for such a method: kept where Akşam is borrowed too.
    std::optional<double> ishaInterval;
    // Methods whose İmsak and Yatsı never lie further from the night's ends than the rule's share
    // (the calculator's old convention); Diyanet's rule uses the share only where the angle fails.
    bool capByShare = false;
    // Minutes added to each time (a method's adjustments, Diyanet's temkin) before the order is
    // checked.
    std::array<double, 6> adjustments{};
};

// `hoursAt` gives the six hours at a latitude of the same day. Where Güneş, İkindi or Akşam do not
// exist, those of the nearest latitude where all three do stand in; where İmsak or Yatsı do not,
// the rule sets them from the night; an estimated time is marked. The hours returned include the
// adjustments.
Resolved resolve(double latitude, const std::function<Hours(double)> &hoursAt, Angles angles, HighLatitudeRule rule);

// The hours as whole minutes of the day (nearest, halves away from zero), each at least a minute
// after the one before; a time moved for that is marked estimated.
std::array<double, 6> spacedMinutes(const std::array<double, 6> &hours, std::array<bool, 6> &estimated);
// The day's six instants from its resolved hours, reckoned with the zone's offset at local noon
// (`offsetSeconds`) and turned back with it, so that on a clock-change day each time lands on its
// real moment.
DayTimes dayTimes(const DayKey &day, const Resolved &resolved, int offsetSeconds);

} // namespace HighLatitude

} // namespace orvel
