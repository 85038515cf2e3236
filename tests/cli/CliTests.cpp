#include "CliRun.h"
#include "Clock.h"
#include "DayKey.h"
#include "TimeZone.h"

#include <gtest/gtest.h>

#include <set>

#include <sstream>
#include <nlohmann/json.hpp>

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
    // Each bad invocation and what its message must name.
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{"times", "--method", "hanafi"}, "hanafi"},
        {{"times", "--date", "2025-02-30"}, "2025-02-30"},
        {{"times", "--date"}, "--date"},
        // Past the years the rules hold for there is nothing true to show.
        {{"times", "--date", "9999-12-31"}, "1900 ile 2100"},
        {{"imsakiye", "--date", "1850-01-01"}, "1850-01-01"},
        {{"status", "--now", "2200-01-01T10:00"}, "2200-01-01"},
        {{"times", "--lat", "95", "--lon", "29"}, "geçersiz enlem: 95 (−90 ile 90 arasında olmalı)"},
        {{"times", "--lat", "41", "--lon", "-180.5"}, "boylam: -180.5"},
        {{"times", "--lat", "nan", "--lon", "29"}, "nan"},
        {{"times", "--lat", "41"}, "--lon"},
        {{"times", "--tz", "Mars/Olympus"}, "Mars/Olympus"},
        {{"times", "--days", "0"}, "gün sayısı: 0"},
        {{"times", "--days", "401"}, "gün sayısı: 401"},
        {{"times", "--days", "2x"}, "2x"},
        {{"times", "--frobnicate"}, "--frobnicate"},
        {{"times", "--name", "a\nb"}, "yer adı: a b"},
        {{"times", "--name", " "}, "yer adı"},
        {{"times", "--service", "ftp://example.org"}, "ftp://example.org"},
        {{"times", "--service", "https:///v1"}, "https:///v1"},
        {{"times", "--cache", ORVEL_CLI_PATH}, "önbellek klasörü"},
        {{"status", "--now", "2025-06-21 13:11"}, "geçersiz an: 2025-06-21 13:11"},
        {{"status", "--now", "2025-02-29T10:00"}, "2025-02-29T10:00"},
        {{"status", "--format", "xml"}, "geçersiz biçim: xml"},
        {{"status", "--follow", "--now", "2025-06-21T13:11"}, "--follow ile --now"},
        {{"weather"}, "weather"},
        {{}, "komut"},
    };
    for (const auto &[args, named] : cases) {
        const CliRun run = runCli(args);
        SCOPED_TRACE(named);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_TRUE(run.err.starts_with("orvel-cli: ") && run.err.find('\n') == run.err.size() - 1) << run.err;
        EXPECT_NE(run.err.find(named), std::string::npos) << run.err;
    }
}

TEST(Cli, jsonOfOneDay)
{
    json document = timesJson({"--date", "2025-06-21"});
    // Moments as ISO 8601 with the place's offset, and as Unix seconds: İmsak at 00:24Z.
    EXPECT_EQ(document["days"][0]["times"][0], "2025-06-21T03:24:00+03:00");
    EXPECT_EQ(document["days"][0]["times"][5], "2025-06-21T22:38:00+03:00");
    EXPECT_EQ(document["days"][0]["unix"][0].get<int64_t>(), 1750465440);
    // Diyanet's rule is the source, at Diyanet's point of the place, with Diyanet's calendar; an
    // empty "estimated" is there all the same.
    document["days"][0].erase("times");
    document["days"][0].erase("unix");
    EXPECT_EQ(document, json::parse(R"({"source":"rule","method":"diyanet",
        "location":{"name":"İstanbul, Fatih","latitude":41.0082,"longitude":28.9784,"timeZoneID":"Europe/Istanbul",
                    "diyanetPoint":{"latitude":41.0148,"longitude":28.9687},"countryCode":"TR"},
        "days":[{"date":"2025-06-21","hijri":{"day":25,"month":12,"year":1446},"hijriText":"25 Zilhicce 1446",
                 "clock":["03:24","05:25","13:11","17:11","20:47","22:38"],"estimated":[]}]})"));
}

// Every method and every command that lists days writes the same keys.
TEST(Cli, oneShapeOfDayForEveryMethodAndCommand)
{
    std::set<std::string> shape;
    const auto keysOf = [](const json &day) {
        std::set<std::string> keys;
        for (const auto &[key, value] : day.items())
            keys.insert(key);
        return keys;
    };
    for (const char *method : {"diyanet", "mwl", "isna", "egypt", "ummAlQura"}) {
        const json day = timesJson({"--method", method, "--date", "2025-06-21", "--offline"})["days"][0];
        if (shape.empty())
            shape = keysOf(day);
        EXPECT_EQ(keysOf(day), shape) << method;
        EXPECT_TRUE(day["estimated"].is_array()) << method;
    }
    const CliRun page = runCli({"imsakiye", "--json", "--offline", "--mode", "week"});
    ASSERT_EQ(page.status, 0) << page.err;
    std::set<std::string> imsakiye = keysOf(json::parse(page.out)["days"][0]);
    for (const char *extra : {"note", "today", "past"})
        EXPECT_EQ(imsakiye.erase(extra), 1u) << extra;
    EXPECT_EQ(imsakiye, shape);
}

TEST(Cli, consecutiveDaysAcrossLeapDayAndYearEnd)
{
    const json february = timesJson({"--date", "2024-02-28", "--days", "3"});
    ASSERT_EQ(february.at("days").size(), 3u);
    EXPECT_EQ(february["days"][1]["date"], "2024-02-29");
    EXPECT_EQ(february["days"][2]["date"], "2024-03-01");

    const json newYear = timesJson({"--date", "2024-12-31", "--days=2"});
    ASSERT_EQ(newYear.at("days").size(), 2u);
    EXPECT_EQ(newYear["days"][1]["date"], "2025-01-01");
    EXPECT_LT(newYear["days"][0]["unix"][5].get<int64_t>(), newYear["days"][1]["unix"][0].get<int64_t>());

    EXPECT_EQ(timesJson({"--days", "400"}).at("days").size(), 400u);
}

TEST(Cli, placeAndMethodOptions)
{
    const json mecca = timesJson({"--lat", "21.4225", "--lon=39.8262", "--tz", "Asia/Riyadh", "--name", "Mekke",
                                  "--method", "ummAlQura", "--date", "2025-03-01"});
    EXPECT_EQ(mecca.at("method"), "ummAlQura");
    EXPECT_EQ(mecca.at("location"),
              json::parse(R"({"name":"Mekke","latitude":21.4225,"longitude":39.8262,"timeZoneID":"Asia/Riyadh"})"));
    // 1 March 2025 is 1 Ramazan 1446: Umm al-Qura's Yatsı two hours after Akşam, as the service has it.
    EXPECT_EQ(mecca["days"][0]["clock"], json({"05:25", "06:41", "12:33", "15:54", "18:25", "20:25"}));
    // Any letter case names a method.
    EXPECT_EQ(timesJson({"--method", "UmmAlQura", "--date", "2025-03-01"}).at("method"), "ummAlQura");
    EXPECT_EQ(timesJson({"--method", "ISNA", "--date", "2025-03-01"}).at("method"), "isna");

    // Coordinates without a zone take the machine's; a decimal comma is accepted.
    const json santiago = timesJson({"--lat", "-33,4489", "--lon", "-70.6693"}, "America/Santiago");
    EXPECT_EQ(santiago["location"]["timeZoneID"], "America/Santiago");
    EXPECT_EQ(santiago["location"]["latitude"], -33.4489);

    // A zone alone keeps Istanbul and shows its times on that zone's clock.
    const json inBerlin = timesJson({"--tz", "Europe/Berlin", "--date", "2025-06-21"});
    EXPECT_EQ(inBerlin["location"]["latitude"], 41.0082);
    EXPECT_EQ(inBerlin["days"][0]["clock"][2], "12:11");

    // Without --date the first day is today at the place, fourteen hours ahead of UTC.
    const TimeZone kiritimati = *TimeZone::known("Pacific/Kiritimati");
    const DayKey before = DayKey::from(SystemClock().now(), kiritimati);
    const std::string shown = timesJson({"--tz", "Pacific/Kiritimati"})["days"][0]["date"];
    const DayKey after = DayKey::from(SystemClock().now(), kiritimati);
    EXPECT_TRUE(shown == before.description() || shown == after.description()) << shown;
}

TEST(Cli, turkishTableLinesUpItsColumnsOnScreen)
{
    const CliRun run = runCli({"times", "--offline", "--date", "2025-06-21"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "İstanbul, Fatih · Diyanet İşleri Başkanlığı\n\n"
                       "Tarih       Hicri             İmsak  Güneş  Öğle   İkindi  Akşam  Yatsı\n"
                       "21 Haz Cmt  25 Zilhicce 1446  03:24  05:25  13:11  17:11   20:47  22:38\n\n"
                       "Kaynak: Diyanet hesabı · cihazda\n");
}

TEST(Cli, helpWinsOverBadInput)
{
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{"--help"}, "status"}, {{"times", "--lat", "95", "-h"}, "--cache"}, {{"status", "--format", "xml", "--help"}, "--now"}};
    for (const auto &[args, option] : cases) {
        const CliRun run = runCli(args);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.err, "");
        EXPECT_NE(run.out.find(option), std::string::npos) << option;
    }
}

// The shells complete every command and option that --help names, and nothing is forgotten when
// an option is added.
TEST(Cli, completionsKnowEveryOption)
{
    const std::string bash = readFile(ORVEL_COMPLETIONS_DIR "/orvel-cli.bash");
    const std::string zsh = readFile(ORVEL_COMPLETIONS_DIR "/_orvel-cli");
    const std::string fish = readFile(ORVEL_COMPLETIONS_DIR "/orvel-cli.fish");
    ASSERT_FALSE(bash.empty() || zsh.empty() || fish.empty());
    // The commands as --help lists them, so that a new one must reach every shell too.
    std::vector<std::string> commands;
    std::istringstream usage(runCli({"--help"}).out);
    bool inCommands = false;
    for (std::string line; std::getline(usage, line);) {
        if (line == "Komutlar:") {
            inCommands = true;
            continue;
        }
        if (inCommands && !line.starts_with("  "))
            break;
        if (inCommands)
            commands.push_back(line.substr(2, line.find(' ', 2) - 2));
    }
    ASSERT_GE(commands.size(), 5u);
    for (const std::string &command : commands) {
        SCOPED_TRACE(command);
        for (const std::string &shell : {bash, zsh, fish})
            EXPECT_NE(shell.find(command), std::string::npos);
        std::istringstream help(runCli({command, "--help"}).out);
        for (std::string line; std::getline(help, line);) {
            if (!line.starts_with("  --"))
                continue;
            const std::string option = line.substr(2, line.find(' ', 2) - 2);
            EXPECT_NE(bash.find(option), std::string::npos) << option;
            EXPECT_NE(zsh.find(option + "["), std::string::npos) << option;
            EXPECT_NE(fish.find("-l " + option.substr(2) + " "), std::string::npos) << option;
        }
    }
    for (const std::string value : {"ummAlQura", "genmon", "ramazan"})
        for (const std::string &shell : {bash, zsh, fish})
            EXPECT_NE(shell.find(value), std::string::npos) << value;
}

// The README and the man page give the same status-bar recipes, each following Orvel.
TEST(Cli, statusBarRecipesAreTheSameInTheReadmeAndTheManual)
{
    const auto recipes = [](std::string text) {
        // roff writes a backslash as \e.
        for (size_t at; (at = text.find("\\e")) != std::string::npos;)
            text.replace(at, 2, "\\");
        std::set<std::string> lines;
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);) {
            const size_t at = line.find("orvel-cli status --");
            if (at == std::string::npos)
                continue;
            const std::string command = line.substr(at, line.find_first_of("\"`\\", at) - at);
            if (command.find("--format") != std::string::npos)
                lines.insert(command);
        }
        return lines;
    };
    const std::set<std::string> readme = recipes(readFile(ORVEL_SOURCE_DIR "/README.md"));
    const std::set<std::string> manual = recipes(readFile(ORVEL_SOURCE_DIR "/man/orvel-cli.roff"));
    EXPECT_EQ(readme, manual);
    EXPECT_TRUE(readme.contains("orvel-cli status --follow --format waybar"));
    EXPECT_TRUE(readme.contains("orvel-cli status --follow --format line"));
}

TEST(Cli, helpNamesTheProgramsOwnOptions)
{
    const CliRun help = runCli({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("--version"), std::string::npos) << help.out;
    EXPECT_TRUE(runCli({"--version"}).out.starts_with("orvel-cli "));
}

TEST(Cli, stopWithoutARunningOrvelSaysSo)
{
    const CliRun stop = runCli({"stop"});
    EXPECT_EQ(stop.status, 1);
    EXPECT_NE(stop.err.find("Orvel açık değil"), std::string::npos) << stop.err;
    EXPECT_EQ(runCli({"stop", "--now"}).status, 2) << "stop takes no options";
}
