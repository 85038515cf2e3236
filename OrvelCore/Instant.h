#pragma once

#include <compare>

namespace orvel {

// An absolute point in time: seconds since 2001-01-01T00:00:00Z. Cache files and settings
// store instants in this form, so it must not change.
struct Instant {
    double seconds = 0;

    static constexpr double unixEpochOffset = 978307200.0; // 1970-01-01 → 2001-01-01

    static constexpr Instant fromUnix(double unixSeconds) { return {unixSeconds - unixEpochOffset}; }
    constexpr double unixSeconds() const { return seconds + unixEpochOffset; }
    // ICU's UDate: milliseconds since 1970.
    constexpr double udate() const { return unixSeconds() * 1000.0; }
    static constexpr Instant fromUdate(double udate) { return fromUnix(udate / 1000.0); }

    constexpr Instant operator+(double s) const { return {seconds + s}; }
    constexpr Instant operator-(double s) const { return {seconds - s}; }
    constexpr double operator-(Instant other) const { return seconds - other.seconds; }

    // Rounded down to the whole minute.
    Instant floorToMinute() const;
    // Rounded to the nearest whole minute.
    Instant nearestMinute() const;

    auto operator<=>(const Instant &) const = default;
};

} // namespace orvel
