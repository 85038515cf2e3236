#include "PanelRules.h"
#include "ViewsTestSupport.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace orvel;
using namespace orvel::test;
using State = PrayerRowState;
using K = KerahatKind;

namespace {

std::vector<State> rowStates(const PrayerStatus &status, const DayTimes &today, Instant now)
{
    std::vector<State> states;
    for (const Prayer::Value prayer : Prayer::all)
        states.push_back(PanelRules::rowState(prayer, status, today, now));
    return states;
}

std::vector<KerahatInterval> kerahatOf(const DayTimes &day)
{
    return Kerahat::intervals(day, Kerahat::defaultSunMinutes, Kerahat::defaultIstivaMinutes);
}

std::vector<K::Value> kinds(const std::vector<KerahatInterval> &intervals)
{
    std::vector<K::Value> all;
    for (const KerahatInterval &interval : intervals)
        all.push_back(interval.kind);
    return all;
}

} // namespace

TEST(PanelRules, RowStatesMarkOnlyTodaysOwnTimes)
{
    const DayTimes today = march10();
    const auto P = State::past, C = State::current, N = State::next, U = State::upcoming;
    const auto rowStatesAt = [](Instant now) { return rowStates(PrayerSchedule::status(now, march10(), march11(), TimeZone::named("Europe/Istanbul")), march10(), now); };
    EXPECT_EQ(rowStatesAt(at(2026, 3, 10, 12, 30)), (std::vector{P, C, N, U, U, U}));
    EXPECT_EQ(rowStatesAt(at(2026, 3, 10, 4, 0)), (std::vector{N, U, U, U, U, U}));
    EXPECT_EQ(rowStatesAt(today[Prayer::ogle]), (std::vector{P, P, C, N, U, U})) << "current from its very instant";
    // After Yatsı the next time is tomorrow's İmsak: today's İmsak row stays past, nothing is next.
    EXPECT_EQ(rowStatesAt(at(2026, 3, 10, 22, 0)), (std::vector{P, P, P, P, P, C}));

    // After midnight yesterday's Yatsı is still the current time; today's Yatsı row is not it.
    const DayTimes tomorrow = march11();
    const PrayerStatus afterMidnight{.current = Prayer::yatsi, .currentTime = today[Prayer::yatsi],
                                     .next = Prayer::imsak, .nextTime = tomorrow[Prayer::imsak]};
    EXPECT_EQ(rowStates(afterMidnight, tomorrow, at(2026, 3, 11, 0, 40)), (std::vector{N, U, U, U, U, U}));
}

TEST(PanelRules, KerahatRowsSitBesideTheirTimes)
{
    const std::vector<KerahatInterval> intervals = kerahatOf(march10());
    EXPECT_EQ(kinds(PanelRules::kerahatAfter(Prayer::gunes, intervals)), std::vector{K::sunrise});
    EXPECT_EQ(kinds(PanelRules::kerahatBefore(Prayer::ogle, intervals)), std::vector{K::istiva});
    EXPECT_EQ(kinds(PanelRules::kerahatBefore(Prayer::aksam, intervals)), std::vector{K::sunset});
    size_t placed = 0;
    for (const Prayer::Value prayer : Prayer::all)
        placed += PanelRules::kerahatBefore(prayer, intervals).size() + PanelRules::kerahatAfter(prayer, intervals).size();
    EXPECT_EQ(placed, intervals.size()) << "each interval appears exactly once";
}

TEST(PanelRules, OnlyTheNextKerahatCountsDown)
{
    const std::vector<KerahatInterval> intervals = kerahatOf(march10());
    const auto counting = [&](Instant now) {
        std::vector<K::Value> shown;
        for (const KerahatInterval &interval : intervals)
            if (PanelRules::showsCountdown(interval, intervals, now))
                shown.push_back(interval.kind);
        return shown;
    };
    EXPECT_EQ(counting(at(2026, 3, 10, 6, 0)), std::vector{K::sunrise});
    EXPECT_EQ(counting(at(2026, 3, 10, 12, 30)), std::vector{K::istiva});
    EXPECT_TRUE(counting(at(2026, 3, 10, 13, 12)).empty()) << "none while one is in force";
    EXPECT_TRUE(counting(at(2026, 3, 10, 21, 0)).empty()) << "none after the last";

    const Instant inIstiva = at(2026, 3, 10, 13, 12);
    EXPECT_EQ(PanelRules::kerahatRowState(intervals[0], inIstiva), KerahatRowState::past);
    EXPECT_EQ(PanelRules::kerahatRowState(intervals[1], inIstiva), KerahatRowState::active);
    EXPECT_EQ(PanelRules::kerahatRowState(intervals[2], inIstiva), KerahatRowState::upcoming);
    EXPECT_EQ(PanelRules::kerahatRowState(intervals[1], intervals[1].start), KerahatRowState::active);
    EXPECT_EQ(PanelRules::kerahatRowState(intervals[1], intervals[1].end), KerahatRowState::past) << "the end is outside";
}

TEST(PanelRules, CountdownsRoundUpAndNeverFallBelowOneMinute)
{
    const KerahatInterval istiva = kerahatOf(march10())[1]; // 13:09 – 13:19
    EXPECT_EQ(PanelRules::kerahatCountdown(istiva, at(2026, 3, 10, 12, 9)), QStringLiteral("1 sa 0 dk"));
    EXPECT_EQ(PanelRules::kerahatCountdown(istiva, at(2026, 3, 10, 12, 8, 30)), QStringLiteral("1 sa 1 dk"));
    EXPECT_EQ(PanelRules::kerahatCountdown(istiva, istiva.start - 20), QStringLiteral("1 dk"));
    EXPECT_EQ(PanelRules::minutesUntilStart(istiva, istiva.start), 1);

    EXPECT_EQ(PanelRules::bannerMinutesLeft(istiva, at(2026, 3, 10, 13, 12)), 7);
    EXPECT_EQ(PanelRules::bannerMinutesLeft(istiva, at(2026, 3, 10, 13, 11, 59)), 8);
    EXPECT_EQ(PanelRules::bannerMinutesLeft(istiva, istiva.end - 10), 1);
    EXPECT_EQ(PanelRules::bannerMinutesLeft(istiva, istiva.end), 1);
}

TEST(PanelRules, KerahatTexts)
{
    const TimeZone zone = TimeZone::named("Europe/Istanbul");
    const std::vector<KerahatInterval> intervals = kerahatOf(march10());
    EXPECT_EQ(PanelRules::bannerDetail(intervals[2], zone), QStringLiteral("Güneş batmadan önce · 19:12'ye kadar"));
    // The clock follows the place's zone, not the machine's.
    EXPECT_EQ(PanelRules::kerahatRange(intervals[1], TimeZone::named("Europe/London")),
              QStringLiteral("10:09 – 10:19"));
}

TEST(PanelRules, RamadanLine)
{
    const DayTimes plain = march10(); // no Hijri date of its own: 21 Ramazan by approximation
    EXPECT_EQ(PanelRules::ramadanLine(21, plain), QStringLiteral("Ramazan'ın 21. günü"));
    EXPECT_EQ(PanelRules::ramadanLine(std::nullopt, plain), std::nullopt);
    EXPECT_EQ(PanelRules::ramadanLine(21, std::nullopt), std::nullopt);

    DayTimes stored = plain;
    stored.hijri = HijriDate{5, 9, 1447};
    EXPECT_EQ(PanelRules::ramadanLine(5, stored), QStringLiteral("Ramazan'ın 5. günü"));
    stored.hijri = HijriDate{26, 9, 1447};
    EXPECT_EQ(PanelRules::ramadanLine(26, stored), QStringLiteral("Bu gece Kadir Gecesi"));
    stored.hijri = HijriDate{26, 8, 1447};
    EXPECT_NE(PanelRules::ramadanLine(26, stored), QStringLiteral("Bu gece Kadir Gecesi")) << "only in Ramadan";
    // 15 March 2026 is 26 Ramazan 1447 by the Umm al-Qura calendar.
    const DayTimes kadir = day({2026, 3, 15}, {{{5, 44}, {7, 9}, {13, 18}, {16, 38}, {19, 17}, {20, 37}}});
    EXPECT_EQ(PanelRules::ramadanLine(26, kadir), QStringLiteral("Bu gece Kadir Gecesi"));
}

TEST(PanelRules, Subtitle)
{
    const std::tuple<int, bool, const char *> cases[] = {
        {22, true, "Yarın 05:51 · İmsak"}, {22, false, "Yarın 05:51"}, {4, true, "05:53 · İmsak"},
        {4, false, "05:53"}, {6, false, "07:17 · Güneş doğuşu"}, {6, true, "07:17 · Güneş doğuşu"},
        {12, true, "13:19"}, {17, false, "19:12 · Güneş batışı"}, {17, true, "19:12 · Akşam ezanı"},
    };
    for (const auto &[hour, ramadan, expected] : cases) {
        SCOPED_TRACE(testing::Message() << hour << ":30, Ramadan " << ramadan);
        const PrayerStatus status = PrayerSchedule::status(at(2026, 3, 10, hour, 30), march10(), march11(), TimeZone::named("Europe/Istanbul"));
        EXPECT_EQ(PanelRules::subtitle(status, ramadan, TimeZone::named("Europe/Istanbul")), QString::fromUtf8(expected));
    }
}

TEST(PanelRules, CountdownTitleAndBigTime)
{
    using Title = PanelRules::CountdownTitle;
    EXPECT_EQ(PanelRules::countdownTitle(Prayer::aksam, true), (Title{"İftar", "a kalan"}));
    EXPECT_EQ(PanelRules::countdownTitle(Prayer::imsak, false), (Title{"İmsak", " vaktine kalan"}));
    EXPECT_EQ(PanelRules::countdownTitle(QStringLiteral("Güneş doğuşuna"), QStringLiteral("Sabah")),
              (Title{"", "Güneş doğuşuna kalan"}));

    using Big = PanelRules::BigTime;
    EXPECT_EQ(PanelRules::bigTime(0), (Big{std::nullopt, 0}));
    EXPECT_EQ(PanelRules::bigTime(59), (Big{std::nullopt, 59}));
    EXPECT_EQ(PanelRules::bigTime(60), (Big{1, 0}));
    EXPECT_EQ(PanelRules::bigTime(135), (Big{2, 15}));
}

TEST(PanelRules, FractionOfTheDayIsClamped)
{
    DayTimes today = march10();
    const Instant imsak = today[Prayer::imsak], yatsi = today[Prayer::yatsi];
    EXPECT_DOUBLE_EQ(PanelRules::fraction(imsak + (yatsi - imsak) / 4, today), 0.25);
    EXPECT_DOUBLE_EQ(PanelRules::fraction(imsak - 3600, today), 0);
    EXPECT_DOUBLE_EQ(PanelRules::fraction(yatsi + 3600, today), 1);
    today.times[Prayer::yatsi] = imsak - 60;
    EXPECT_DOUBLE_EQ(PanelRules::fraction(imsak + 3600, today), 0) << "a Yatsı not after İmsak";
}

TEST(PanelRules, RowTagsAndBell)
{
    EXPECT_EQ(PanelRules::prayerTag(Prayer::imsak, true), QStringLiteral("sahur sonu"));
    EXPECT_EQ(PanelRules::prayerTag(Prayer::aksam, true), QStringLiteral("iftar"));
    EXPECT_EQ(PanelRules::prayerTag(Prayer::ogle, true), std::nullopt);
    EXPECT_EQ(PanelRules::prayerTag(Prayer::imsak, false), std::nullopt);
    EXPECT_EQ(PanelRules::prayerTag(Prayer::yatsi, false, true), QStringLiteral("tahmini"));
    EXPECT_EQ(PanelRules::prayerTag(Prayer::imsak, true, true), QStringLiteral("sahur sonu · tahmini"));

    EXPECT_EQ(PanelRules::bellToolTip(Prayer::ikindi, true), QStringLiteral("İkindi bildirimini kapat"));
}

// The place's tooltip gives the qibla in the words of the command line, and the kıble saati only
// on a day the sun stands in the qibla's direction.
TEST(PanelRules, QiblaLine)
{
    const Location istanbul = Location::istanbul();
    const QString line = PanelRules::qiblaLine(istanbul, {2026, 3, 10});
    EXPECT_TRUE(line.startsWith(QStringLiteral("Kıble 152° (güneydoğu) · Kâbe'ye 2.4"))) << line.toStdString();
    EXPECT_TRUE(line.contains(QStringLiteral(" · kıble saati "))) << line.toStdString();
    // In the polar night the sun never rises, so no shadow points anywhere.
    const Location north{"Longyearbyen", 78.2232, 15.6267, "Arctic/Longyearbyen"};
    const QString polar = PanelRules::qiblaLine(north, {2026, 12, 21});
    EXPECT_FALSE(polar.contains(QStringLiteral("kıble saati"))) << polar.toStdString();
}
