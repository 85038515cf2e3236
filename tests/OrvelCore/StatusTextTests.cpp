#include "StatusText.h"
#include "TimeZone.h"

#include <gtest/gtest.h>

using namespace orvel;

namespace {

const TimeZone istanbul = TimeZone::named("Europe/Istanbul");

DayTimes dayAt(const DayKey &day, std::optional<HijriDate> hijri = std::nullopt)
{
    const Instant start = day.start(istanbul);
    const auto at = [&](int hour, int minute) { return start + hour * 3600 + minute * 60; };
    return {day, {at(3, 21), at(5, 25), at(13, 11), at(17, 12), at(20, 47), at(22, 33)}, hijri};
}

// 29 Şaban and 1 Ramazan 1446 as the service would date them.
const DayTimes lastOfSaban = dayAt({2025, 2, 28}, HijriDate{29, 8, 1446});
const DayTimes firstOfRamadan = dayAt({2025, 3, 1}, HijriDate{1, 9, 1446});

} // namespace

TEST(StatusText, titleForEachStyle)
{
    const Instant now = lastOfSaban[Prayer::aksam] - 75 * 60;
    const PrayerStatus status = PrayerSchedule::status(now, lastOfSaban, firstOfRamadan);
    EXPECT_EQ(StatusText::title(MenuBarStyle::nameAndRemaining, status, false, istanbul), "Akşam 1:15");
    EXPECT_EQ(StatusText::title(MenuBarStyle::nameAndRemaining, status, true, istanbul), "İftar 1:15");
    EXPECT_EQ(StatusText::title(MenuBarStyle::remaining, status, true, istanbul), "1:15");
    EXPECT_EQ(StatusText::title(MenuBarStyle::nameAndTime, status, false, istanbul), "Akşam 20:47");
    // The clock time is the place's, not the machine's.
    EXPECT_EQ(StatusText::title(MenuBarStyle::nameAndTime, status, false, TimeZone::named("Europe/Berlin")), "Akşam 18:47");
    EXPECT_EQ(StatusText::title(MenuBarStyle::iconOnly, status, false, istanbul), std::nullopt);
}

TEST(StatusText, entryAnnouncementLastsTheFirstMinute)
{
    const auto announcement = [](Instant now, bool ramadan = false) {
        return StatusText::entryAnnouncement(PrayerSchedule::status(now, lastOfSaban, std::nullopt), now, ramadan);
    };
    const Instant ogle = lastOfSaban[Prayer::ogle];
    EXPECT_EQ(announcement(ogle), "Öğle vakti");
    EXPECT_EQ(announcement(ogle + 59.5), "Öğle vakti");
    EXPECT_EQ(announcement(ogle + 60), std::nullopt);
    EXPECT_EQ(announcement(ogle - 1), std::nullopt);
    EXPECT_EQ(announcement(lastOfSaban[Prayer::gunes] + 10), std::nullopt);
    EXPECT_EQ(announcement(lastOfSaban[Prayer::imsak] - 10), std::nullopt);
    EXPECT_EQ(announcement(lastOfSaban[Prayer::aksam] + 5, true), "İftar vakti");
    EXPECT_EQ(announcement(lastOfSaban[Prayer::yatsi] + 5, true), "Yatsı vakti");
}

TEST(StatusText, accessibilityLabel)
{
    EXPECT_EQ(StatusText::accessibilityLabel(std::nullopt, false, true), "Orvel");
    const PrayerStatus beforeAksam = PrayerSchedule::status(lastOfSaban[Prayer::aksam] - 75 * 60, lastOfSaban, std::nullopt);
    EXPECT_EQ(StatusText::accessibilityLabel(beforeAksam, false, false), "Akşam ezanına 1 saat 15 dakika kaldı");
    EXPECT_EQ(StatusText::accessibilityLabel(beforeAksam, true, true), "İftara 1 saat 15 dakika kaldı, kerahat vakti");
    const PrayerStatus beforeImsak = PrayerSchedule::status(lastOfSaban[Prayer::imsak] - 45 * 60, lastOfSaban, std::nullopt);
    EXPECT_EQ(StatusText::accessibilityLabel(beforeImsak, true, false), "Sahurun bitmesine 45 dakika kaldı");
}

TEST(StatusText, ramadanFlagsFollowTheDayOfTheNextTime)
{
    EXPECT_FALSE(StatusText::isRamadanToday(true, lastOfSaban));
    EXPECT_TRUE(StatusText::isRamadanToday(true, firstOfRamadan));
    EXPECT_FALSE(StatusText::isRamadanToday(false, firstOfRamadan));
    EXPECT_FALSE(StatusText::isRamadanToday(true, std::nullopt));
    // The stored Hijri date wins: Umm al-Qura makes 1 March 2025 the first of Ramadan, the service may not.
    EXPECT_FALSE(StatusText::isRamadanToday(true, dayAt({2025, 3, 1}, HijriDate{30, 8, 1446})));

    // After Yatsı on the eve of Ramadan the next time is the first Sahur.
    const PrayerStatus night = PrayerSchedule::status(lastOfSaban[Prayer::yatsi] + 60, lastOfSaban, firstOfRamadan);
    ASSERT_TRUE(night.nextIsTomorrow);
    EXPECT_TRUE(StatusText::nextIsRamadan(true, night, lastOfSaban, firstOfRamadan));
    EXPECT_FALSE(StatusText::nextIsRamadan(false, night, lastOfSaban, firstOfRamadan));
    EXPECT_FALSE(StatusText::nextIsRamadan(true, night, lastOfSaban, std::nullopt));

    const PrayerStatus evening = PrayerSchedule::status(lastOfSaban[Prayer::aksam] - 60, lastOfSaban, firstOfRamadan);
    EXPECT_FALSE(StatusText::nextIsRamadan(true, evening, lastOfSaban, firstOfRamadan));
    EXPECT_FALSE(StatusText::nextIsRamadan(true, std::nullopt, lastOfSaban, firstOfRamadan));

    // On the last evening of Ramadan İftar is still İftar, and the following İmsak is no longer Sahur.
    const DayTimes lastOfRamadan = dayAt({2025, 3, 29}, HijriDate{29, 9, 1446});
    const DayTimes bayram = dayAt({2025, 3, 30}, HijriDate{1, 10, 1446});
    const PrayerStatus iftar = PrayerSchedule::status(lastOfRamadan[Prayer::aksam] - 60, lastOfRamadan, bayram);
    EXPECT_TRUE(StatusText::nextIsRamadan(true, iftar, lastOfRamadan, bayram));
    const PrayerStatus lastNight = PrayerSchedule::status(lastOfRamadan[Prayer::yatsi] + 60, lastOfRamadan, bayram);
    EXPECT_FALSE(StatusText::nextIsRamadan(true, lastNight, lastOfRamadan, bayram));
}
