#include "Calendars.h"
#include "PrayerCalculator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

using namespace orvel;

namespace {

std::string clock(Instant instant, const TimeZone &zone)
{
    const CivilTime time = Calendars::civil(instant, zone);
    char text[16];
    std::snprintf(text, sizeof text, "%02d:%02d", static_cast<int>(time.hour), static_cast<int>(time.minute));
    return text;
}

std::vector<std::string> clocks(const DayTimes &day, const TimeZone &zone)
{
    std::vector<std::string> result;
    for (const Instant instant : day.times)
        result.push_back(clock(instant, zone));
    return result;
}

std::vector<std::string> clocks(const DayKey &day, const Location &place, CalculationMethod method)
{
    return clocks(PrayerCalculator::times(day, place, method), place.timeZone());
}

double minutesBetween(Instant later, Instant earlier) { return (later - earlier) / 60; }

const Location mecca{"Mekke", 21.4225, 39.8262, "Asia/Riyadh"};
const Location oslo{"Oslo", 59.9139, 10.7522, "Europe/Oslo"};
const Location tromso{"Tromsø", 69.6492, 18.9553, "Europe/Oslo"};
const Location berlin{"Berlin", 52.52, 13.405, "Europe/Berlin"};
const Location newYork{"New York", 40.7128, -74.006, "America/New_York"};

using Clocks = std::vector<std::string>;

} // namespace

TEST(PrayerCalculator, julianDayOfGregorianDates)
{
    EXPECT_DOUBLE_EQ(PrayerCalculator::julian(2000, 1, 1), 2451544.5);
    EXPECT_DOUBLE_EQ(PrayerCalculator::julian(1582, 10, 15), 2299160.5);
    // January and February count as months 13 and 14 of the year before.
    EXPECT_DOUBLE_EQ(PrayerCalculator::julian(2024, 2, 29), 2460369.5);
    EXPECT_DOUBLE_EQ(PrayerCalculator::julian(2024, 3, 1), 2460370.5);
    EXPECT_DOUBLE_EQ(PrayerCalculator::julian(2025, 6, 21), 2460847.5);
}

TEST(PrayerCalculator, istanbulAndMeccaToTheMinute)
{
    const Location istanbul = Location::istanbul();
    EXPECT_EQ(clocks({2025, 6, 21}, istanbul, CalculationMethod::diyanet),
              (Clocks{"03:24", "05:25", "13:11", "17:11", "20:47", "22:38"}));
    EXPECT_EQ(clocks({2025, 12, 21}, istanbul, CalculationMethod::diyanet),
              (Clocks{"06:46", "08:19", "13:07", "15:25", "17:46", "19:13"}));
    EXPECT_EQ(clocks({2025, 3, 1}, istanbul, CalculationMethod::mwl),
              (Clocks{"06:07", "07:38", "13:16", "16:25", "18:55", "20:21"}));

    const DayTimes meccaDay = PrayerCalculator::times({2025, 3, 1}, mecca, CalculationMethod::ummAlQura);
    EXPECT_EQ(clocks(meccaDay, mecca.timeZone()), (Clocks{"05:25", "06:41", "12:33", "15:54", "18:25", "19:55"}));
    EXPECT_EQ(minutesBetween(meccaDay[Prayer::yatsi], meccaDay[Prayer::aksam]), 90);
}

TEST(PrayerCalculator, highLatitudesUseNightPortions)
{
    // Oslo at midsummer: the sun never reaches 18° or 17° below the horizon.
    const DayTimes osloDay = PrayerCalculator::times({2025, 6, 21}, oslo, CalculationMethod::diyanet);
    const TimeZone osloZone = oslo.timeZone();
    EXPECT_EQ(clocks(osloDay, osloZone), (Clocks{"02:21", "03:47", "13:24", "18:05", "22:51", "00:12"}));
    EXPECT_EQ(DayKey::from(osloDay[Prayer::yatsi], osloZone), (DayKey{2025, 6, 22}));
    EXPECT_EQ(DayKey::from(osloDay[Prayer::imsak], osloZone), (DayKey{2025, 6, 21}));

    // Tromsø has midnight sun: sunrise and sunset keep their estimates (6 and 18 hours of solar
    // time), so the night is 12 hours; the adjustments −7 and +7 are undone to get the raw times.
    const DayTimes tromsoDay = PrayerCalculator::times({2025, 6, 21}, tromso, CalculationMethod::diyanet);
    const TimeZone tromsoZone = tromso.timeZone();
    EXPECT_EQ(clock(tromsoDay[Prayer::gunes], tromsoZone), "06:37");
    EXPECT_EQ(clock(tromsoDay[Prayer::aksam], tromsoZone), "18:51");
    EXPECT_EQ(clock(tromsoDay[Prayer::imsak], tromsoZone), "03:08");
    const double rawSunrise = minutesBetween(tromsoDay[Prayer::gunes], tromsoDay.day.start(tromsoZone)) + 7;
    const double rawSunset = minutesBetween(tromsoDay[Prayer::aksam], tromsoDay.day.start(tromsoZone)) - 7;
    EXPECT_NEAR(rawSunset - rawSunrise, 12 * 60, 1);
    EXPECT_NEAR(minutesBetween(tromsoDay[Prayer::yatsi], tromsoDay.day.start(tromsoZone)) - rawSunset, 12 * 60 * 17.0 / 60, 1);

    // An interval method keeps its Yatsı even where the angle rule would step in.
    const DayTimes osloUmmAlQura = PrayerCalculator::times({2025, 6, 21}, oslo, CalculationMethod::ummAlQura);
    EXPECT_EQ(minutesBetween(osloUmmAlQura[Prayer::yatsi], osloUmmAlQura[Prayer::aksam]), 90);

    // Polar night: still six finite instants on whole minutes.
    for (const CalculationMethod::Value method : CalculationMethod::allCases) {
        const DayTimes winter = PrayerCalculator::times({2025, 12, 21}, tromso, method);
        for (const Instant instant : winter.times) {
            ASSERT_TRUE(std::isfinite(instant.seconds));
            EXPECT_EQ(std::fmod(minutesBetween(instant, winter.day.start(tromsoZone)), 1.0), 0.0);
        }
    }
}

TEST(PrayerCalculator, resultCarriesTheDayAndNoHijriDate)
{
    const DayTimes day = PrayerCalculator::times({2025, 3, 1}, mecca, CalculationMethod::mwl);
    EXPECT_EQ(day.day, (DayKey{2025, 3, 1}));
    EXPECT_FALSE(day.hijri.has_value());
    for (size_t i = 1; i < day.times.size(); ++i)
        EXPECT_LT(day.times[i - 1], day.times[i]);
    // The resolved-zone entry gives the same day.
    EXPECT_EQ(PrayerCalculator::times({2025, 3, 1}, mecca, CalculationMethod::mwl, mecca.timeZone()), day);
}

TEST(PrayerCalculator, daylightSavingChangeDays)
{
    // Minutes after the start of the local day, per prayer.
    const auto offsets = [](const Location &place, const DayKey &day) {
        const TimeZone zone = place.timeZone();
        const DayTimes times = PrayerCalculator::times(day, place, CalculationMethod::diyanet);
        std::vector<double> result;
        for (const Instant instant : times.times)
            result.push_back(minutesBetween(instant, day.start(zone)));
        return result;
    };
    struct Change {
        Location place;
        DayKey day;
        double offsetChangeBefore; // minutes: offset at noon of the day minus that of the day before
    };
    // Berlin springs forward at 02:00 and falls back at 03:00; New York falls back at 02:00.
    const std::vector<Change> changes{
        {berlin, {2025, 3, 30}, 60},
        {berlin, {2025, 10, 26}, -60},
        {newYork, {2025, 3, 9}, 60},
        {newYork, {2025, 11, 2}, -60},
    };
    for (const Change &change : changes) {
        SCOPED_TRACE(change.place.name + " " + change.day.description());
        const std::vector<double> before = offsets(change.place, change.day.adding(-1));
        const std::vector<double> on = offsets(change.place, change.day);
        const std::vector<double> after = offsets(change.place, change.day.adding(1));
        for (size_t i = 0; i < on.size(); ++i) {
            // Whole minutes counted from the start of the local day, corrected with the offset
            // in force at noon (the one of the following day), not the one at midnight.
            EXPECT_EQ(std::fmod(on[i], 1.0), 0.0);
            EXPECT_NEAR(on[i], after[i], 4);
            EXPECT_NEAR(on[i] - before[i], change.offsetChangeBefore, 4);
        }
    }
}

TEST(PrayerCalculator, unknownZoneFallsBackToTheMachineZone)
{
    Location nowhere = Location::istanbul();
    nowhere.timeZoneID = "Nowhere/Atlantis";
    const DayTimes expected = PrayerCalculator::times({2025, 6, 21}, Location::istanbul(), CalculationMethod::diyanet);
    EXPECT_EQ(PrayerCalculator::times({2025, 6, 21}, nowhere, CalculationMethod::diyanet).times, expected.times);
    nowhere.timeZoneID.clear();
    EXPECT_EQ(PrayerCalculator::times({2025, 6, 21}, nowhere, CalculationMethod::diyanet).times, expected.times);
}

TEST(PrayerCalculator, adjustmentIsAddedBeforeRoundingHalvesAwayFromZero)
{
    // 13:10:30 is 790.5 minutes; +5 gives 795.5, rounded up to 796 (13:16).
    EXPECT_EQ(PrayerCalculator::roundedMinutes(13.175, 5), 796);
    // Exact halves in binary: 787.5 + 5 = 792.5 → 793 (not the even 792).
    EXPECT_EQ(PrayerCalculator::roundedMinutes(13.125, 5), 793);
    // 7.5 − 10 = −2.5 → −3: away from zero, and not round(7.5) − 10 = −2.
    EXPECT_EQ(PrayerCalculator::roundedMinutes(0.125, -10), -3);
    EXPECT_EQ(PrayerCalculator::roundedMinutes(0.125, 0), 8);
}
