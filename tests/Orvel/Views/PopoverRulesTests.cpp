#include "PopoverRules.h"
#include "ViewsTestSupport.h"

#include <gtest/gtest.h>

using namespace orvel;
using namespace orvel::test;
using State = PrayerRowState;

namespace {

std::vector<State> rowStates(const PrayerStatus &status, const DayTimes &today, Instant now)
{
    std::vector<State> states;
    for (const Prayer::Value prayer : Prayer::allCases)
        states.push_back(PopoverRules::rowState(prayer, status, today, now));
    return states;
}

std::vector<State> rowStatesAt(Instant now, const DayTimes &today, const DayTimes &tomorrow)
{
    return rowStates(PrayerSchedule::status(now, today, tomorrow), today, now);
}

std::vector<KerahatInterval> kerahatOf(const DayTimes &day)
{
    return Kerahat::intervals(day, Kerahat::defaultSunMinutes, Kerahat::defaultIstivaMinutes);
}

std::vector<KerahatKind::Value> kinds(const std::vector<KerahatInterval> &intervals)
{
    std::vector<KerahatKind::Value> all;
    for (const KerahatInterval &interval : intervals)
        all.push_back(interval.kind);
    return all;
}

} // namespace

TEST(PopoverRules, RowStatesMarkOnlyTodaysOwnTimes)
{
    const DayTimes today = march10();
    const DayTimes tomorrow = march11();

    EXPECT_EQ(rowStatesAt(at(2026, 3, 10, 12, 30), today, tomorrow),
              (std::vector{State::past, State::current, State::next, State::upcoming, State::upcoming,
                           State::upcoming}));
    EXPECT_EQ(rowStatesAt(at(2026, 3, 10, 4, 0), today, tomorrow),
              (std::vector{State::next, State::upcoming, State::upcoming, State::upcoming, State::upcoming,
                           State::upcoming}));
    // A time that enters this very minute is current, not next.
    EXPECT_EQ(PopoverRules::rowState(Prayer::ogle, PrayerSchedule::status(today[Prayer::ogle], today, tomorrow),
                                     today, today[Prayer::ogle]),
              State::current);

    // After Yatsı the next time is tomorrow's İmsak: today's İmsak row stays past, nothing is next.
    const std::vector<State> evening = rowStatesAt(at(2026, 3, 10, 22, 0), today, tomorrow);
    EXPECT_EQ(evening, (std::vector{State::past, State::past, State::past, State::past, State::past,
                                    State::current}));

    // After midnight yesterday's Yatsı is still the current time; today's Yatsı row is not it.
    PrayerStatus afterMidnight;
    afterMidnight.current = Prayer::yatsi;
    afterMidnight.currentTime = at(2026, 3, 10, 20, 31);
    afterMidnight.next = Prayer::imsak;
    afterMidnight.nextTime = tomorrow[Prayer::imsak];
    EXPECT_EQ(rowStates(afterMidnight, tomorrow, at(2026, 3, 11, 0, 40)),
              (std::vector{State::next, State::upcoming, State::upcoming, State::upcoming, State::upcoming,
                           State::upcoming}));
}

TEST(PopoverRules, KerahatRowsSitBesideTheirTimes)
{
    const std::vector<KerahatInterval> intervals = kerahatOf(march10());
    using K = KerahatKind;
    EXPECT_EQ(kinds(PopoverRules::kerahatAfter(Prayer::gunes, intervals)), std::vector{K::sunrise});
    EXPECT_EQ(kinds(PopoverRules::kerahatBefore(Prayer::ogle, intervals)), std::vector{K::istiva});
    EXPECT_EQ(kinds(PopoverRules::kerahatBefore(Prayer::aksam, intervals)), std::vector{K::sunset});

    size_t placed = 0;
    for (const Prayer::Value prayer : Prayer::allCases) {
        placed += PopoverRules::kerahatBefore(prayer, intervals).size();
        placed += PopoverRules::kerahatAfter(prayer, intervals).size();
        EXPECT_TRUE(PopoverRules::kerahatBefore(prayer, {}).empty());
        EXPECT_TRUE(PopoverRules::kerahatAfter(prayer, {}).empty());
    }
    EXPECT_EQ(placed, intervals.size()) << "each interval appears exactly once";
}

TEST(PopoverRules, OnlyTheNextKerahatCountsDown)
{
    const std::vector<KerahatInterval> intervals = kerahatOf(march10());
    const KerahatInterval &sunrise = intervals[0];
    const KerahatInterval &istiva = intervals[1];
    const KerahatInterval &sunset = intervals[2];

    const auto counting = [&](Instant now) {
        std::vector<KerahatKind::Value> shown;
        for (const KerahatInterval &interval : intervals) {
            if (PopoverRules::showsCountdown(interval, intervals, now))
                shown.push_back(interval.kind);
        }
        return shown;
    };
    EXPECT_EQ(counting(at(2026, 3, 10, 12, 30)), std::vector{KerahatKind::istiva});
    EXPECT_EQ(counting(at(2026, 3, 10, 6, 0)), std::vector{KerahatKind::sunrise});
    EXPECT_TRUE(counting(at(2026, 3, 10, 13, 12)).empty()) << "none while one is in force";
    EXPECT_TRUE(counting(at(2026, 3, 10, 21, 0)).empty()) << "none after the last";

    const Instant inIstiva = at(2026, 3, 10, 13, 12);
    EXPECT_EQ(PopoverRules::kerahatRowState(sunrise, inIstiva), KerahatRowState::past);
    EXPECT_EQ(PopoverRules::kerahatRowState(istiva, inIstiva), KerahatRowState::active);
    EXPECT_EQ(PopoverRules::kerahatRowState(sunset, inIstiva), KerahatRowState::upcoming);
    EXPECT_EQ(PopoverRules::kerahatRowState(istiva, istiva.end), KerahatRowState::past) << "the end is outside";
    EXPECT_EQ(PopoverRules::kerahatRowState(istiva, istiva.start), KerahatRowState::active);
}

TEST(PopoverRules, CountdownsRoundUpAndNeverFallBelowOneMinute)
{
    const std::vector<KerahatInterval> intervals = kerahatOf(march10());
    const KerahatInterval &sunrise = intervals[0];
    const KerahatInterval &istiva = intervals[1]; // 13:09 – 13:19

    EXPECT_EQ(PopoverRules::kerahatCountdown(istiva, at(2026, 3, 10, 12, 30)), QStringLiteral("39 dk"));
    EXPECT_EQ(PopoverRules::kerahatCountdown(sunrise, at(2026, 3, 10, 5, 0)), QStringLiteral("2 sa 17 dk"));
    EXPECT_EQ(PopoverRules::kerahatCountdown(istiva, at(2026, 3, 10, 12, 9)), QStringLiteral("1 sa 0 dk"));
    EXPECT_EQ(PopoverRules::kerahatCountdown(istiva, at(2026, 3, 10, 12, 8, 30)), QStringLiteral("1 sa 1 dk"));
    EXPECT_EQ(PopoverRules::kerahatCountdown(istiva, istiva.start - 20), QStringLiteral("1 dk"));
    EXPECT_EQ(PopoverRules::minutesUntilStart(istiva, istiva.start), 1);

    EXPECT_EQ(PopoverRules::bannerMinutesLeft(istiva, at(2026, 3, 10, 13, 12)), 7);
    EXPECT_EQ(PopoverRules::bannerMinutesLeft(istiva, at(2026, 3, 10, 13, 11, 59)), 8);
    EXPECT_EQ(PopoverRules::bannerMinutesLeft(istiva, istiva.end - 10), 1);
    EXPECT_EQ(PopoverRules::bannerMinutesLeft(istiva, istiva.end), 1);
}

TEST(PopoverRules, KerahatTexts)
{
    const TimeZone zone = TimeZone::named(istanbulZone);
    const std::vector<KerahatInterval> intervals = kerahatOf(march10());
    EXPECT_EQ(PopoverRules::kerahatRange(intervals[1], zone), QStringLiteral("13:09 – 13:19"));
    EXPECT_EQ(PopoverRules::kerahatAccessibleName(intervals[1], zone),
              QStringLiteral("Kerahat (istiva), 13:09 ile 13:19 arası"));
    EXPECT_EQ(PopoverRules::kerahatAccessibleName(intervals[0], zone),
              QStringLiteral("Kerahat, 07:17 ile 08:02 arası"));
    EXPECT_EQ(PopoverRules::bannerDetail(intervals[1], zone), QStringLiteral("Güneş tepedeyken · 13:19'a kadar"));
    EXPECT_EQ(PopoverRules::bannerDetail(intervals[2], zone), QStringLiteral("Güneş batmadan önce · 19:12'ye kadar"));
    // The clock follows the place's zone, not the machine's.
    EXPECT_EQ(PopoverRules::kerahatRange(intervals[1], TimeZone::named("Europe/London")),
              QStringLiteral("10:09 – 10:19"));
}

TEST(PopoverRules, RamadanLine)
{
    const DayTimes plain = march10(); // no Hijri date of its own: 21 Ramazan by approximation
    EXPECT_EQ(PopoverRules::ramadanLine(21, plain), QStringLiteral("Ramazan'ın 21. günü"));
    EXPECT_EQ(PopoverRules::ramadanLine(std::nullopt, plain), std::nullopt);
    EXPECT_EQ(PopoverRules::ramadanLine(21, std::nullopt), std::nullopt);

    DayTimes stored = plain;
    stored.hijri = HijriDate{5, 9, 1447};
    EXPECT_EQ(PopoverRules::ramadanLine(5, stored), QStringLiteral("Ramazan'ın 5. günü"));
    stored.hijri = HijriDate{26, 9, 1447};
    EXPECT_EQ(PopoverRules::ramadanLine(26, stored), QStringLiteral("Bu gece Kadir Gecesi"));
    stored.hijri = HijriDate{26, 8, 1447};
    EXPECT_NE(PopoverRules::ramadanLine(26, stored), QStringLiteral("Bu gece Kadir Gecesi")) << "only in Ramadan";

    // 15 March 2026 is 26 Ramazan 1447 by the Umm al-Qura calendar.
    const DayTimes kadir = day({2026, 3, 15}, {{{5, 44}, {7, 9}, {13, 18}, {16, 38}, {19, 17}, {20, 37}}});
    EXPECT_EQ(PopoverRules::ramadanLine(26, kadir), QStringLiteral("Bu gece Kadir Gecesi"));
}

TEST(PopoverRules, Subtitle)
{
    const TimeZone zone = TimeZone::named(istanbulZone);
    const DayTimes today = march10();
    const DayTimes tomorrow = march11();
    const auto subtitleAt = [&](int hour, int minute, bool ramadan) {
        return PopoverRules::subtitle(PrayerSchedule::status(at(2026, 3, 10, hour, minute), today, tomorrow), ramadan,
                                      zone);
    };
    EXPECT_EQ(subtitleAt(22, 0, true), QStringLiteral("Yarın 05:51 · İmsak"));
    EXPECT_EQ(subtitleAt(22, 0, false), QStringLiteral("Yarın 05:51"));
    EXPECT_EQ(subtitleAt(4, 0, true), QStringLiteral("05:53 · İmsak"));
    EXPECT_EQ(subtitleAt(4, 0, false), QStringLiteral("05:53"));
    EXPECT_EQ(subtitleAt(6, 0, false), QStringLiteral("07:17 · Güneş doğuşu"));
    EXPECT_EQ(subtitleAt(6, 0, true), QStringLiteral("07:17 · Güneş doğuşu"));
    EXPECT_EQ(subtitleAt(12, 30, true), QStringLiteral("13:19"));
    EXPECT_EQ(subtitleAt(17, 0, false), QStringLiteral("19:12 · Güneş batışı"));
    EXPECT_EQ(subtitleAt(17, 0, true), QStringLiteral("19:12 · Akşam ezanı"));
    EXPECT_EQ(subtitleAt(20, 0, true), QStringLiteral("20:31"));
}

TEST(PopoverRules, CountdownTitleAndBigTime)
{
    using Title = PopoverRules::CountdownTitle;
    EXPECT_EQ(PopoverRules::countdownTitle(Prayer::ogle, false), (Title{"Öğle", " ezanına kalan"}));
    EXPECT_EQ(PopoverRules::countdownTitle(Prayer::aksam, true), (Title{"İftar", "a kalan"}));
    EXPECT_EQ(PopoverRules::countdownTitle(Prayer::imsak, true), (Title{"Sahur", "un bitmesine kalan"}));
    EXPECT_EQ(PopoverRules::countdownTitle(Prayer::imsak, false), (Title{"İmsak", " vaktine kalan"}));
    EXPECT_EQ(PopoverRules::countdownTitle(QStringLiteral("Güneş doğuşuna"), QStringLiteral("Sabah")),
              (Title{"", "Güneş doğuşuna kalan"}));

    using Big = PopoverRules::BigTime;
    EXPECT_EQ(PopoverRules::bigTime(49), (Big{std::nullopt, 49}));
    EXPECT_EQ(PopoverRules::bigTime(59), (Big{std::nullopt, 59}));
    EXPECT_EQ(PopoverRules::bigTime(60), (Big{1, 0}));
    EXPECT_EQ(PopoverRules::bigTime(120), (Big{2, 0}));
    EXPECT_EQ(PopoverRules::bigTime(135), (Big{2, 15}));
    EXPECT_EQ(PopoverRules::bigTime(0), (Big{std::nullopt, 0}));
}

TEST(PopoverRules, FractionOfTheDay)
{
    const DayTimes today = march10();
    const Instant imsak = today[Prayer::imsak];
    const Instant yatsi = today[Prayer::yatsi];
    EXPECT_DOUBLE_EQ(PopoverRules::fraction(imsak, today), 0);
    EXPECT_DOUBLE_EQ(PopoverRules::fraction(yatsi, today), 1);
    EXPECT_DOUBLE_EQ(PopoverRules::fraction(imsak + (yatsi - imsak) / 4, today), 0.25);
    EXPECT_DOUBLE_EQ(PopoverRules::fraction(imsak - 3600, today), 0);
    EXPECT_DOUBLE_EQ(PopoverRules::fraction(yatsi + 3600, today), 1);

    DayTimes flat = today;
    flat.times[Prayer::yatsi] = imsak;
    EXPECT_DOUBLE_EQ(PopoverRules::fraction(today[Prayer::ogle], flat), 0);
    flat.times[Prayer::yatsi] = imsak - 60;
    EXPECT_DOUBLE_EQ(PopoverRules::fraction(today[Prayer::ogle], flat), 0);
}

TEST(PopoverRules, RowAndFooterTexts)
{
    using Source = PopoverRules::SourceItem;
    EXPECT_EQ(PopoverRules::sourceItem(TimesSource::offline, CalculationMethod::mwl),
              (Source{"Çevrimdışı · cihazda hesaplandı", "wifi.slash"}));
    EXPECT_EQ(PopoverRules::sourceItem(TimesSource::online, CalculationMethod::diyanet), (Source{"Diyanet takvimi", ""}));
    EXPECT_EQ(PopoverRules::sourceItem(TimesSource::online, CalculationMethod::ummAlQura), (Source{"Ümmü'l-Kura", ""}));
    EXPECT_EQ(PopoverRules::sourceItem(TimesSource::online, CalculationMethod::egypt), (Source{"Mısır", ""}));

    EXPECT_EQ(PopoverRules::prayerTag(Prayer::imsak, true), QStringLiteral("sahur sonu"));
    EXPECT_EQ(PopoverRules::prayerTag(Prayer::aksam, true), QStringLiteral("iftar"));
    EXPECT_EQ(PopoverRules::prayerTag(Prayer::ogle, true), std::nullopt);
    EXPECT_EQ(PopoverRules::prayerTag(Prayer::imsak, false), std::nullopt);

    EXPECT_EQ(PopoverRules::bellToolTip(Prayer::ikindi, true), QStringLiteral("İkindi bildirimini kapat"));
    EXPECT_EQ(PopoverRules::bellToolTip(Prayer::ikindi, false), QStringLiteral("İkindi bildirimini aç"));
    EXPECT_EQ(PopoverRules::rowAccessibleName(Prayer::ogle, QStringLiteral("13:19"), State::current),
              QStringLiteral("Öğle 13:19, şu anki orvel"));
    EXPECT_EQ(PopoverRules::rowAccessibleName(Prayer::ogle, QStringLiteral("13:19"), State::next),
              QStringLiteral("Öğle 13:19"));
}
