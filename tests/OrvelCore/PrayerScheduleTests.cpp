#include "PrayerSchedule.h"
#include "TimeZone.h"

#include <gtest/gtest.h>

using namespace orvel;

namespace {

Instant at(const DayKey &day, int hour, int minute)
{
    return day.start(TimeZone::named("Europe/Istanbul")) + hour * 3600 + minute * 60;
}

// İstanbul, 21 June 2025: 03:21 05:32 13:13 17:12 20:39 22:33.
const DayKey june21{2025, 6, 21};
const DayTimes today{
    june21, {at(june21, 3, 21), at(june21, 5, 32), at(june21, 13, 13), at(june21, 17, 12), at(june21, 20, 39), at(june21, 22, 33)}, {}};

PrayerStatus status(Instant now, const std::optional<DayTimes> &tomorrow = std::nullopt)
{
    return PrayerSchedule::status(now, today, tomorrow);
}

} // namespace

TEST(PrayerSchedule, statusThroughTheDay)
{
    const PrayerStatus beforeImsak = status(today[Prayer::imsak] - 1);
    EXPECT_EQ(beforeImsak, (PrayerStatus{std::nullopt, std::nullopt, Prayer::imsak, today[Prayer::imsak], false, 0, 1}));

    // A time that is due now has already entered; the count refers to the one after it.
    const PrayerStatus atOgle = status(today[Prayer::ogle]);
    EXPECT_EQ(atOgle.current, Prayer::ogle);
    EXPECT_EQ(atOgle.currentTime, today[Prayer::ogle]);
    EXPECT_EQ(atOgle.next, Prayer::ikindi);
    EXPECT_EQ(atOgle.minutesRemaining, 239);
    EXPECT_NEAR(atOgle.dayProgress, (13 * 60 + 13 - (3 * 60 + 21)) / (22 * 60 + 33.0 - (3 * 60 + 21)), 1e-12);

    EXPECT_EQ(status(at(june21, 9, 0)).current, Prayer::gunes);
    EXPECT_EQ(status(at(june21, 9, 0)).next, Prayer::ogle);
    EXPECT_EQ(status(today[Prayer::ikindi] - 90.5).minutesRemaining, 2);
    EXPECT_EQ(status(today[Prayer::ikindi] - 60).minutesRemaining, 1);

    // After Yatsı: tomorrow's own İmsak when it is loaded, else today's a day later.
    const Instant night = today[Prayer::yatsi] + 3600;
    EXPECT_EQ(status(night), (PrayerStatus{Prayer::yatsi, today[Prayer::yatsi], Prayer::imsak, today[Prayer::imsak] + 86400, true, 1, 228}));
    DayTimes tomorrow = today;
    tomorrow.times[Prayer::imsak] = today[Prayer::imsak] + 86400 + 60;
    EXPECT_EQ(status(night, tomorrow).nextTime, tomorrow[Prayer::imsak]);
    EXPECT_EQ(status(night, tomorrow).minutesRemaining, 229);
}

TEST(PrayerSchedule, adhanMomentAndOddDays)
{
    const auto adhan = [](Instant now) { return status(now).isAdhanMoment(now); };
    EXPECT_TRUE(adhan(today[Prayer::aksam] + 30));
    EXPECT_FALSE(adhan(today[Prayer::aksam] + 60));
    EXPECT_TRUE(adhan(today[Prayer::imsak]));
    EXPECT_FALSE(adhan(today[Prayer::gunes] + 30));
    EXPECT_FALSE(adhan(today[Prayer::imsak] - 30));

    // Times out of order are not sorted: the latest prayer in day order that has passed wins.
    DayTimes shuffled = today;
    std::swap(shuffled.times[Prayer::ogle], shuffled.times[Prayer::ikindi]);
    EXPECT_EQ(PrayerSchedule::status(at(june21, 15, 0), shuffled, std::nullopt).current, Prayer::ikindi);

    DayTimes flat = today;
    flat.times.fill(today[Prayer::ogle]);
    EXPECT_EQ(PrayerSchedule::status(today[Prayer::ogle] + 10, flat, std::nullopt).dayProgress, 0);
}
