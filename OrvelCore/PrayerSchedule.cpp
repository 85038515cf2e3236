#include "PrayerSchedule.h"

#include "Calendars.h"

#include <algorithm>
#include <cmath>

namespace orvel {

bool PrayerStatus::isAdhanMoment(Instant now) const
{
    if (!current || *current == Prayer::gunes || !currentTime)
        return false;
    return now - *currentTime < 60;
}

namespace PrayerSchedule {

namespace {

// The latest prayer in day order whose instant has come; a time equal to now has entered.
std::optional<Prayer> currentPrayer(Instant now, const DayTimes &today)
{
    for (auto it = Prayer::all.rbegin(); it != Prayer::all.rend(); ++it) {
        if (today[*it] <= now)
            return Prayer(*it);
    }
    return std::nullopt;
}

double dayProgress(Instant now, const DayTimes &today)
{
    const double span = today[Prayer::yatsi] - today[Prayer::imsak];
    if (span <= 0)
        return 0;
    return std::clamp((now - today[Prayer::imsak]) / span, 0.0, 1.0);
}

} // namespace

PrayerStatus status(Instant now, const DayTimes &today, const std::optional<DayTimes> &tomorrow, const TimeZone &zone)
{
    PrayerStatus status;
    status.current = currentPrayer(now, today);
    if (!status.current) {
        status.next = Prayer::imsak;
        status.nextTime = today[Prayer::imsak];
    } else if (const auto following = status.current->nextInDay()) {
        status.currentTime = today[*status.current];
        status.next = *following;
        status.nextTime = today[*following];
    } else {
        status.currentTime = today[Prayer::yatsi];
        status.next = Prayer::imsak;
        status.nextIsTomorrow = true;
        status.nextTime = tomorrow ? (*tomorrow)[Prayer::imsak] : Calendars::nextDay(today[Prayer::imsak], zone);
    }
    status.dayProgress = dayProgress(now, today);
    const double minutes = std::ceil((status.nextTime - now) / 60);
    status.minutesRemaining = std::max<int64_t>(0, static_cast<int64_t>(minutes));
    return status;
}

} // namespace PrayerSchedule

} // namespace orvel
