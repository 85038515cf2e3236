#include "ReligiousDays.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <string>
#include <utility>
#include <vector>

using namespace orvel;

namespace {

std::vector<std::pair<std::string, std::string>> published(const std::string &file)
{
    std::ifstream in(std::string(ORVEL_DIYANET_DIR) + "/" + file);
    std::vector<std::pair<std::string, std::string>> days;
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line.front() == '#')
            continue;
        const size_t tab = line.find('\t');
        days.emplace_back(line.substr(0, tab), line.substr(tab + 1));
    }
    return days;
}

std::vector<std::pair<std::string, std::string>> computed(int64_t year, CalculationMethod method,
                                                          int64_t correction = 0)
{
    std::vector<std::pair<std::string, std::string>> days;
    for (const ReligiousDay &day : ReligiousDays::inYear(year, method, correction))
        days.emplace_back(day.date.description(), day.name);
    return days;
}

} // namespace

// Diyanet's own list, date and name, from its own calendar; a night on the date of its evening,
// the Regaib night on the Thursday before the first Friday of Recep.
TEST(ReligiousDays, DiyanetsListOf2026)
{
    const auto expected = published("religious-days-2026.tsv");
    ASSERT_EQ(expected.size(), 18u);
    EXPECT_EQ(computed(2026, CalculationMethod::diyanet), expected);
}

// The Hijri correction moves the days with the dates: a day later in the calendar is a day
// earlier on the Gregorian one.
TEST(ReligiousDays, TheCorrectionMovesThemWithTheDates)
{
    const auto moved = ReligiousDays::inYear(2026, CalculationMethod::diyanet, 1);
    const auto bayram = std::find_if(moved.begin(), moved.end(),
                                     [](const ReligiousDay &day) { return day.name == "Ramazan Bayramı (1. Gün)"; });
    ASSERT_NE(bayram, moved.end());
    EXPECT_EQ(bayram->date, (DayKey{2026, 3, 19}));
    EXPECT_EQ(bayram->hijri, (HijriDate{1, 10, 1447}));
}

// Other methods take the Umm al-Qura calendar, whose months may start a day apart from
// Diyanet's: each night stands on the evening before its date in that calendar.
TEST(ReligiousDays, OtherMethodsFollowUmmAlQura)
{
    const std::map<std::string, std::pair<int64_t, int64_t>> nights{
        {"Miraç Kandili", {7, 27}}, {"Berat Kandili", {8, 15}}, {"Kadir Gecesi", {9, 27}}, {"Mevlid Kandili", {3, 12}}};
    int checked = 0;
    for (const ReligiousDay &day : ReligiousDays::inYear(2027, CalculationMethod::mwl)) {
        EXPECT_EQ(day.hijri, HijriDate::approximate(day.date)) << day.name;
        const auto night = nights.find(day.name);
        if (night == nights.end())
            continue;
        const HijriDate next = HijriDate::approximate(day.date.adding(1));
        EXPECT_EQ(std::pair(next.month, next.day), night->second) << day.name;
        ++checked;
    }
    EXPECT_GE(checked, 4); // a night may come twice in a Gregorian year
}

TEST(ReligiousDays, WhatThePanelSaysOnTheDay)
{
    const auto on = [](DayKey day) {
        std::vector<std::string> lines;
        for (const ReligiousDay &found : ReligiousDays::on(day, CalculationMethod::diyanet))
            lines.push_back(found.headline());
        return lines;
    };
    EXPECT_EQ(on({2026, 2, 2}), std::vector<std::string>{"Bu gece Berat Kandili"});
    EXPECT_EQ(on({2026, 5, 28}), std::vector<std::string>{"Kurban Bayramı 2. günü"});
    EXPECT_EQ(on({2026, 3, 19}), std::vector<std::string>{"Ramazan Bayramı Arefesi"});
    EXPECT_EQ(on({2026, 12, 10}), (std::vector<std::string>{"Üç Ayların Başlangıcı", "Bu gece Regaib Kandili"}));
    EXPECT_EQ(on({2026, 3, 10}), std::vector<std::string>{});
}
