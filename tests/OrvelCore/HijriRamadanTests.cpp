#include "HijriDate.h"
#include "Ramadan.h"

#include <gtest/gtest.h>

using namespace orvel;

namespace {

DayTimes withHijri(const DayKey &day, std::optional<HijriDate> hijri)
{
    return {day, {}, hijri};
}

} // namespace

// Official first days of Ramadan in the Umm al-Qura calendar of Saudi Arabia.
TEST(HijriDate, approximationFollowsUmmAlQura)
{
    const struct {
        int64_t year;
        DayKey first;
        int64_t lastOfShaban;
    } starts[] = {
        {1441, {2020, 4, 24}, 30},
        {1444, {2023, 3, 23}, 30},
        {1445, {2024, 3, 11}, 29},
        {1446, {2025, 3, 1}, 29},
        {1447, {2026, 2, 18}, 29},
    };
    for (const auto &start : starts) {
        // Reckoned at noon UTC: the local midnight of a zone east of Greenwich must not pull
        // the date back a day.
        EXPECT_EQ(HijriDate::approximate(start.first), (HijriDate{1, 9, start.year})) << start.first.description();
        EXPECT_EQ(HijriDate::approximate(start.first.adding(-1)), (HijriDate{start.lastOfShaban, 8, start.year}));
        const auto days = Ramadan::candidateDays(start.year);
        ASSERT_EQ(days.size(), 34u);
        EXPECT_EQ(days[2], start.first);
    }
    EXPECT_EQ(HijriDate::approximate({2025, 3, 30}), (HijriDate{1, 10, 1446}));
}

TEST(Ramadan, daysOfTheMonth)
{
    const DayKey day{2025, 3, 1};
    EXPECT_EQ(Ramadan::dayNumber(withHijri(day, HijriDate{30, 8, 1446})), std::nullopt);
    EXPECT_EQ(Ramadan::dayNumber(withHijri(day, HijriDate{1, 9, 1446})), 1);
    EXPECT_FALSE(Ramadan::isRamadan(withHijri(day, HijriDate{30, 8, 1446})));
    EXPECT_TRUE(Ramadan::isRamadan(withHijri(day, HijriDate{30, 9, 1446})));
    EXPECT_FALSE(Ramadan::isRamadan(withHijri(day, HijriDate{1, 10, 1446})));
    // Without a stored date the calendar decides.
    EXPECT_EQ(Ramadan::dayNumber(withHijri(day, std::nullopt)), 1);
    EXPECT_EQ(Ramadan::dayNumber(withHijri({2025, 3, 26}, std::nullopt)), 26);

    EXPECT_TRUE(Ramadan::isKadirEve(withHijri(day, HijriDate{26, 9, 1446})));
    EXPECT_FALSE(Ramadan::isKadirEve(withHijri(day, HijriDate{27, 9, 1446})));
    EXPECT_FALSE(Ramadan::isKadirEve(withHijri(day, HijriDate{26, 8, 1446})));
    EXPECT_TRUE(Ramadan::isKadirEve(withHijri({2025, 3, 26}, std::nullopt)));

    EXPECT_EQ(Ramadan::upcomingYear(withHijri(day, HijriDate{15, 9, 1446})), 1446);
    EXPECT_EQ(Ramadan::upcomingYear(withHijri(day, HijriDate{29, 8, 1446})), 1446);
    EXPECT_EQ(Ramadan::upcomingYear(withHijri(day, HijriDate{1, 10, 1446})), 1447);
    EXPECT_EQ(Ramadan::upcomingYear(withHijri(day, HijriDate{29, 12, 1446})), 1447);
}

TEST(Ramadan, candidateDaysRunAcrossYearEnds)
{
    // 1 Ramadan 1452 is 26 December 2030.
    const auto days = Ramadan::candidateDays(1452);
    ASSERT_EQ(days.size(), 34u);
    EXPECT_EQ(days.front(), (DayKey{2030, 12, 24}));
    EXPECT_EQ(days[2], (DayKey{2030, 12, 26}));
    EXPECT_EQ(days.back(), (DayKey{2031, 1, 26}));
    for (size_t i = 1; i < days.size(); ++i)
        EXPECT_EQ(days[i], days[i - 1].adding(1));

    EXPECT_TRUE(Ramadan::candidateDays(0).empty());
    EXPECT_TRUE(Ramadan::candidateDays(4294967296LL + 1446).empty());
}
