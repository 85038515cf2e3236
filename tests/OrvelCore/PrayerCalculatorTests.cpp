#include "HighLatitude.h"
#include "OrvelFormat.h"
#include "PrayerCalculator.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace orvel;

namespace {

using Clocks = std::vector<std::string>;

Clocks clocks(const DayKey &day, const Location &place, CalculationMethod method)
{
    Clocks result;
    for (const Instant instant : PrayerCalculator::times(day, place, method).times)
        result.push_back(OrvelFormat::time(instant, place.timeZone()));
    return result;
}

const Location mecca{"Mekke", 21.4225, 39.8262, "Asia/Riyadh"};
const Location oslo{"Oslo", 59.9139, 10.7522, "Europe/Oslo"};
const Location tromso{"Tromsø", 69.6492, 18.9553, "Europe/Oslo"};

} // namespace

TEST(PrayerCalculator, istanbulAndMeccaToTheMinute)
{
    const Location istanbul = Location::istanbul();
    EXPECT_EQ(clocks({2025, 6, 21}, istanbul, CalculationMethod::diyanet), (Clocks{"03:24", "05:25", "13:11", "17:11", "20:47", "22:38"}));
    // Diyanet's published table for İstanbul.
    EXPECT_EQ(clocks({2025, 12, 21}, istanbul, CalculationMethod::diyanet), (Clocks{"06:46", "08:18", "13:07", "15:25", "17:46", "19:12"}));
    EXPECT_EQ(clocks({2025, 3, 1}, istanbul, CalculationMethod::mwl), (Clocks{"06:07", "07:38", "13:16", "16:25", "18:55", "20:21"}));
    // 1 March 2025 is 1 Ramazan 1446: Umm al-Qura's Yatsı two hours after Akşam.
    EXPECT_EQ(clocks({2025, 3, 1}, mecca, CalculationMethod::ummAlQura), (Clocks{"05:25", "06:41", "12:33", "15:54", "18:25", "20:25"}));

    const DayTimes meccaDay = PrayerCalculator::times({2025, 3, 1}, mecca, CalculationMethod::ummAlQura);
    EXPECT_EQ(meccaDay[Prayer::yatsi] - meccaDay[Prayer::aksam], 120 * 60);
    EXPECT_FALSE(meccaDay.hijri.has_value());
}

TEST(PrayerCalculator, highLatitudesUseNightPortions)
{
    // Oslo at midsummer: the sun never reaches 18° or 17° below the horizon, so İmsak and Yatsı
    // are estimated from the night; Yatsı falls after midnight, on the next calendar day.
    const DayTimes osloDay = PrayerCalculator::times({2025, 6, 21}, oslo, CalculationMethod::mwl);
    EXPECT_EQ(clocks({2025, 6, 21}, oslo, CalculationMethod::mwl).back(), "00:12");
    EXPECT_EQ(DayKey::from(osloDay[Prayer::yatsi], oslo.timeZone()), (DayKey{2025, 6, 22}));
    EXPECT_EQ(osloDay.estimated, (std::array<bool, 6>{true, false, false, false, false, true}));

    // Tromsø has midnight sun: sunrise and sunset come from the nearest latitude that has them.
    const DayTimes tromsoDay = PrayerCalculator::times({2025, 6, 21}, tromso, CalculationMethod::diyanet);
    EXPECT_TRUE(tromsoDay.isEstimated(Prayer::gunes));
    EXPECT_TRUE(tromsoDay.isEstimated(Prayer::aksam));
    EXPECT_FALSE(tromsoDay.isEstimated(Prayer::ogle));

    // An interval method keeps its Yatsı even where the angle rule would step in.
    const DayTimes osloUmmAlQura = PrayerCalculator::times({2025, 6, 21}, oslo, CalculationMethod::ummAlQura);
    EXPECT_EQ(osloUmmAlQura[Prayer::yatsi] - osloUmmAlQura[Prayer::aksam], 90 * 60);
}

TEST(PrayerCalculator, farNorthKeepsTheTimesInOrderEveryDayOfTheYear)
{
    const Location places[] = {tromso,
                               {"Murmansk", 68.9585, 33.0827, "Europe/Moscow"},
                               {"Reykjavik", 64.1466, -21.9426, "Atlantic/Reykjavik"},
                               oslo};
    for (const Location &place : places) {
        const TimeZone zone = place.timeZone();
        for (const CalculationMethod::Value method : CalculationMethod::all) {
            for (const HighLatitudeRule::Value rule : HighLatitudeRule::all) {
                int unordered = 0;
                for (DayKey day{2026, 1, 1}; day.year == 2026; day = day.adding(1)) {
                    const DayTimes times = PrayerCalculator::times(day, place, method, zone, rule);
                    for (size_t i = 0; i < times.times.size(); ++i) {
                        ASSERT_TRUE(std::isfinite(times.times[i].seconds));
                        EXPECT_EQ(std::fmod(times.times[i].unixSeconds(), 60.0), 0.0);
                        if (i > 0 && times.times[i] < times.times[i - 1])
                            ++unordered;
                    }
                }
                EXPECT_EQ(unordered, 0) << place.name << " " << CalculationMethod(method).id() << " "
                                        << HighLatitudeRule(rule).id();
            }
        }
    }
}

TEST(PrayerCalculator, clockChangeDaysKeepTheRealMoments)
{
    const Location berlin{"Berlin", 52.52, 13.405, "Europe/Berlin"};
    const Location newYork{"New York", 40.7128, -74.006, "America/New_York"};
    const Location sydney{"Sydney", -33.8688, 151.2093, "Australia/Sydney"};
    const Location santiago{"Santiago", -33.4489, -70.6693, "America/Santiago"};
    const Location lordHowe{"Lord Howe", -31.5553, 159.0821, "Australia/Lord_Howe"};
    // Both changes of 2025 in each zone; Santiago changes at midnight, Lord Howe by 30 minutes.
    const std::pair<Location, DayKey> changes[] = {
        {berlin, {2025, 3, 30}},  {berlin, {2025, 10, 26}},  {newYork, {2025, 3, 9}},   {newYork, {2025, 11, 2}},
        {sydney, {2025, 4, 6}},   {sydney, {2025, 10, 5}},   {santiago, {2025, 4, 6}},  {santiago, {2025, 9, 7}},
        {lordHowe, {2025, 4, 6}}, {lordHowe, {2025, 10, 5}}};
    for (const auto &[place, day] : changes) {
        SCOPED_TRACE(place.name + " " + day.description());
        const DayTimes before = PrayerCalculator::times(day.adding(-1), place, CalculationMethod::diyanet);
        const DayTimes on = PrayerCalculator::times(day, place, CalculationMethod::diyanet);
        const DayTimes after = PrayerCalculator::times(day.adding(1), place, CalculationMethod::diyanet);
        for (const Prayer::Value prayer : Prayer::all) {
            // A day later in real time, give or take the sun's few minutes, whatever the clocks did.
            EXPECT_NEAR(on[prayer] - before[prayer], 86400, 4 * 60) << Prayer(prayer).displayName(false);
            EXPECT_NEAR(after[prayer] - on[prayer], 86400, 4 * 60) << Prayer(prayer).displayName(false);
            EXPECT_EQ(std::fmod(on[prayer].unixSeconds(), 60.0), 0.0);
        }
    }
    // The wall clock jumps with the zone: Berlin's İmsak 03:48, then 04:45 in summer time.
    EXPECT_EQ(clocks({2025, 3, 29}, berlin, CalculationMethod::diyanet).front(), "03:48");
    EXPECT_EQ(clocks({2025, 3, 30}, berlin, CalculationMethod::diyanet).front(), "04:45");
    EXPECT_EQ(clocks({2025, 10, 26}, berlin, CalculationMethod::diyanet).front(), "04:57");
}

TEST(PrayerCalculator, unknownZoneFallsBackToTheMachineZone)
{
    const DayTimes expected = PrayerCalculator::times({2025, 6, 21}, Location::istanbul(), CalculationMethod::diyanet);
    Location nowhere = Location::istanbul();
    for (const char *zone : {"Nowhere/Atlantis", ""}) {
        nowhere.timeZoneID = zone;
        EXPECT_EQ(PrayerCalculator::times({2025, 6, 21}, nowhere, CalculationMethod::diyanet).times, expected.times) << zone;
    }
}

TEST(PrayerCalculator, julianDaysAndRounding)
{
    // January and February count as months 13 and 14 of the year before.
    EXPECT_DOUBLE_EQ((DayKey{2024, 2, 29}.julianDay()), 2460369.5);
    EXPECT_DOUBLE_EQ((DayKey{2024, 3, 1}.julianDay()), 2460370.5);
    // The adjustments are in the hours before rounding, and halves round away from zero:
    // 13:10:30 + 5 minutes is 795.5 minutes, 796 (13:16); 792.5 is 793, not the even 792.
    std::array<bool, 6> estimated{};
    const std::array<double, 6> hours{5, 6, 13.175 + 5.0 / 60, 14, 15, 16};
    EXPECT_EQ(HighLatitude::spacedMinutes(hours, estimated)[2], 796);
    EXPECT_EQ(HighLatitude::spacedMinutes({5, 6, 13.125 + 5.0 / 60, 14, 15, 16}, estimated)[2], 793);
    // −7.5 minutes (İmsak before midnight) rounds to −8: away from zero.
    EXPECT_EQ(HighLatitude::spacedMinutes({-0.125, 6, 12, 14, 15, 16}, estimated)[0], -8);
    EXPECT_EQ(estimated, (std::array<bool, 6>{}));
    // A time that would not follow the one before comes a minute after it, and says so.
    const std::array<double, 6> crowded{5, 6, 12, 12, 12.001, 16};
    EXPECT_EQ(HighLatitude::spacedMinutes(crowded, estimated), (std::array<double, 6>{300, 360, 720, 721, 722, 960}));
    EXPECT_EQ(estimated, (std::array<bool, 6>{false, false, false, true, true, false}));
}
