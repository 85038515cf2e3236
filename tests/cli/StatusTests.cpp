#include "CliRun.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using nlohmann::json;

namespace {

// Istanbul, 21 June 2025: İmsak 03:24, Güneş 05:25, Öğle 13:11, İkindi 17:11, Akşam 20:47, Yatsı 22:38.
std::string status(const std::string &now, const std::string &format, const std::vector<std::string> &more = {})
{
    std::vector<std::string> args{"status", "--offline", "--now", now, "--format", format};
    args.insert(args.end(), more.begin(), more.end());
    const CliRun run = runCli(args);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    return run.out;
}

json waybar(const std::string &now)
{
    const std::string out = status(now, "waybar");
    EXPECT_EQ(out.find('\n'), out.size() - 1) << out; // Waybar reads one object per line.
    return json::parse(out);
}

} // namespace

TEST(CliStatus, waybarLineAtTheEntryInKerahatAndOtherwise)
{
    // 587 and 1023 of the 1154 minutes from İmsak to Yatsı have passed.
    EXPECT_EQ(waybar("2025-06-21T13:11"), json::parse(R"({"text":"Öğle vakti","class":"adhan","alt":"ikindi","percentage":50,
        "tooltip":"İmsak 03:24\nGüneş 05:25\nÖğle 13:11\nİkindi 17:11\nAkşam 20:47\nYatsı 22:38\nİkindi ezanına 4 saat kaldı"})"));

    EXPECT_EQ(waybar("2025-06-21T20:27"), json::parse(R"({"text":"Akşam 0:20","class":"kerahat","alt":"aksam","percentage":88,
        "tooltip":"İmsak 03:24\nGüneş 05:25\nÖğle 13:11\nİkindi 17:11\nAkşam 20:47\nYatsı 22:38\nAkşam ezanına 20 dakika kaldı, kerahat vakti"})"));
    // Güneş's entry begins a kerahat rather than being announced.
    EXPECT_EQ(waybar("2025-06-21T05:25").at("class"), "kerahat");
    EXPECT_EQ(waybar("2025-06-21T05:26").at("class"), "kerahat");

    const json normal = waybar("2025-06-21T17:41");
    EXPECT_EQ(normal.at("text"), "Akşam 3:06");
    EXPECT_EQ(normal.at("class"), "normal");
}

TEST(CliStatus, textLines)
{
    const std::vector<std::pair<std::string, std::string>> cases{
        {"2025-06-21T19:32", "Akşam 1:15\nAkşam ezanına 1 saat 15 dakika kaldı\n"},
        {"2025-06-21T13:11", "Öğle vakti\nİkindi ezanına 4 saat kaldı\n"},
        {"2025-06-21T13:06", "Öğle 0:05\nÖğle ezanına 5 dakika kaldı, kerahat vakti\n"},
        {"2025-06-21T03:23", "İmsak 0:01\nİmsak vaktine 1 dakika kaldı\n"},
        {"2025-06-22T00:30", "İmsak 2:54\nİmsak vaktine 2 saat 54 dakika kaldı\n"},
        // After Yatsı the count runs to tomorrow's own İmsak: 05:50, a minute after today's.
        {"2025-10-20T21:30", "İmsak 8:20\nİmsak vaktine 8 saat 20 dakika kaldı\n"},
        // 10 Ramadan 1446, Akşam 19:12; and the eve of 1 Ramadan, whose next İmsak (06:07) ends the first Sahur.
        {"2025-03-10T17:57", "İftar 1:15\nİftara 1 saat 15 dakika kaldı\n"},
        {"2025-03-10T19:12", "İftar vakti\nYatsı ezanına 1 saat 19 dakika kaldı\n"},
        {"2025-02-28T21:20", "Sahur 8:47\nSahurun bitmesine 8 saat 47 dakika kaldı\n"},
        // Diyanet's table: Akşam 19:00 that day.
        {"2025-02-28T18:01", "Akşam 0:59\nAkşam ezanına 59 dakika kaldı\n"},
    };
    for (const auto &[now, text] : cases)
        EXPECT_EQ(status(now, "text"), text) << now;
}

TEST(CliStatus, jsonObject)
{
    // Istanbul's coordinates on New York's clock: --now and every time are read in the place's zone.
    json document = json::parse(status("2025-06-21T13:27", "json", {"--tz", "America/New_York"}));
    // --json, which every other command takes, is --format json.
    const CliRun viaJson = runCli({"status", "--offline", "--now", "2025-06-21T13:27", "--tz", "America/New_York", "--json"});
    ASSERT_EQ(viaJson.status, 0) << viaJson.err;
    EXPECT_EQ(json::parse(viaJson.out), document);
    EXPECT_DOUBLE_EQ(document.at("dayProgress").get<double>(), 1023.0 / 1154);
    document.erase("dayProgress");
    EXPECT_EQ(document, json::parse(R"({"current":"ikindi","currentTime":"2025-06-21T10:11:00-04:00","next":"aksam",
        "nextTime":"2025-06-21T13:47:00-04:00","nextIsTomorrow":false,"minutesRemaining":20,
        "kerahat":{"kind":"sunset","start":"2025-06-21T13:02:00-04:00","end":"2025-06-21T13:47:00-04:00"},
        "title":"Akşam 0:20","label":"Akşam ezanına 20 dakika kaldı, kerahat vakti","method":"diyanet","source":"rule",
        "location":{"name":"İstanbul, Fatih","latitude":41.0082,"longitude":28.9784,"timeZoneID":"America/New_York",
                    "diyanetPoint":{"latitude":41.0148,"longitude":28.9687},"countryCode":"TR"}})"));

    // Before İmsak nothing is current; after Yatsı the next time is tomorrow's.
    const json before = json::parse(status("2025-06-21T02:54", "json"));
    EXPECT_TRUE(before.at("current").is_null() && before.at("currentTime").is_null() && before.at("kerahat").is_null());
    EXPECT_EQ(before.at("dayProgress"), 0.0);
    EXPECT_EQ(before.at("nextTime"), "2025-06-21T03:24:00+03:00");
    const json night = json::parse(status("2025-06-21T23:39", "json"));
    EXPECT_EQ(night.at("nextIsTomorrow"), true);
    EXPECT_EQ(night.at("nextTime"), "2025-06-22T03:24:00+03:00");
}
