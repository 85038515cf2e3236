#include "DiyanetCalendar.h"
#include "DiyanetRule.h"
#include "Kerahat.h"
#include "OrvelFormat.h"
#include "PrayerCalculator.h"
#include "TimeZone.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

using namespace orvel;

namespace {

struct AbroadDay {
    DayKey day;
    std::array<int, 6> minutes{}; // of the local day
};

std::vector<AbroadDay> abroadDays(const char *file)
{
    std::ifstream in(std::string(ORVEL_DIYANET_ABROAD_DIR) + "/" + file);
    std::vector<AbroadDay> days;
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line.front() == '#')
            continue;
        std::istringstream fields(line);
        std::string date, clock;
        fields >> date;
        AbroadDay day{{std::stoll(date.substr(0, 4)), std::stoll(date.substr(5, 2)), std::stoll(date.substr(8, 2))}, {}};
        for (int &minutes : day.minutes) {
            fields >> clock;
            minutes = std::stoi(clock.substr(0, 2)) * 60 + std::stoi(clock.substr(3, 2));
        }
        days.push_back(day);
    }
    return days;
}

int minuteOfDay(Instant instant, const TimeZone &zone)
{
    const std::string clock = OrvelFormat::time(instant, zone);
    return std::stoi(clock.substr(0, 2)) * 60 + std::stoi(clock.substr(3, 2));
}

// The difference on a 24-hour clock, so that 23:59 against 00:01 is 2 minutes.
int clockDifference(int ours, int theirs)
{
    int difference = (ours - theirs) % 1440;
    if (difference > 720)
        difference -= 1440;
    if (difference < -720)
        difference += 1440;
    return difference;
}

struct Tally {
    int days = 0, exact = 0, withinFive = 0, worst = 0;
    void add(int difference)
    {
        ++days;
        exact += difference == 0;
        withinFive += std::abs(difference) <= 5;
        worst = std::max(worst, std::abs(difference));
    }
};

const Location hamburg{"Hamburg", 53.5507, 9.993, "Europe/Berlin", std::nullopt, "DE"};

} // namespace

// Diyanet's tables for two towns of northern Germany (see tests/data/diyanet-abroad): in winter
// every time to the minute with Yatsı at 16°, in summer İmsak and Yatsı by its short-night practice.
TEST(DiyanetAbroad, reproducesTheOfficialTablesOfNorthernGermany)
{
    const struct {
        const char *file;
        double latitude, longitude;
    } towns[] = {{"lueneburg.tsv", 53.25122, 10.41548}, {"schwarzenbek.tsv", 53.50508, 10.48225}};
    const TimeZone zone = TimeZone::named("Europe/Berlin");
    for (const auto &town : towns) {
        SCOPED_TRACE(town.file);
        const std::vector<AbroadDay> days = abroadDays(town.file);
        ASSERT_GE(days.size(), 365u);
        std::array<Tally, 6> winter, summer;
        for (const AbroadDay &official : days) {
            const Location place{"", town.latitude, town.longitude, "Europe/Berlin", std::nullopt, "DE"};
            const DayTimes ours = PrayerCalculator::times(official.day, place, CalculationMethod::diyanet, zone);
            const bool isSummer = official.day.month >= 4 && official.day.month <= 9;
            for (size_t i = 0; i < 6; ++i)
                (isSummer ? summer : winter)[i].add(clockDifference(minuteOfDay(ours.times[i], zone), official.minutes[i]));
        }
        for (size_t i = 0; i < 6; ++i) {
            EXPECT_GE(winter[i].exact * 100, winter[i].days * 88) << "winter " << i;
            EXPECT_LE(winter[i].worst, 1) << "winter " << i;
            const bool twilight = i == Prayer::imsak || i == Prayer::yatsi;
            if (!twilight) {
                EXPECT_GE(summer[i].exact * 100, summer[i].days * 88) << "summer " << i;
                EXPECT_LE(summer[i].worst, 1) << "summer " << i;
                continue;
            }
            EXPECT_GE(summer[i].withinFive * 100, summer[i].days * 85) << "summer " << i;
            EXPECT_LE(summer[i].worst, 15) << "summer " << i;
        }
    }
}

TEST(DiyanetAbroad, yatsiAngleFollowsTheCountryOrElseTheZone)
{
    using DiyanetRule::Region;
    EXPECT_EQ(DiyanetRule::regionOf("TR", 41, "Europe/Istanbul"), Region::turkey);
    EXPECT_EQ(DiyanetRule::regionOf("DE", 53, "Europe/Berlin"), Region::abroad);
    // Near the border the country decides, not the distance: Edirne and Greek Kastanies.
    EXPECT_EQ(DiyanetRule::regionOf("TR", 41.68, "Europe/Istanbul"), Region::turkey);
    EXPECT_EQ(DiyanetRule::regionOf("GR", 41.65, "Europe/Athens"), Region::abroad);
    // The KKTC (north of the Green Line) is listed with Türkiye's provinces; the Republic is not.
    EXPECT_EQ(DiyanetRule::regionOf("CY", 35.34, "Asia/Nicosia"), Region::turkey);
    EXPECT_EQ(DiyanetRule::regionOf("CY", 34.68, "Asia/Nicosia"), Region::abroad);
    // A place stored before places knew their country: its zone tells.
    EXPECT_EQ(DiyanetRule::regionOf("", 39.9, "Europe/Istanbul"), Region::turkey);
    EXPECT_EQ(DiyanetRule::regionOf("", 48.1, "Europe/Berlin"), Region::abroad);

    // The same point a minute apart in Yatsı only: 16° abroad comes before Türkiye's 17°.
    Location asTurkey = hamburg;
    asTurkey.countryCode = "TR";
    const DayTimes abroad = PrayerCalculator::times({2025, 11, 20}, hamburg, CalculationMethod::diyanet);
    const DayTimes turkey = PrayerCalculator::times({2025, 11, 20}, asTurkey, CalculationMethod::diyanet);
    for (const Prayer::Value prayer : {Prayer::imsak, Prayer::gunes, Prayer::ogle, Prayer::ikindi, Prayer::aksam})
        EXPECT_EQ(abroad[prayer], turkey[prayer]);
    EXPECT_GE(turkey[Prayer::yatsi] - abroad[Prayer::yatsi], 6 * 60);
    EXPECT_LE(turkey[Prayer::yatsi] - abroad[Prayer::yatsi], 9 * 60);
}

TEST(DiyanetAbroad, shortNightPracticeJoinsTheAnglesAndNeverOvershootsThem)
{
    const TimeZone zone = hamburg.timeZone();
    std::optional<DayTimes> before;
    int practiceDays = 0;
    for (DayKey day{2026, 1, 1}; day.year == 2026; day = day.adding(1)) {
        const DayTimes times = PrayerCalculator::times(day, hamburg, CalculationMethod::diyanet, zone);
        practiceDays += times.isEstimated(Prayer::yatsi);
        if (before) {
            // No jump where the practice takes over from the angles or hands back to them.
            for (const Prayer::Value prayer : {Prayer::imsak, Prayer::yatsi})
                EXPECT_LE(std::fabs(times[prayer] - (*before)[prayer] - 86400), 6 * 60) << day.description();
        }
        before = times;
        // Yatsı within the Board's limits: after Akşam, and at midsummer 1 h 20 min after sunset.
        EXPECT_GT(times[Prayer::yatsi] - times[Prayer::aksam], 60 * 60) << day.description();
    }
    EXPECT_GT(practiceDays, 100);
    EXPECT_LT(practiceDays, 150);
    const DayTimes solstice = PrayerCalculator::times({2026, 6, 21}, hamburg, CalculationMethod::diyanet, zone);
    const double afterSunset = solstice[Prayer::yatsi] - (solstice[Prayer::aksam] - 7 * 60);
    EXPECT_NEAR(afterSunset, 80 * 60, 3 * 60);
    // İmsak about ten minutes further from sunrise than Yatsı is from sunset.
    const double beforeSunrise = (solstice[Prayer::gunes] + 7 * 60) - solstice[Prayer::imsak];
    EXPECT_NEAR(beforeSunrise - afterSunset, 10 * 60, 3 * 60);

    // South of 45° abroad the angles alone hold, as in Türkiye.
    const Location rome{"Roma", 41.8919, 12.5113, "Europe/Rome", std::nullopt, "IT"};
    for (DayKey day{2026, 1, 1}; day.year == 2026; day = day.adding(7))
        EXPECT_FALSE(PrayerCalculator::times(day, rome, CalculationMethod::diyanet).isEstimated(Prayer::yatsi));
}

TEST(FarNorth, everyMethodGivesSixOrderedMomentsThatMoveSmoothly)
{
    const Location places[] = {{"Tromsø", 69.6492, 18.9553, "Europe/Oslo", std::nullopt, "NO"},
                               {"Murmansk", 68.9585, 33.0827, "Europe/Moscow", std::nullopt, "RU"},
                               {"Longyearbyen", 78.2232, 15.6267, "Arctic/Longyearbyen", std::nullopt, "SJ"},
                               {"Reykjavik", 64.1466, -21.9426, "Atlantic/Reykjavik", std::nullopt, "IS"},
                               {"Oslo", 59.9139, 10.7522, "Europe/Oslo", std::nullopt, "NO"}};
    for (const Location &place : places) {
        const TimeZone zone = place.timeZone();
        for (const CalculationMethod::Value method : CalculationMethod::all) {
            SCOPED_TRACE(place.name + " " + std::string(CalculationMethod(method).id()));
            std::optional<DayTimes> before;
            int faults = 0, jumps = 0;
            for (DayKey day{2026, 1, 1}; day.year == 2026; day = day.adding(1)) {
                const DayTimes times = PrayerCalculator::times(day, place, method, zone);
                for (size_t i = 1; i < 6; ++i)
                    faults += times.times[i] - times.times[i - 1] < 60;
                const auto kerahat = Kerahat::intervals(times, 45, 10);
                for (size_t i = 0; i < kerahat.size(); ++i) {
                    faults += !(kerahat[i].start < kerahat[i].end);
                    faults += i > 0 && kerahat[i].start < kerahat[i - 1].end;
                }
                // A day later, give or take what the sun moves in a day up here (and the hour of
                // a clock change): never the latitude grid's steps of old.
                if (before) {
                    for (size_t i = 0; i < 6; ++i) {
                        const bool jump = std::fabs(times.times[i] - before->times[i] - 86400) > 75 * 60;
                        if (jump && jumps == 0)
                            ADD_FAILURE() << "first jump: " << day.description() << " " << i;
                        jumps += jump;
                    }
                }
                before = times;
            }
            EXPECT_EQ(faults, 0);
            EXPECT_EQ(jumps, 0);
        }
    }
}

TEST(FarNorth, ummAlQuraKeepsItsNinetyAndRamadansHundredTwentyMinutes)
{
    const Location oslo{"Oslo", 59.9139, 10.7522, "Europe/Oslo", std::nullopt, "NO"};
    const Location mecca{"Mekke", 21.4225, 39.8262, "Asia/Riyadh", std::nullopt, "SA"};
    // 10 March 2026 is in Ramadan 1447 (Umm al-Qura), 10 April is not.
    for (const Location &place : {mecca, oslo}) {
        const DayTimes ramadan = PrayerCalculator::times({2026, 3, 10}, place, CalculationMethod::ummAlQura);
        const DayTimes after = PrayerCalculator::times({2026, 4, 10}, place, CalculationMethod::ummAlQura);
        EXPECT_EQ(ramadan[Prayer::yatsi] - ramadan[Prayer::aksam], 120 * 60) << place.name;
        EXPECT_EQ(after[Prayer::yatsi] - after[Prayer::aksam], 90 * 60) << place.name;
    }
    // In the midsummer night of Tromsø too, where the sunset is borrowed.
    const Location tromso{"Tromsø", 69.6492, 18.9553, "Europe/Oslo", std::nullopt, "NO"};
    const DayTimes midsummer = PrayerCalculator::times({2026, 6, 21}, tromso, CalculationMethod::ummAlQura);
    EXPECT_EQ(midsummer[Prayer::yatsi] - midsummer[Prayer::aksam], 90 * 60);
}

TEST(DiyanetCalendar, diyanetsAnnouncedDatesWhereTheCriteriaDisagree)
{
    // Kurban Bayramı 2016 on 12 September (10 Zilhicce), Hicri Yılbaşı 1452 on 3 May 2030, Mevlid
    // Kandili 1455 on the evening of 9 June 2033 (12 Rebiülevvel on the 10th).
    EXPECT_EQ(DiyanetCalendar::date({2016, 9, 12}), (HijriDate{10, 12, 1437}));
    EXPECT_EQ(DiyanetCalendar::date({2016, 9, 2}), (HijriDate{30, 11, 1437}));
    EXPECT_EQ(DiyanetCalendar::date({2030, 5, 3}), (HijriDate{1, 1, 1452}));
    EXPECT_EQ(DiyanetCalendar::date({2033, 6, 10}), (HijriDate{12, 3, 1455}));
}

TEST(DiyanetCalendar, monthStartsAreKeptOnDiskAndReadBack)
{
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / ("orvel-months-" + std::to_string(::getpid()));
    std::filesystem::remove_all(folder);
    const std::filesystem::path file = folder / "months.txt";
    DiyanetCalendar::keepMonthStartsIn(file);
    const auto first = DiyanetCalendar::firstDay(1460, 5);
    ASSERT_TRUE(first);
    std::ifstream in(file);
    std::stringstream text;
    text << in.rdbuf();
    EXPECT_NE(text.str().find("1460 5 " + first->description()), std::string::npos) << text.str();

    // A start the file holds is taken from it, as a later run would; lines that do not read are
    // passed over.
    std::ofstream(file) << "# Orvel: Diyanet month starts, v2\n1461 2 2039-01-01\nbroken line\n1461 3 2039-13-40\n";
    DiyanetCalendar::keepMonthStartsIn(file);
    EXPECT_EQ(DiyanetCalendar::firstDay(1461, 2), (DayKey{2039, 1, 1}));
    EXPECT_NE(DiyanetCalendar::firstDay(1461, 3), (DayKey{2039, 13, 40}));
    // Another format's file is ignored rather than trusted.
    std::ofstream(file) << "# something else\n1462 2 2040-01-01\n";
    DiyanetCalendar::keepMonthStartsIn(file);
    EXPECT_NE(DiyanetCalendar::firstDay(1462, 2), (DayKey{2040, 1, 1}));
    DiyanetCalendar::keepMonthStartsIn({});
    std::filesystem::remove_all(folder);
}
