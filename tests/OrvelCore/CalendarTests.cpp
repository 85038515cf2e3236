#include "Calendars.h"
#include "DayKey.h"
#include "TimeZone.h"

#include <gtest/gtest.h>

using namespace orvel;

namespace {

Instant utc(int64_t year, int64_t month, int64_t day, int64_t hour = 0, int64_t minute = 0, int64_t second = 0)
{
    return Instant::fromUnix(static_cast<double>(Calendars::daysFromCivil(year, month, day) * 86400 + hour * 3600 + minute * 60 + second));
}

TimeZone zone(const char *id)
{
    const auto found = TimeZone::known(id);
    EXPECT_TRUE(found.has_value()) << id;
    return found ? *found : TimeZone::utc();
}

} // namespace

TEST(Calendars, gregorianDayNumbers)
{
    EXPECT_EQ(Calendars::daysFromCivil(1970, 1, 1), 0);
    EXPECT_EQ(Calendars::daysFromCivil(2001, 1, 1), 11323);
    EXPECT_EQ(Calendars::daysFromCivil(1969, 12, 31), -1);
    EXPECT_EQ(Calendars::civilFromDays(-1), (CalendarDate{1969, 12, 31}));
    EXPECT_EQ(Calendars::civilFromDays(Calendars::daysFromCivil(2000, 2, 29)), (CalendarDate{2000, 2, 29}));

    // Every day of four centuries, both ways, one day apart.
    CalendarDate previous = Calendars::civilFromDays(Calendars::daysFromCivil(1800, 1, 1) - 1);
    for (int64_t n = Calendars::daysFromCivil(1800, 1, 1); n < Calendars::daysFromCivil(2200, 1, 1); ++n) {
        const CalendarDate date = Calendars::civilFromDays(n);
        ASSERT_EQ(Calendars::daysFromCivil(date.year, date.month, date.day), n);
        const bool nextInMonth = date.year == previous.year && date.month == previous.month && date.day == previous.day + 1;
        const bool firstOfNext = date.day == 1 && previous.day == Calendars::daysInMonth(previous.year, previous.month);
        ASSERT_TRUE(nextInMonth || firstOfNext) << n;
        previous = date;
    }

    EXPECT_EQ(Calendars::daysInMonth(1900, 2), 28);
    EXPECT_EQ(Calendars::daysInMonth(2000, 2), 29);
    EXPECT_EQ(Calendars::daysInMonth(2024, 2), 29);
    EXPECT_EQ(Calendars::daysInMonth(2025, 4), 30);
    EXPECT_EQ(Calendars::daysInMonth(2025, 12), 31);
}

TEST(Calendars, civilAroundDaylightSavingChanges)
{
    const TimeZone berlin = zone("Europe/Berlin");
    // Spring forward at 02:00 CET: 01:59:59 is followed by 03:00:00.
    EXPECT_EQ(Calendars::civil(utc(2025, 3, 30, 0, 59, 59), berlin), (CivilTime{2025, 3, 30, 1, 59, 59}));
    EXPECT_EQ(Calendars::civil(utc(2025, 3, 30, 1), berlin), (CivilTime{2025, 3, 30, 3, 0, 0}));
    // Fall back at 03:00 CEST: 02:00–02:59 is read twice.
    EXPECT_EQ(Calendars::civil(utc(2025, 10, 26, 0, 30), berlin), (CivilTime{2025, 10, 26, 2, 30, 0}));
    EXPECT_EQ(Calendars::civil(utc(2025, 10, 26, 1, 30), berlin), (CivilTime{2025, 10, 26, 2, 30, 0}));
    EXPECT_EQ(berlin.offsetSeconds(utc(2025, 10, 26, 0, 30)), 7200);
    EXPECT_EQ(berlin.offsetSeconds(utc(2025, 10, 26, 1, 30)), 3600);
    // Before 1970 and in a zone west of Greenwich.
    EXPECT_EQ(Calendars::civil(utc(1969, 12, 31, 23, 59, 59), TimeZone::utc()), (CivilTime{1969, 12, 31, 23, 59, 59}));
    EXPECT_EQ(Calendars::civil(utc(2025, 11, 2, 6), zone("America/New_York")), (CivilTime{2025, 11, 2, 1, 0, 0}));

    // The same instant is a different calendar day in different zones.
    const Instant lateEvening = utc(2025, 6, 20, 22, 30);
    EXPECT_EQ(DayKey::from(lateEvening, zone("Europe/Istanbul")), (DayKey{2025, 6, 21}));
    EXPECT_EQ(DayKey::from(lateEvening, TimeZone::utc()), (DayKey{2025, 6, 20}));
    EXPECT_EQ(DayKey::from(lateEvening, zone("America/New_York")), (DayKey{2025, 6, 20}));
}

TEST(Calendars, startOfDay)
{
    EXPECT_EQ(Calendars::startOfDay(2025, 6, 21, zone("Europe/Istanbul")), utc(2025, 6, 20, 21));
    EXPECT_EQ(Calendars::startOfDay(2025, 6, 21, TimeZone::utc()), utc(2025, 6, 21));
    // Days whose change happens after midnight start at 00:00 of the old offset.
    EXPECT_EQ(Calendars::startOfDay(2025, 3, 30, zone("Europe/Berlin")), utc(2025, 3, 29, 23));
    EXPECT_EQ(Calendars::startOfDay(2025, 10, 26, zone("Europe/Berlin")), utc(2025, 10, 25, 22));

    // Santiago and Beirut jump from 00:00 straight to 01:00: the day begins at 01:00.
    const TimeZone santiago = zone("America/Santiago");
    const Instant santiagoStart = Calendars::startOfDay(2024, 9, 8, santiago);
    EXPECT_EQ(santiagoStart, utc(2024, 9, 8, 4));
    EXPECT_EQ(Calendars::civil(santiagoStart, santiago), (CivilTime{2024, 9, 8, 1, 0, 0}));
    EXPECT_EQ(Calendars::civil(santiagoStart - 1, santiago), (CivilTime{2024, 9, 7, 23, 59, 59}));
    EXPECT_EQ(Calendars::startOfDay(2024, 9, 9, santiago) - santiagoStart, 23 * 3600);

    const TimeZone beirut = zone("Asia/Beirut");
    const Instant beirutStart = Calendars::startOfDay(2025, 3, 30, beirut);
    EXPECT_EQ(Calendars::civil(beirutStart, beirut), (CivilTime{2025, 3, 30, 1, 0, 0}));
    EXPECT_EQ(DayKey::from(beirutStart - 1, beirut), (DayKey{2025, 3, 29}));

    // Santiago falls back at midnight: 00:00 then exists once, after the repeated hour.
    const Instant autumnStart = Calendars::startOfDay(2025, 4, 6, santiago);
    EXPECT_EQ(autumnStart, utc(2025, 4, 6, 4));
    EXPECT_EQ(DayKey::from(autumnStart - 1, santiago), (DayKey{2025, 4, 5}));
}

TEST(Calendars, zonesByName)
{
    EXPECT_FALSE(TimeZone::known("Nowhere/Atlantis").has_value());
    EXPECT_FALSE(TimeZone::known("").has_value());
    EXPECT_EQ(TimeZone::named("Nowhere/Atlantis").id(), "Europe/Istanbul");
    EXPECT_EQ(TimeZone::named("Asia/Riyadh").id(), "Asia/Riyadh");
    EXPECT_EQ(TimeZone::utc().offsetSeconds(utc(2025, 6, 21)), 0);
    EXPECT_EQ(zone("Asia/Kolkata").offsetSeconds(utc(2025, 6, 21)), 19800);
}

TEST(Calendars, ummAlQura)
{
    // 1 Ramadan 1446 was Saturday 1 March 2025 in Saudi Arabia.
    EXPECT_EQ(Calendars::ummAlQura(utc(2025, 3, 1, 12)), (CalendarDate{1446, 9, 1}));
    EXPECT_EQ(Calendars::ummAlQura(utc(2025, 2, 28, 23, 59, 59)), (CalendarDate{1446, 8, 29}));
    EXPECT_EQ(Calendars::fromUmmAlQura(1446, 9, 1), utc(2025, 3, 1));
    EXPECT_EQ(Calendars::fromUmmAlQura(1446, 10, 1), utc(2025, 3, 30));
    EXPECT_FALSE(Calendars::fromUmmAlQura(1446, 13, 1).has_value());
    EXPECT_FALSE(Calendars::fromUmmAlQura(1446, 9, 0).has_value());
}
