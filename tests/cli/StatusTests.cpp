#include "Calendars.h"
#include "CliRun.h"
#include "Kerahat.h"
#include "Location.h"
#include "OrvelFormat.h"
#include "PrayerCalculator.h"
#include "PrayerSchedule.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>

using namespace orvel;
using nlohmann::json;

namespace {

const Location istanbul = Location::istanbul();
const TimeZone istanbulZone = *TimeZone::known("Europe/Istanbul");

DayTimes computed(const DayKey &day, const Location &place = istanbul)
{
    return PrayerCalculator::times(day, place, CalculationMethod::diyanet);
}

// The --now form of an instant's minute in the zone.
std::string minuteArg(Instant instant, const TimeZone &zone = istanbulZone)
{
    const CivilTime civil = Calendars::civil(instant, zone);
    char text[32];
    std::snprintf(text, sizeof text, "%04lld-%02lld-%02lldT%02lld:%02lld", static_cast<long long>(civil.year),
                  static_cast<long long>(civil.month), static_cast<long long>(civil.day),
                  static_cast<long long>(civil.hour), static_cast<long long>(civil.minute));
    return text;
}

CliRun status(Instant now, const std::string &format, std::vector<std::string> more = {})
{
    std::vector<std::string> args{"status", "--offline", "--now", minuteArg(now), "--format", format};
    args.insert(args.end(), more.begin(), more.end());
    return runCli(args);
}

json waybar(Instant now)
{
    const CliRun run = status(now, "waybar");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    // One line, nothing after it.
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 1) << run.out;
    EXPECT_TRUE(run.out.ends_with("\n"));
    return json::parse(run.out);
}

} // namespace

TEST(CliStatus, waybarLineAtTheEntryInKerahatAndOtherwise)
{
    const DayTimes day = computed({2025, 6, 21});

    const json entry = waybar(day[Prayer::ogle]);
    EXPECT_EQ(entry.at("text"), "Öğle vakti");
    EXPECT_EQ(entry.at("class"), "adhan");
    EXPECT_EQ(entry.at("alt"), "ikindi");
    const std::vector<std::string> tooltip = lines(entry.at("tooltip").get<std::string>());
    ASSERT_EQ(tooltip.size(), 7u);
    for (const Prayer::Value prayer : Prayer::allCases)
        EXPECT_EQ(tooltip[Prayer(prayer).index()], std::string(Prayer(prayer).name()) + " " + OrvelFormat::time(day[prayer], istanbulZone));
    const int64_t toIkindi = static_cast<int64_t>((day[Prayer::ikindi] - day[Prayer::ogle]) / 60);
    EXPECT_EQ(tooltip[6], "İkindi ezanına " + OrvelFormat::spoken(toIkindi) + " kaldı");

    const json kerahat = waybar(day[Prayer::aksam] - 20 * 60);
    EXPECT_EQ(kerahat.at("text"), "Akşam 0:20");
    EXPECT_EQ(kerahat.at("class"), "kerahat");
    EXPECT_EQ(kerahat.at("alt"), "aksam");
    EXPECT_TRUE(kerahat.at("tooltip").get<std::string>().ends_with("Akşam ezanına 20 dakika kaldı, kerahat vakti"));

    // A minute after Güneş enters is kerahat, not an entry.
    EXPECT_EQ(waybar(day[Prayer::gunes] + 60).at("class"), "kerahat");
    EXPECT_EQ(waybar(day[Prayer::gunes]).at("class"), "kerahat");

    const json normal = waybar(day[Prayer::ikindi] + 30 * 60);
    EXPECT_EQ(normal.at("class"), "normal");
    EXPECT_EQ(normal.at("text"), "Akşam " + OrvelFormat::compact(static_cast<int64_t>((day[Prayer::aksam] - day[Prayer::ikindi]) / 60) - 30));
    EXPECT_EQ(normal.at("percentage"),
              static_cast<int>(PrayerSchedule::status(day[Prayer::ikindi] + 30 * 60, day, std::nullopt).dayProgress * 100));
}

TEST(CliStatus, textLines)
{
    const DayTimes day = computed({2025, 6, 21});
    const auto textAt = [](Instant now) {
        const CliRun run = status(now, "text");
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.err, "");
        return run.out;
    };
    EXPECT_EQ(textAt(day[Prayer::aksam] - 75 * 60), "Akşam 1:15\nAkşam ezanına 1 saat 15 dakika kaldı\n");
    EXPECT_EQ(textAt(day[Prayer::ogle]), "Öğle vakti\nİkindi ezanına "
                  + OrvelFormat::spoken(static_cast<int64_t>((day[Prayer::ikindi] - day[Prayer::ogle]) / 60)) + " kaldı\n");
    EXPECT_EQ(textAt(day[Prayer::ogle] - 5 * 60), "Öğle 0:05\nÖğle ezanına 5 dakika kaldı, kerahat vakti\n");

    // After Yatsı the count runs to tomorrow's own İmsak.
    const DayTimes tomorrow = computed({2025, 6, 22});
    const Instant night = day[Prayer::yatsi] + 61 * 60;
    const int64_t toImsak = static_cast<int64_t>(std::ceil((tomorrow[Prayer::imsak] - night) / 60));
    EXPECT_EQ(textAt(night), "İmsak " + OrvelFormat::compact(toImsak) + "\nİmsak vaktine " + OrvelFormat::spoken(toImsak) + " kaldı\n");
    EXPECT_EQ(textAt(day[Prayer::imsak] - 60), "İmsak 0:01\nİmsak vaktine 1 dakika kaldı\n");

    // Ramadan 1446: 10 March 2025; and the eve before 1 Ramadan, whose next İmsak is the first Sahur.
    const DayTimes ramadan = computed({2025, 3, 10});
    EXPECT_EQ(textAt(ramadan[Prayer::aksam] - 75 * 60), "İftar 1:15\nİftara 1 saat 15 dakika kaldı\n");
    EXPECT_TRUE(textAt(ramadan[Prayer::aksam]).starts_with("İftar vakti\nYatsı ezanına "));
    const DayTimes eve = computed({2025, 2, 28});
    EXPECT_TRUE(textAt(eve[Prayer::yatsi] + 60 * 60).starts_with("Sahur ")) << textAt(eve[Prayer::yatsi] + 60 * 60);
    EXPECT_TRUE(textAt(eve[Prayer::aksam] - 60 * 60).starts_with("Akşam 1:00\n"));
}

TEST(CliStatus, jsonObject)
{
    // Istanbul's coordinates on New York's clock: --now and every time are read in the place's zone.
    Location place = istanbul;
    place.timeZoneID = "America/New_York";
    const TimeZone zone = *TimeZone::known(place.timeZoneID);
    const DayTimes day = computed({2025, 6, 21}, place);
    const Instant now = day[Prayer::aksam] - 20 * 60;
    const CliRun run = runCli({"status", "--offline", "--tz", place.timeZoneID, "--format", "json", "--now", minuteArg(now, zone)});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    const json document = json::parse(run.out);

    const PrayerStatus expected = PrayerSchedule::status(now, day, computed({2025, 6, 22}, place));
    EXPECT_EQ(document.at("current"), "ikindi");
    EXPECT_EQ(document.at("currentTime"), "2025-06-21T" + OrvelFormat::time(day[Prayer::ikindi], zone) + ":00-04:00");
    EXPECT_EQ(document.at("next"), "aksam");
    EXPECT_EQ(document.at("nextTime"), "2025-06-21T" + OrvelFormat::time(day[Prayer::aksam], zone) + ":00-04:00");
    EXPECT_EQ(document.at("nextIsTomorrow"), false);
    EXPECT_EQ(document.at("minutesRemaining"), 20);
    EXPECT_DOUBLE_EQ(document.at("dayProgress").get<double>(), expected.dayProgress);
    EXPECT_EQ(document.at("kerahat").at("kind"), "sunset");
    EXPECT_EQ(document.at("kerahat").at("end"), document.at("nextTime"));
    EXPECT_EQ(document.at("title"), "Akşam 0:20");
    EXPECT_EQ(document.at("label"), "Akşam ezanına 20 dakika kaldı, kerahat vakti");
    EXPECT_EQ(document.at("location").at("timeZoneID"), "America/New_York");
    EXPECT_EQ(document.at("method"), "diyanet");
    EXPECT_EQ(document.at("source"), "offline");

    // Before İmsak nothing is current.
    const CliRun early = status(computed({2025, 6, 21})[Prayer::imsak] - 30 * 60, "json");
    const json before = json::parse(early.out);
    EXPECT_TRUE(before.at("current").is_null());
    EXPECT_TRUE(before.at("currentTime").is_null());
    EXPECT_TRUE(before.at("kerahat").is_null());
    EXPECT_EQ(before.at("dayProgress"), 0.0);
    EXPECT_TRUE(before.at("nextTime").get<std::string>().ends_with("+03:00"));
}
