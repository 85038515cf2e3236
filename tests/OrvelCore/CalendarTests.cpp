#include "Calendars.h"
#include "DayKey.h"
#include "HijriDate.h"
#include "Ramadan.h"
#include "TimeZone.h"

#include <gtest/gtest.h>

using namespace orvel;

namespace {

Instant utc(int64_t year, int64_t month, int64_t day, int64_t hour = 0, int64_t minute = 0, int64_t second = 0)
{
    return Instant::fromUnix(static_cast<double>(Calendars::daysFromCivil(year, month, day) * 86400 + hour * 3600 + minute * 60 + second));
}

const TimeZone berlin = TimeZone::named("Europe/Berlin");
const TimeZone santiago = TimeZone::named("America/Santiago");

} // namespace

TEST(Calendars, gregorianDayNumbers)
{
    EXPECT_EQ(Calendars::daysFromCivil(1970, 1, 1), 0);
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
}

TEST(Calendars, civilTimeAndStartOfDayAroundClockChanges)
{
    // Spring forward at 02:00 CET; fall back at 03:00 CEST, so 02:30 is read twice.
    EXPECT_EQ(Calendars::civil(utc(2025, 3, 30, 1), berlin), (CivilTime{2025, 3, 30, 3, 0, 0}));
    EXPECT_EQ(Calendars::civil(utc(2025, 10, 26, 0, 30), berlin), (CivilTime{2025, 10, 26, 2, 30, 0}));
    EXPECT_EQ(Calendars::civil(utc(2025, 10, 26, 1, 30), berlin), (CivilTime{2025, 10, 26, 2, 30, 0}));
    EXPECT_EQ(Calendars::civil(utc(1969, 12, 31, 23, 59, 59), TimeZone::utc()), (CivilTime{1969, 12, 31, 23, 59, 59}));

    EXPECT_EQ(Calendars::startOfDay(2025, 6, 21, TimeZone::named("Europe/Istanbul")), utc(2025, 6, 20, 21));
    // Days whose change happens after midnight start at 00:00 of the old offset.
    EXPECT_EQ(Calendars::startOfDay(2025, 3, 30, berlin), utc(2025, 3, 29, 23));
    EXPECT_EQ(Calendars::startOfDay(2025, 10, 26, berlin), utc(2025, 10, 25, 22));

    // Santiago jumps from 00:00 straight to 01:00: the day begins at 01:00.
    const Instant santiagoStart = Calendars::startOfDay(2024, 9, 8, santiago);
    EXPECT_EQ(santiagoStart, utc(2024, 9, 8, 4));
    EXPECT_EQ(Calendars::civil(santiagoStart - 1, santiago), (CivilTime{2024, 9, 7, 23, 59, 59}));

    // Santiago falls back at midnight: 00:00 then exists once, after the repeated hour.
    const Instant autumnStart = Calendars::startOfDay(2025, 4, 6, santiago);
    EXPECT_EQ(autumnStart, utc(2025, 4, 6, 4));
    EXPECT_EQ(DayKey::from(autumnStart - 1, santiago), (DayKey{2025, 4, 5}));

    // ISO 8601 carries the offset in force at the instant, half hours and west of Greenwich too.
    EXPECT_EQ(Calendars::iso8601(utc(2025, 10, 26, 0, 30), berlin), "2025-10-26T02:30:00+02:00");
    EXPECT_EQ(Calendars::iso8601(utc(2025, 10, 26, 1, 30), berlin), "2025-10-26T02:30:00+01:00");
    EXPECT_EQ(Calendars::iso8601(utc(2025, 6, 21, 6, 5, 9), TimeZone::named("America/St_Johns")), "2025-06-21T03:35:09-02:30");
    EXPECT_EQ(Calendars::iso8601(utc(2025, 6, 21, 18, 40), TimeZone::named("Asia/Kolkata")), "2025-06-22T00:10:00+05:30");
}

// Official first days of Ramadan in the Umm al-Qura calendar of Saudi Arabia.
TEST(HijriDate, approximationFollowsUmmAlQuraAndNames)
{
    const struct { int64_t year; DayKey first; int64_t lastOfShaban; } starts[] = {
        {1441, {2020, 4, 24}, 30}, {1444, {2023, 3, 23}, 30}, {1445, {2024, 3, 11}, 29}, {1446, {2025, 3, 1}, 29}, {1447, {2026, 2, 18}, 29},
    };
    for (const auto &start : starts) {
        SCOPED_TRACE(start.first.description());
        // Reckoned at noon UTC: the local midnight of a zone east of Greenwich must not pull
        // the date back a day.
        EXPECT_EQ(HijriDate::approximate(start.first), (HijriDate{1, 9, start.year}));
        EXPECT_EQ(HijriDate::approximate(start.first.adding(-1)), (HijriDate{start.lastOfShaban, 8, start.year}));
        const auto days = Ramadan::candidateDays(start.year);
        ASSERT_EQ(days.size(), 34u);
        EXPECT_EQ(days[2], start.first);
    }
    EXPECT_EQ(HijriDate::approximate({2025, 3, 30}), (HijriDate{1, 10, 1446}));

    const Instant firstOfRamadan = utc(2025, 3, 1);
    EXPECT_EQ(Calendars::fromUmmAlQura(1446, 9, 1), firstOfRamadan);
    EXPECT_EQ(Calendars::fromUmmAlQura(1446, 10, 1), firstOfRamadan + 29 * 86400);
    EXPECT_FALSE(Calendars::fromUmmAlQura(1446, 13, 1).has_value());
    EXPECT_FALSE(Calendars::fromUmmAlQura(1446, 9, 0).has_value());

    EXPECT_EQ((HijriDate{29, 8, 1446}.formatted()), "29 Şaban 1446");
    // A month number out of range from the service is clamped, never an index out of bounds.
    EXPECT_EQ((HijriDate{1, -3, 1447}.monthName()), "Muharrem");
    EXPECT_EQ((HijriDate{1, 13, 1447}.monthName()), "Zilhicce");
}

TEST(Ramadan, daysOfTheMonthAndCandidateDays)
{
    const DayKey day{2025, 3, 1};
    const auto withHijri = [](const DayKey &on, std::optional<HijriDate> hijri) { return DayTimes{on, {}, hijri}; };
    EXPECT_EQ(Ramadan::dayNumber(withHijri(day, HijriDate{30, 8, 1446})), std::nullopt);
    EXPECT_TRUE(Ramadan::isRamadan(withHijri(day, HijriDate{30, 9, 1446})));
    EXPECT_FALSE(Ramadan::isRamadan(withHijri(day, HijriDate{1, 10, 1446})));
    // Without a stored date the calendar decides.
    EXPECT_EQ(Ramadan::dayNumber(withHijri({2025, 3, 26}, std::nullopt)), 26);

    EXPECT_TRUE(Ramadan::isKadirEve(withHijri(day, HijriDate{26, 9, 1446})));
    EXPECT_FALSE(Ramadan::isKadirEve(withHijri(day, HijriDate{27, 9, 1446})));
    EXPECT_TRUE(Ramadan::isKadirEve(withHijri({2025, 3, 26}, std::nullopt)));

    EXPECT_EQ(Ramadan::upcomingYear(withHijri(day, HijriDate{29, 8, 1446})), 1446);
    EXPECT_EQ(Ramadan::upcomingYear(withHijri(day, HijriDate{1, 10, 1446})), 1447);

    // 1 Ramadan 1452 is 26 December 2030: the candidates run across the year's end.
    const auto days = Ramadan::candidateDays(1452);
    ASSERT_EQ(days.size(), 34u);
    EXPECT_EQ(days.front(), (DayKey{2030, 12, 24}));
    EXPECT_EQ(days[2], (DayKey{2030, 12, 26}));
    EXPECT_EQ(days.back(), (DayKey{2031, 1, 26}));
    EXPECT_TRUE(Ramadan::candidateDays(0).empty());
    EXPECT_TRUE(Ramadan::candidateDays(4294967296LL + 1446).empty());
}
