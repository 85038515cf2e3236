#include "Calendars.h"
#include "CliRun.h"
#include "Imsakiye.h"
#include "OrvelFormat.h"
#include "PrayerCalculator.h"
#include "TimeZone.h"

#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>

using namespace orvel;
using nlohmann::json;

namespace {

json imsakiyeJson(const std::vector<std::string> &more)
{
    std::vector<std::string> args{"imsakiye", "--offline", "--json"};
    args.insert(args.end(), more.begin(), more.end());
    const CliRun run = runCli(args);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    return json::parse(run.out);
}

} // namespace

// The terminal shows the page the window's rules make of the same days.
TEST(CliImsakiye, pageFollowsTheTimetablesRules)
{
    const Location fatih = Location::istanbul();
    const struct {
        ImsakiyeMode mode;
        DayKey today;
        int64_t offset;
    } pages[] = {
        {ImsakiyeMode::week, {2026, 3, 15}, 0},
        {ImsakiyeMode::month, {2026, 1, 15}, -1},
        // Şevval: the next Ramadan, and the one after it.
        {ImsakiyeMode::ramadan, {2025, 4, 10}, 0},
        {ImsakiyeMode::ramadan, {2025, 4, 10}, 1},
    };
    // The Turkish words name the pages too.
    const std::map<ImsakiyeMode::Value, std::string> turkish{
        {ImsakiyeMode::week, "hafta"}, {ImsakiyeMode::month, "ay"}, {ImsakiyeMode::ramadan, "ramazan"}};
    bool inTurkish = false;
    for (const auto &p : pages) {
        SCOPED_TRACE(std::string(p.mode.id()) + " " + p.today.description() + " " + std::to_string(p.offset));
        const std::string modeWord = inTurkish ? turkish.at(p.mode) : std::string(p.mode.id());
        inTurkish = !inTurkish;
        const json page = imsakiyeJson({"--mode", modeWord, "--offset", std::to_string(p.offset),
                                        "--date", p.today.description()});

        const ImsakiyePage expected{p.mode, p.offset, p.today,
                                    PrayerCalculator::times(p.today, fatih, CalculationMethod::diyanet)};
        std::vector<DayTimes> days;
        for (const DayKey &key : Imsakiye::keys(expected))
            days.push_back(PrayerCalculator::times(key, fatih, CalculationMethod::diyanet));
        days = Imsakiye::pageDays(expected, days);
        const std::vector<Imsakiye::Row> rows = Imsakiye::rows(expected, days, fatih.timeZone());

        EXPECT_EQ(page.at("title"), Imsakiye::title(expected, days, fatih.timeZone()));
        EXPECT_EQ(page.at("mode"), p.mode.id());
        ASSERT_EQ(page.at("days").size(), rows.size());
        for (size_t i = 0; i < rows.size(); ++i) {
            const json &day = page["days"][i];
            SCOPED_TRACE(rows[i].day.description());
            EXPECT_EQ(day.at("date"), rows[i].day.description());
            EXPECT_EQ(day.at("hijri").at("month"), rows[i].hijriDate.month);
            EXPECT_EQ(day.at("hijri").at("day"), rows[i].hijriDate.day);
            EXPECT_EQ(day.at("note"), rows[i].note ? json(*rows[i].note) : json(nullptr));
            for (size_t p = 0; p < 6; ++p)
                EXPECT_EQ(day.at("clock")[p], OrvelFormat::time(days[i].times[p], fatih.timeZone()));
            EXPECT_EQ(day.at("today"), rows[i].isToday);
            EXPECT_EQ(day.at("past"), rows[i].isPast);
            EXPECT_EQ(day.at("times")[2], Calendars::iso8601(days[i].times[2], fatih.timeZone()));
        }
    }
}

TEST(CliImsakiye, ramadanTableInTheTerminal)
{
    const CliRun run = runCli({"imsakiye", "--offline", "--mode", "ramadan", "--date", "2026-03-10"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    std::vector<std::string> lines;
    for (size_t start = 0; start < run.out.size();) {
        const size_t end = run.out.find('\n', start);
        lines.push_back(run.out.substr(start, end - start));
        start = end + 1;
    }
    // Title, place, blank, two heading lines, 29 days (Diyanet's 2026 imsakiye), blank, notice, source.
    ASSERT_EQ(lines.size(), 3u + 2 + 29 + 3) << run.out;
    EXPECT_EQ(lines[0], "Ramazan 1447 · 19 Şub – 19 Mar 2026");
    EXPECT_EQ(lines[1], "İstanbul, Fatih · Diyanet İşleri Başkanlığı");
    EXPECT_EQ(lines[3], "   Tarih       Ramazan  İmsak  Güneş  Öğle   İkindi  Akşam  Yatsı  Not");
    EXPECT_EQ(lines[4], "                        Sahur                        İftar");
    EXPECT_TRUE(lines[5].starts_with("   19 Şub Per  1. gün   ")) << lines[5];
    EXPECT_TRUE(lines[24].starts_with("*  10 Mar Sal  20. gün  ")) << lines[24];
    EXPECT_TRUE(lines[30].ends_with("  Kadir Gecesi")) << lines[30];
    EXPECT_TRUE(lines[33].starts_with("   19 Mar Per  29. gün") && lines[33].ends_with("  Ramazan Bayramı Arefesi")) << lines[33];
    EXPECT_EQ(lines[35], "Hicri tarihler ±1 gün farklı olabilir");

    for (const auto &[args, named] : std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{"imsakiye", "--mode", "year"}, "geçersiz sayfa: year"},
             {{"imsakiye", "--offset", "1201"}, "sayfa farkı: 1201"},
             {{"imsakiye", "--offset", "-2x"}, "-2x"}}) {
        const CliRun bad = runCli(args);
        EXPECT_EQ(bad.status, 2);
        EXPECT_EQ(bad.out, "");
        EXPECT_NE(bad.err.find(named), std::string::npos) << bad.err;
    }
}
