#pragma once

#include "DayTimes.h"
#include "Instant.h"
#include "Prayer.h"
#include "TimeZone.h"

#include <cstdint>
#include <optional>

namespace orvel {

// Which time is in force now, which comes next, and how far the day has advanced.
struct PrayerStatus {
    std::optional<Prayer> current;   // none before today's İmsak
    std::optional<Instant> currentTime;
    Prayer next = Prayer::imsak;
    Instant nextTime;
    bool nextIsTomorrow = false;
    double dayProgress = 0;          // 0…1 from today's İmsak to today's Yatsı
    int64_t minutesRemaining = 0;    // whole minutes until nextTime, rounded up

    // True during the first minute after a time with a call to prayer entered.
    bool isAdhanMoment(Instant now) const;

    bool operator==(const PrayerStatus &) const = default;
};

namespace PrayerSchedule {

// Without tomorrow's times, tomorrow's İmsak is taken at today's wall clock in the zone.
PrayerStatus status(Instant now, const DayTimes &today, const std::optional<DayTimes> &tomorrow, const TimeZone &zone);

} // namespace PrayerSchedule

} // namespace orvel
