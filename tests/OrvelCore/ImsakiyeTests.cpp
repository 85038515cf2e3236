#include "Imsakiye.h"
#include "PrayerCalculator.h"
#include "Ramadan.h"
#include "TimeZone.h"

#include <gtest/gtest.h>

using namespace orvel;

namespace orvel {
inline void PrintTo(const DayKey &day, std::ostream *out) { *out << day.description(); }
} // namespace orvel

namespace {

const TimeZone istanbul = TimeZone::named("Europe/Istanbul");
const Location uskudar{"İstanbul, Üsküdar", 41.0255, 29.0153, "Europe/Istanbul"};

ImsakiyePage page(ImsakiyeMode mode, DayKey today, int64_t offset = 0, bool todayLoaded = true)
{
    ImsakiyePage page{mode, offset, today, std::nullopt};
    if (todayLoaded)
        page.todayTimes = DayTimes{today, {}, std::nullopt};
    return page;
}

std::vector<DayTimes> calculated(const std::vector<DayKey> &keys)
{
    std::vector<DayTimes> days;
    for (const DayKey &key : keys)
        days.push_back(PrayerCalculator::times(key, uskudar, CalculationMethod::diyanet));
    return days;
}

// The page as the window loads it: its keys, computed, then what the page keeps.
std::vector<DayTimes> loaded(const ImsakiyePage &page)
{
    return Imsakiye::pageDays(page, calculated(Imsakiye::keys(page)));
}

// `count` consecutive days from `first`.
std::vector<DayKey> calendarDays(DayKey first, int64_t count)
{
    std::vector<DayKey> days;
    for (int64_t i = 0; i < count; ++i)
        days.push_back(first.adding(i));
    return days;
}

std::vector<DayKey> keysOf(const std::vector<DayTimes> &days)
{
    std::vector<DayKey> keys;
    for (const DayTimes &day : days)
        keys.push_back(day.day);
    return keys;
}

} // namespace

TEST(Imsakiye, weekRunsFromMondayToSundayWhateverTheDay)
{
    const std::vector<DayKey> march9to15 = calendarDays({2026, 3, 9}, 7);
    for (const DayKey today : {DayKey{2026, 3, 9}, DayKey{2026, 3, 10}, DayKey{2026, 3, 15}}) {
        SCOPED_TRACE(today.description());
        EXPECT_EQ(Imsakiye::keys(page(ImsakiyeMode::week, today)), march9to15);
    }
    // A Sunday's page is the six days before it and itself, not the week it starts.
    EXPECT_EQ(Imsakiye::keys(page(ImsakiyeMode::week, {2026, 3, 15}, 1)).front(), (DayKey{2026, 3, 16}));
    EXPECT_EQ(Imsakiye::keys(page(ImsakiyeMode::week, {2026, 3, 15}, -1)).front(), (DayKey{2026, 3, 2}));
    // Across the year: Wednesday 31 December 2025, a week on and ten weeks back.
    EXPECT_EQ(Imsakiye::keys(page(ImsakiyeMode::week, {2025, 12, 31}, 1)), calendarDays({2026, 1, 5}, 7));
    EXPECT_EQ(Imsakiye::keys(page(ImsakiyeMode::week, {2025, 12, 31}, -10)).front(), (DayKey{2025, 10, 20}));

    const ImsakiyePage week = page(ImsakiyeMode::week, {2026, 3, 10});
    EXPECT_EQ(Imsakiye::title(week, loaded(week), istanbul), "9 – 15 Mart 2026");
    // Only the first day's number, even when the week starts in February.
    const ImsakiyePage spanning = page(ImsakiyeMode::week, {2026, 2, 25});
    EXPECT_EQ(Imsakiye::title(spanning, loaded(spanning), istanbul), "23 – 1 Mart 2026");
    EXPECT_EQ(Imsakiye::title(week, {}, istanbul), "");
}

TEST(Imsakiye, monthPagingCrossesTheYearBothWays)
{
    const struct {
        DayKey today;
        int64_t offset;
        MonthKey month;
        const char *title;
    } cases[] = {
        {{2026, 1, 20}, -1, {2025, 12}, "Aralık 2025"},
        {{2025, 12, 5}, 1, {2026, 1}, "Ocak 2026"},
        {{2026, 1, 20}, -13, {2024, 12}, "Aralık 2024"},
        {{2025, 12, 5}, 14, {2027, 2}, "Şubat 2027"},
        {{2026, 3, 10}, 0, {2026, 3}, "Mart 2026"},
        {{2024, 3, 1}, -1, {2024, 2}, "Şubat 2024"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.title);
        EXPECT_EQ(Imsakiye::monthKey(c.today, c.offset), c.month);
        const ImsakiyePage month = page(ImsakiyeMode::month, c.today, c.offset);
        const std::vector<DayKey> keys = Imsakiye::keys(month);
        ASSERT_EQ(keys.size(), static_cast<size_t>(c.month.dayCount()));
        EXPECT_EQ(keys.front(), (DayKey{c.month.year, c.month.month, 1}));
        EXPECT_EQ(keys.back().monthKey(), c.month);
        // The title does not wait for the days.
        EXPECT_EQ(Imsakiye::title(month, {}, istanbul), c.title);
    }
}

TEST(Imsakiye, targetRamadanIsNextYearsOnceThisOneIsOver)
{
    // 10 April 2025 is 12 Şevval 1446.
    const DayKey shawwal{2025, 4, 10};
    EXPECT_EQ(Imsakiye::targetHijriYear(page(ImsakiyeMode::ramadan, shawwal)), 1447);
    EXPECT_EQ(Imsakiye::keys(page(ImsakiyeMode::ramadan, shawwal)), Ramadan::candidateDays(1447));
    EXPECT_EQ(Imsakiye::keys(page(ImsakiyeMode::ramadan, shawwal, -1)), Ramadan::candidateDays(1446));
    // Before today's times are there, the approximate year stands as it is.
    const ImsakiyePage unloaded = page(ImsakiyeMode::ramadan, shawwal, 0, false);
    EXPECT_EQ(Imsakiye::targetHijriYear(unloaded), 1446);
    EXPECT_EQ(Imsakiye::keys(unloaded), Ramadan::candidateDays(1446));
    EXPECT_EQ(Imsakiye::title(unloaded, {}, istanbul), "Ramazan 1446");

    // During Ramadan and before it, this year's; the service's own Hijri date wins over the
    // calendar's (30 March 2025 is 1 Şevval by the calendar, the 30th of Ramadan by the service).
    EXPECT_EQ(Imsakiye::targetHijriYear(page(ImsakiyeMode::ramadan, {2026, 3, 10})), 1447);
    EXPECT_EQ(Imsakiye::targetHijriYear(page(ImsakiyeMode::ramadan, {2026, 1, 10})), 1447);
    ImsakiyePage servicesDay = page(ImsakiyeMode::ramadan, {2025, 3, 30});
    EXPECT_EQ(Imsakiye::targetHijriYear(servicesDay), 1447);
    servicesDay.todayTimes->hijri = HijriDate{30, 9, 1446};
    EXPECT_EQ(Imsakiye::targetHijriYear(servicesDay), 1446);
}

TEST(Imsakiye, ramadanPagesKeepOnlyThatRamadan)
{
    const struct {
        DayKey today;
        int64_t offset;
        DayKey first;
        int64_t count;
        const char *title;
    } cases[] = {
        // Diyanet's calendar, as its 2026 imsakiye: 19 February to 19 March.
        {{2026, 3, 10}, 0, {2026, 2, 19}, 29, "Ramazan 1447 · 19 Şub – 19 Mar 2026"},
        {{2026, 3, 10}, -1, {2025, 3, 1}, 29, "Ramazan 1446 · 1 Mar – 29 Mar 2025"},
        // Across the year's end: the last day's year.
        {{2026, 3, 10}, 5, {2030, 12, 26}, 29, "Ramazan 1452 · 26 Ara – 23 Oca 2031"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.title);
        const ImsakiyePage ramadan = page(ImsakiyeMode::ramadan, c.today, c.offset);
        const std::vector<DayTimes> days = loaded(ramadan);
        EXPECT_EQ(keysOf(days), calendarDays(c.first, c.count));
        EXPECT_EQ(Imsakiye::title(ramadan, days, istanbul), c.title);
    }

    // A stored Hijri date decides over the calendar: a day the service counts in Şaban goes, a
    // day it counts as the 30th stays, and another year's Ramadan never joins.
    const ImsakiyePage ramadan = page(ImsakiyeMode::ramadan, {2025, 3, 10});
    std::vector<DayTimes> days = calculated({{2025, 3, 1}, {2025, 3, 2}, {2025, 3, 30}, {2026, 2, 20}});
    days[0].hijri = HijriDate{29, 8, 1446};
    days[2].hijri = HijriDate{30, 9, 1446};
    EXPECT_EQ(keysOf(Imsakiye::pageDays(ramadan, days)), (std::vector<DayKey>{{2025, 3, 2}, {2025, 3, 30}}));
    // Other modes keep every day.
    EXPECT_EQ(Imsakiye::pageDays(page(ImsakiyeMode::month, {2025, 3, 10}), days), days);
}

TEST(Imsakiye, rowsNotesAndHighlights)
{
    const ImsakiyePage ramadan = page(ImsakiyeMode::ramadan, {2026, 3, 10});
    const std::vector<Imsakiye::Row> rows = Imsakiye::rows(ramadan, loaded(ramadan), istanbul);
    ASSERT_EQ(rows.size(), 29u);
    const Imsakiye::Row &today = rows[19];
    EXPECT_EQ(today.day, (DayKey{2026, 3, 10}));
    EXPECT_EQ(today.date, "10 Mar Sal");
    EXPECT_EQ(today.hijri, "20. gün");
    EXPECT_EQ(today.times[0], "05:53");
    EXPECT_EQ(today.times[4], "19:11");
    EXPECT_TRUE(today.isToday);
    EXPECT_FALSE(today.isPast);
    EXPECT_TRUE(rows[18].isPast && !rows[18].isToday);
    EXPECT_FALSE(rows[20].isPast || rows[20].isToday);
    // Days gone by fade on every page, the Ramadan one too; today does not.
    EXPECT_TRUE(Imsakiye::isDimmed(rows[18]));
    EXPECT_FALSE(Imsakiye::isDimmed(today));

    std::vector<std::string> notes;
    for (const Imsakiye::Row &row : rows)
        notes.push_back(row.note.value_or(""));
    std::vector<std::string> expected(29, "");
    expected[25] = "Kadir Gecesi";
    expected[28] = "Ramazan Bayramı Arefesi";
    EXPECT_EQ(notes, expected) << "no start note in Ramadan mode";

    // Outside Ramadan mode: the start is marked, the Kadir night too, but no Arefe.
    const ImsakiyePage february = page(ImsakiyeMode::month, {2026, 3, 10}, -1);
    const std::vector<Imsakiye::Row> febRows = Imsakiye::rows(february, loaded(february), istanbul);
    EXPECT_EQ(febRows[18].note, "Ramazan Başlangıcı");
    EXPECT_EQ(febRows[18].hijri, "1 Ramazan");
    EXPECT_EQ(febRows[17].hijri, "30 Şaban");
    EXPECT_TRUE(febRows[17].isPast);
    const ImsakiyePage march = page(ImsakiyeMode::month, {2026, 3, 10});
    const std::vector<Imsakiye::Row> marchRows = Imsakiye::rows(march, loaded(march), istanbul);
    EXPECT_EQ(marchRows[15].note, "Kadir Gecesi");
    // 19 and 20 March 2026: the Arefe and the Bayram's first day, on the month's page too.
    EXPECT_EQ(marchRows[18].note, "Ramazan Bayramı Arefesi");
    EXPECT_EQ(marchRows[19].note, "Ramazan Bayramı (1. Gün)");
    EXPECT_EQ(marchRows[9].note, std::nullopt);

    // A page cut short on the 26th keeps the Kadir night; one that ends on the 29th ends Ramadan
    // even where the calendar's guess gives a 30th.
    const DayKey any{2026, 3, 16};
    EXPECT_EQ(Imsakiye::note(ImsakiyeMode::ramadan, any, {26, 9, 1447}, {27, 9, 1447}, true), "Kadir Gecesi");
    EXPECT_EQ(Imsakiye::note(ImsakiyeMode::ramadan, any, {29, 9, 1447}, {30, 9, 1447}, true), "Ramazan Bayramı Arefesi");
    EXPECT_EQ(Imsakiye::note(ImsakiyeMode::ramadan, any, {1, 9, 1447}, {2, 9, 1447}, false), std::nullopt);
    EXPECT_EQ(Imsakiye::note(ImsakiyeMode::week, any, {26, 8, 1447}, {27, 8, 1447}, false), std::nullopt);
    // The other days of the year, on every page.
    EXPECT_EQ(Imsakiye::note(ImsakiyeMode::month, {2026, 2, 2}, {14, 8, 1447}, {15, 8, 1447}, false), "Berat Kandili");
    EXPECT_EQ(Imsakiye::note(ImsakiyeMode::week, {2026, 12, 10}, {1, 7, 1448}, {2, 7, 1448}, false),
              "Üç Ayların Başlangıcı · Regaib Kandili");

    std::vector<std::string> highlighted, seconds;
    for (const Prayer::Value prayer : Prayer::all) {
        if (Imsakiye::isHighlighted(ImsakiyeMode::ramadan, prayer))
            highlighted.emplace_back(Prayer(prayer).id());
        if (const auto second = Imsakiye::secondHeading(ImsakiyeMode::ramadan, prayer))
            seconds.emplace_back(*second);
        EXPECT_FALSE(Imsakiye::isHighlighted(ImsakiyeMode::month, prayer));
        EXPECT_EQ(Imsakiye::secondHeading(ImsakiyeMode::week, prayer), std::nullopt);
    }
    EXPECT_EQ(highlighted, (std::vector<std::string>{"imsak", "aksam"}));
    EXPECT_EQ(seconds, (std::vector<std::string>{"Sahur", "İftar"}));
    EXPECT_EQ(Imsakiye::placeLine(uskudar, CalculationMethod::ummAlQura), "İstanbul, Üsküdar · Ümmü'l-Kura, Mekke");
}

TEST(ImsakiyeMode, idsAndLabels)
{
    std::vector<std::string> labels;
    for (const ImsakiyeMode::Value mode : ImsakiyeMode::all) {
        labels.emplace_back(ImsakiyeMode(mode).label());
        EXPECT_EQ(ImsakiyeMode::fromId(ImsakiyeMode(mode).id()), ImsakiyeMode(mode));
    }
    EXPECT_EQ(labels, (std::vector<std::string>{"Hafta", "Ay", "Ramazan"}));
    EXPECT_EQ(ImsakiyeMode::fromId("Ay"), std::nullopt);
}
