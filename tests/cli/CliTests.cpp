#include "Calendars.h"
#include "CliRun.h"
#include "Clock.h"
#include "DayKey.h"
#include "TextTable.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>
#include <vector>

using namespace orvel;
using nlohmann::json;

namespace {

json timesJson(std::vector<std::string> args, const std::string &zone = "Europe/Istanbul")
{
    args.insert(args.begin(), {"times", "--offline", "--json"});
    const CliRun run = runCli(args, zone);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    return json::parse(run.out);
}

} // namespace

TEST(Cli, badInputGivesStatusTwoAndOneLine)
{
    struct Case {
        std::vector<std::string> args;
        std::string named; // what the message must mention
    };
    const std::vector<Case> cases{
        {{"times", "--method", "hanafi"}, "hanafi"},
        {{"times", "--date", "2025-02-30"}, "2025-02-30"},
        {{"times", "--date", "21.06.2025"}, "21.06.2025"},
        {{"times", "--lat", "95", "--lon", "29"}, "geçersiz enlem: 95 (−90 ile 90 arasında olmalı)"},
        {{"times", "--lat", "41", "--lon", "-180.5"}, "boylam: -180.5"},
        {{"times", "--tz", "Mars/Olympus"}, "Mars/Olympus"},
        {{"times", "--days", "0"}, "gün sayısı: 0"},
        {{"times", "--days", "401"}, "gün sayısı: 401"},
        {{"times", "--frobnicate"}, "--frobnicate"},
        {{"times", "--date"}, "--date"},
        {{"times", "--lat", "kuzey", "--lon", "29"}, "kuzey"},
        {{"times", "--lat", "nan", "--lon", "29"}, "nan"},
        {{"times", "--days", "2x"}, "2x"},
        {{"times", "--lat", "41"}, "--lon"},
        {{"times", "--name", "a\nb"}, "yer adı: a b"},
        {{"times", "--name", " "}, "yer adı"},
        {{"times", "--service", "ftp://example.org"}, "ftp://example.org"},
        {{"times", "--service", "localhost:8080"}, "servis adresi: localhost:8080"},
        {{"times", "--service", "https:///v1"}, "https:///v1"},
        {{"times", "--cache", ORVEL_CLI_PATH}, "önbellek klasörü"},
        {{"status", "--now", "2025-06-21 13:11"}, "geçersiz an: 2025-06-21 13:11"},
        {{"status", "--now", "2025-02-29T10:00"}, "2025-02-29T10:00"},
        {{"status", "--now", "2025-06-21T24:00"}, "2025-06-21T24:00"},
        {{"status", "--now", "2025-06-21T12:60"}, "2025-06-21T12:60"},
        {{"status", "--format", "xml"}, "geçersiz biçim: xml"},
        {{"status", "--format"}, "--format"},
        {{"status", "--tz", "Mars/Olympus"}, "Mars/Olympus"},
        {{"weather"}, "weather"},
        {{}, "komut"},
    };
    for (const Case &bad : cases) {
        const CliRun run = runCli(bad.args);
        SCOPED_TRACE(run.err);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_TRUE(run.err.starts_with("orvel-cli: "));
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1);
        EXPECT_TRUE(run.err.ends_with("\n"));
        EXPECT_NE(run.err.find(bad.named), std::string::npos);
    }
}

TEST(Cli, jsonOfOneDay)
{
    const json document = timesJson({"--date", "2025-06-21"});
    EXPECT_EQ(document.at("source"), "offline");
    EXPECT_EQ(document.at("method"), "diyanet");
    EXPECT_EQ(document.at("location").at("name"), "İstanbul, Fatih");
    EXPECT_EQ(document.at("location").at("timeZoneID"), "Europe/Istanbul");
    ASSERT_EQ(document.at("days").size(), 1u);
    const json &day = document.at("days").at(0);
    EXPECT_EQ(day.at("clock"), json({"03:24", "05:25", "13:11", "17:11", "20:47", "22:38"}));
    EXPECT_EQ(day.at("day"), json::parse(R"({"year":2025,"month":6,"day":21})"));
    EXPECT_EQ(day.at("hijriDate"), json::parse(R"({"day":25,"month":12,"year":1446})"));
    EXPECT_FALSE(day.contains("hijri"));
    // Instants are seconds since 2001-01-01Z: İmsak is 204 minutes after Istanbul's midnight.
    const TimeZone istanbul = *TimeZone::known("Europe/Istanbul");
    EXPECT_EQ(day.at("times").at(0).get<double>(), (Calendars::startOfDay(2025, 6, 21, istanbul) + 204 * 60).seconds);
}

TEST(Cli, consecutiveDaysAcrossMonthAndYearEnds)
{
    const json january = timesJson({"--date", "2025-01-30", "--days", "3"});
    ASSERT_EQ(january.at("days").size(), 3u);
    EXPECT_EQ(january["days"][0]["day"]["day"], 30);
    EXPECT_EQ(january["days"][1]["day"]["day"], 31);
    EXPECT_EQ(january["days"][2]["day"], json::parse(R"({"year":2025,"month":2,"day":1})"));

    const json newYear = timesJson({"--date", "2024-12-31", "--days=2"});
    ASSERT_EQ(newYear.at("days").size(), 2u);
    EXPECT_EQ(newYear["days"][1]["day"], json::parse(R"({"year":2025,"month":1,"day":1})"));
    EXPECT_LT(newYear["days"][0]["times"][5].get<double>(), newYear["days"][1]["times"][0].get<double>());

    EXPECT_EQ(timesJson({"--days", "400"}).at("days").size(), 400u);
}

TEST(Cli, placeAndMethodOptions)
{
    const json mecca = timesJson({"--lat", "21.4225", "--lon=39.8262", "--tz", "Asia/Riyadh", "--name", "Mekke",
                                  "--method", "ummAlQura", "--date", "2025-03-01"});
    EXPECT_EQ(mecca.at("method"), "ummAlQura");
    EXPECT_EQ(mecca.at("location"),
              json::parse(R"({"name":"Mekke","latitude":21.4225,"longitude":39.8262,"timeZoneID":"Asia/Riyadh"})"));
    EXPECT_EQ(mecca["days"][0]["clock"], json({"05:25", "06:41", "12:33", "15:54", "18:25", "19:55"}));

    // Coordinates without a zone take the machine's; a decimal comma is accepted.
    const json santiago = timesJson({"--lat", "-33,4489", "--lon", "-70.6693"}, "America/Santiago");
    EXPECT_EQ(santiago["location"]["timeZoneID"], "America/Santiago");
    EXPECT_EQ(santiago["location"]["latitude"], -33.4489);
    EXPECT_NE(santiago["location"]["name"], "İstanbul, Fatih");

    // A zone alone keeps Istanbul and shows its times on that zone's clock.
    const json inBerlin = timesJson({"--tz", "Europe/Berlin", "--date", "2025-06-21"});
    EXPECT_EQ(inBerlin["location"]["latitude"], 41.0082);
    EXPECT_EQ(inBerlin["days"][0]["clock"][2], "12:11");

    // Without --date the first day is today at the place.
    const DayKey before = DayKey::from(SystemClock().now(), *TimeZone::known("Pacific/Kiritimati"));
    const json today = timesJson({"--tz", "Pacific/Kiritimati"});
    const DayKey after = DayKey::from(SystemClock().now(), *TimeZone::known("Pacific/Kiritimati"));
    const DayKey shown = today["days"][0]["day"].get<DayKey>();
    EXPECT_TRUE(shown == before || shown == after) << shown.description();
}

TEST(Cli, turkishTable)
{
    const CliRun run = runCli({"times", "--offline", "--date", "2025-06-21"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    const std::vector<std::string> text = lines(run.out);
    ASSERT_EQ(text.size(), 6u) << run.out;
    EXPECT_EQ(text[0], "İstanbul, Fatih · Diyanet İşleri Başkanlığı");
    EXPECT_EQ(text[5], "Kaynak: çevrimdışı · cihazda hesaplandı");

    const std::string &header = text[2];
    const std::string &row = text[3];
    EXPECT_TRUE(row.starts_with("21 Haz Cmt")) << row;
    // Columns line up on screen: each time starts in the display column of its header.
    const std::vector<std::pair<std::string, std::string>> columns{
        {"Hicri", "25 Zilhicce 1446"}, {"İmsak", "03:24"}, {"Güneş", "05:25"}, {"Öğle", "13:11"},
        {"İkindi", "17:11"}, {"Akşam", "20:47"}, {"Yatsı", "22:38"}};
    for (const auto &[title, value] : columns) {
        const size_t titleAt = header.find(title);
        const size_t valueAt = row.find(value);
        ASSERT_NE(titleAt, std::string::npos) << title;
        ASSERT_NE(valueAt, std::string::npos) << value;
        EXPECT_EQ(cli::TextTable::displayWidth(header.substr(0, titleAt)), cli::TextTable::displayWidth(row.substr(0, valueAt)))
            << title;
    }
}

TEST(Cli, help)
{
    for (const std::vector<std::string> &args : {std::vector<std::string>{"--help"}, {"times", "--help"}, {"times", "--lat", "95", "-h"}}) {
        const CliRun run = runCli(args);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.err, "");
        EXPECT_NE(run.out.find("times"), std::string::npos);
    }
    EXPECT_NE(runCli({"--help"}).out.find("status"), std::string::npos);
    const std::string timesHelp = runCli({"times", "--help"}).out;
    for (const std::string option : {"--method", "--service", "--cache", "--offline"})
        EXPECT_NE(timesHelp.find(option), std::string::npos) << option;
    const std::string statusHelp = runCli({"status", "--format", "xml", "--help"}).out;
    for (const std::string option : {"--now", "--format", "--lat", "--service", "--offline"})
        EXPECT_NE(statusHelp.find(option), std::string::npos) << option;
}

TEST(TextTable, widthsCountCodePoints)
{
    EXPECT_EQ(cli::TextTable::displayWidth("İkindi"), 6u);
    EXPECT_EQ(cli::TextTable::displayWidth("Öğle"), 4u);
    EXPECT_EQ(cli::TextTable::render({{"Öğle", "x"}, {"abcdef", "y"}, {"ş"}}), "Öğle    x\nabcdef  y\nş\n");
}
