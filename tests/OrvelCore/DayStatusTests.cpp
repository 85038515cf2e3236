#include "Kerahat.h"
#include "PrayerSchedule.h"
#include "StatusText.h"
#include "TimeZone.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace orvel;

namespace {

const TimeZone istanbul = TimeZone::named("Europe/Istanbul");

// A day in İstanbul with the times of 21 June 2025: 03:21 05:25 13:11 17:12 20:47 22:33.
DayTimes dayAt(const DayKey &day, std::optional<HijriDate> hijri = std::nullopt)
{
    const Instant start = day.start(istanbul);
    const auto at = [&](int hour, int minute) { return start + hour * 3600 + minute * 60; };
    return {day, {at(3, 21), at(5, 25), at(13, 11), at(17, 12), at(20, 47), at(22, 33)}, hijri};
}

const DayTimes today = dayAt({2025, 6, 21});

Instant at(int hour, int minute) { return today.day.start(istanbul) + hour * 3600 + minute * 60; }

PrayerStatus status(Instant now, const std::optional<DayTimes> &tomorrow = std::nullopt) { return PrayerSchedule::status(now, today, tomorrow, istanbul); }

// 29 Şaban and 1 Ramazan 1446 as the service would date them.
const DayTimes lastOfSaban = dayAt({2025, 2, 28}, HijriDate{29, 8, 1446});
const DayTimes firstOfRamadan = dayAt({2025, 3, 1}, HijriDate{1, 9, 1446});

} // namespace

TEST(PrayerSchedule, statusThroughTheDay)
{
    EXPECT_EQ(status(today[Prayer::imsak] - 1), (PrayerStatus{std::nullopt, std::nullopt, Prayer::imsak, today[Prayer::imsak], false, 0, 1}));

    // A time that is due now has already entered; the count refers to the one after it.
    const PrayerStatus atOgle = status(today[Prayer::ogle]);
    EXPECT_EQ(atOgle, (PrayerStatus{Prayer::ogle, today[Prayer::ogle], Prayer::ikindi, today[Prayer::ikindi], false,
                                    (13 * 60 + 11 - (3 * 60 + 21)) / (22 * 60 + 33.0 - (3 * 60 + 21)), 241}));
    EXPECT_EQ(status(at(9, 0)).current, Prayer::gunes);
    EXPECT_EQ(status(today[Prayer::ikindi] - 90.5).minutesRemaining, 2);
    EXPECT_EQ(status(today[Prayer::ikindi] - 60).minutesRemaining, 1);

    // After Yatsı: tomorrow's own İmsak when it is loaded, else today's a day later.
    const Instant night = today[Prayer::yatsi] + 3600;
    EXPECT_EQ(status(night), (PrayerStatus{Prayer::yatsi, today[Prayer::yatsi], Prayer::imsak, today[Prayer::imsak] + 86400, true, 1, 228}));
    DayTimes tomorrow = today;
    tomorrow.times[Prayer::imsak] = today[Prayer::imsak] + 86400 + 60;
    EXPECT_EQ(status(night, tomorrow).minutesRemaining, 229);

    // Equal times must not divide by a zero-length day.
    DayTimes flat = today;
    flat.times.fill(today[Prayer::ogle]);
    EXPECT_EQ(PrayerSchedule::status(today[Prayer::ogle] + 10, flat, std::nullopt, istanbul).dayProgress, 0);
}

TEST(PrayerSchedule, adhanMomentAndEntryAnnouncementLastTheFirstMinute)
{
    const auto adhan = [](Instant now) { return status(now).isAdhanMoment(now); };
    EXPECT_TRUE(adhan(today[Prayer::aksam] + 59.5));
    EXPECT_FALSE(adhan(today[Prayer::aksam] + 60));
    EXPECT_FALSE(adhan(today[Prayer::gunes] + 30)); // sunrise has no call to prayer
    EXPECT_FALSE(adhan(today[Prayer::imsak] - 30));

    const auto announcement = [](Instant now, bool ramadan = false) { return StatusText::entryAnnouncement(status(now), now, ramadan); };
    EXPECT_EQ(announcement(today[Prayer::ogle]), "Öğle vakti");
    EXPECT_EQ(announcement(today[Prayer::ogle] + 60), std::nullopt);
    EXPECT_EQ(announcement(today[Prayer::gunes] + 10), std::nullopt);
    EXPECT_EQ(announcement(today[Prayer::aksam] + 5, true), "İftar vakti");
}

TEST(Kerahat, intervalsAndTheirEdges)
{
    const auto list = Kerahat::intervals(today, 45, 10);
    EXPECT_EQ(list, (std::vector<KerahatInterval>{{KerahatKind::sunrise, at(5, 25), at(6, 10)},
                                                  {KerahatKind::istiva, at(13, 1), at(13, 11)},
                                                  {KerahatKind::sunset, at(20, 2), at(20, 47)}}));
    EXPECT_EQ(Kerahat::active(at(13, 1), list), list[1]);
    EXPECT_EQ(Kerahat::active(at(13, 11), list), std::nullopt);
    EXPECT_EQ(Kerahat::next(at(13, 1), list), list[2]);
    EXPECT_EQ(Kerahat::next(at(20, 2), list), std::nullopt);
    // Zero minutes: empty intervals that contain nothing, not even their own start.
    EXPECT_EQ(Kerahat::active(at(5, 25), Kerahat::intervals(today, 0, 10)), std::nullopt);

    // One interval ending where the next begins, and two starting together: list order decides.
    const std::vector<KerahatInterval> touching{
        {KerahatKind::sunset, at(14, 0), at(15, 0)}, {KerahatKind::istiva, at(13, 0), at(14, 0)}, {KerahatKind::sunrise, at(14, 0), at(16, 0)}};
    EXPECT_EQ(Kerahat::active(at(14, 0), touching), touching[0]);
    EXPECT_EQ(Kerahat::next(at(13, 0), touching), touching[0]);

    EXPECT_EQ(KerahatKind(KerahatKind::istiva).title(), "Kerahat (istiva)");
    KerahatKind decoded = KerahatKind::sunrise;
    EXPECT_EQ(nlohmann::json(KerahatKind(KerahatKind::sunset)).get_to(decoded), KerahatKind::sunset);
    EXPECT_THROW(nlohmann::json("noon").get_to(decoded), nlohmann::json::exception);
}

TEST(StatusText, titleLabelAndRamadanFlags)
{
    const PrayerStatus beforeAksam = PrayerSchedule::status(lastOfSaban[Prayer::aksam] - 75 * 60, lastOfSaban, firstOfRamadan, istanbul);
    EXPECT_EQ(StatusText::title(TrayStyle::nameAndRemaining, beforeAksam, false, istanbul), "Akşam 1:15");
    EXPECT_EQ(StatusText::title(TrayStyle::nameAndRemaining, beforeAksam, true, istanbul), "İftar 1:15");
    EXPECT_EQ(StatusText::title(TrayStyle::remaining, beforeAksam, true, istanbul), "1:15");
    // The clock time is the place's, not the machine's.
    EXPECT_EQ(StatusText::title(TrayStyle::nameAndTime, beforeAksam, false, TimeZone::named("Europe/Berlin")), "Akşam 18:47");
    EXPECT_EQ(StatusText::title(TrayStyle::iconOnly, beforeAksam, false, istanbul), std::nullopt);

    EXPECT_EQ(StatusText::accessibilityLabel(std::nullopt, false, true), "Orvel");
    EXPECT_EQ(StatusText::accessibilityLabel(beforeAksam, false, false), "Akşam ezanına 1 saat 15 dakika kaldı");
    EXPECT_EQ(StatusText::accessibilityLabel(beforeAksam, true, true), "İftara 1 saat 15 dakika kaldı, kerahat vakti");
    const PrayerStatus beforeImsak = PrayerSchedule::status(lastOfSaban[Prayer::imsak] - 45 * 60, lastOfSaban, std::nullopt, istanbul);
    EXPECT_EQ(StatusText::accessibilityLabel(beforeImsak, true, false), "Sahurun bitmesine 45 dakika kaldı");

    // One line for every status item: the entry minute wins over a kerahat interval, the dot
    // shows only when wanted, and the spoken label keeps the kerahat either way.
    using State = StatusLine::State;
    const Instant aksamEntered = lastOfSaban[Prayer::aksam] + 30;
    const PrayerStatus entered = PrayerSchedule::status(aksamEntered, lastOfSaban, firstOfRamadan, istanbul);
    const auto line = [&](const PrayerStatus &s, Instant now, bool kerahat, bool dot, TrayStyle style = TrayStyle::nameAndRemaining) {
        return StatusText::line(style, {s, now, false, false, kerahat, dot}, istanbul);
    };
    EXPECT_EQ(line(entered, aksamEntered, true, true), (StatusLine{"Akşam vakti", "Yatsı ezanına 1 saat 46 dakika kaldı, kerahat vakti", State::entry}));
    const Instant before = lastOfSaban[Prayer::aksam] - 75 * 60;
    EXPECT_EQ(line(beforeAksam, before, true, true).state, State::kerahat);
    EXPECT_EQ(line(beforeAksam, before, true, false), (StatusLine{"Akşam 1:15", "Akşam ezanına 1 saat 15 dakika kaldı, kerahat vakti", State::normal}));
    EXPECT_EQ(line(beforeAksam, before, false, true, TrayStyle::iconOnly), (StatusLine{"", "Akşam ezanına 1 saat 15 dakika kaldı", State::normal}));
    EXPECT_EQ(StatusText::line(TrayStyle::nameAndRemaining, {}, istanbul), (StatusLine{"", "Orvel", State::normal}));
    // The states by the names other programs read them by.
    for (const State state : {State::normal, State::kerahat, State::entry})
        EXPECT_EQ(StatusText::stateFromName(StatusText::stateName(state)), state);
    EXPECT_EQ(StatusText::stateName(State::entry), "entry");
    EXPECT_EQ(StatusText::stateFromName("adhan"), std::nullopt);

    // Ramadan wording follows the day of the next time.
    EXPECT_FALSE(StatusText::isRamadanToday(true, lastOfSaban));
    EXPECT_TRUE(StatusText::isRamadanToday(true, firstOfRamadan));
    EXPECT_FALSE(StatusText::isRamadanToday(false, firstOfRamadan));
    EXPECT_FALSE(StatusText::isRamadanToday(true, std::nullopt));
    // The stored Hijri date wins: Umm al-Qura makes 1 March 2025 the first of Ramadan, the service may not.
    EXPECT_FALSE(StatusText::isRamadanToday(true, dayAt({2025, 3, 1}, HijriDate{30, 8, 1446})));

    // After Yatsı on the eve of Ramadan the next time is the first Sahur.
    const PrayerStatus night = PrayerSchedule::status(lastOfSaban[Prayer::yatsi] + 60, lastOfSaban, firstOfRamadan, istanbul);
    EXPECT_TRUE(StatusText::nextIsRamadan(true, night, lastOfSaban, firstOfRamadan));
    EXPECT_FALSE(StatusText::nextIsRamadan(true, night, lastOfSaban, std::nullopt));
    const PrayerStatus evening = PrayerSchedule::status(lastOfSaban[Prayer::aksam] - 60, lastOfSaban, firstOfRamadan, istanbul);
    EXPECT_FALSE(StatusText::nextIsRamadan(true, evening, lastOfSaban, firstOfRamadan));

    // On the last evening of Ramadan İftar is still İftar, and the following İmsak is no longer Sahur.
    const DayTimes lastOfRamadan = dayAt({2025, 3, 29}, HijriDate{29, 9, 1446});
    const DayTimes bayram = dayAt({2025, 3, 30}, HijriDate{1, 10, 1446});
    const PrayerStatus iftar = PrayerSchedule::status(lastOfRamadan[Prayer::aksam] - 60, lastOfRamadan, bayram, istanbul);
    EXPECT_TRUE(StatusText::nextIsRamadan(true, iftar, lastOfRamadan, bayram));
    const PrayerStatus lastNight = PrayerSchedule::status(lastOfRamadan[Prayer::yatsi] + 60, lastOfRamadan, bayram, istanbul);
    EXPECT_FALSE(StatusText::nextIsRamadan(true, lastNight, lastOfRamadan, bayram));
}
