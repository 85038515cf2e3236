#pragma once

#include "CalculationMethod.h"
#include "DayTimes.h"
#include "Instant.h"
#include "Kerahat.h"
#include "Location.h"
#include "Prayer.h"
#include "PrayerSchedule.h"
#include "ReligiousDays.h"
#include "TimesSource.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace orvel {

class TimeZone;

enum class PrayerRowState { past, current, next, upcoming };
enum class KerahatRowState { past, active, upcoming };

// What the panel shows at a moment, decided from the day, the status and the clock alone.
namespace PanelRules {

// Only today's own time is current: after midnight yesterday's Yatsı leaves today's row alone,
// and tomorrow's İmsak as the next time leaves today's İmsak row alone.
PrayerRowState rowState(Prayer prayer, const PrayerStatus &status, const DayTimes &today, Instant now);

// The intervals shown as rows of their own just before / just after the prayer's row.
std::vector<KerahatInterval> kerahatBefore(Prayer prayer, const std::vector<KerahatInterval> &intervals);
std::vector<KerahatInterval> kerahatAfter(Prayer prayer, const std::vector<KerahatInterval> &intervals);

KerahatRowState kerahatRowState(const KerahatInterval &interval, Instant now);
// Only the next interval counts down, and none while one is in force.
bool showsCountdown(const KerahatInterval &interval, const std::vector<KerahatInterval> &intervals, Instant now);
// Whole minutes until the interval starts, rounded up, at least 1.
int64_t minutesUntilStart(const KerahatInterval &interval, Instant now);
QString kerahatCountdown(const KerahatInterval &interval, Instant now); // "12 dk", "1 sa 5 dk"
// Whole minutes until the interval ends, rounded up, at least 1.
int64_t bannerMinutesLeft(const KerahatInterval &interval, Instant now);
QString bannerDetail(const KerahatInterval &interval, const TimeZone &zone); // "… · 06:10'a kadar"
QString kerahatRange(const KerahatInterval &interval, const TimeZone &zone); // "13:01 – 13:11"
QString kerahatAccessibleName(const KerahatInterval &interval, const TimeZone &zone);

// The line under the date: the day's religious days ("Bu gece Berat Kandili", "Kurban Bayramı 2.
// günü"), else in Ramadan "Ramazan'ın 5. günü"; none on other days.
std::optional<QString> ramadanLine(std::optional<int64_t> ramadanDay, const std::optional<DayTimes> &today,
                                   const std::vector<ReligiousDay> &religiousDays = {});

// The place's tooltip: "Kıble 152° (güneydoğu) · Kâbe'ye 2.405 km · kıble saati 10:59", without
// the hour on a day the sun never stands in the qibla's direction.
QString qiblaLine(const Location &place, const DayKey &day);

// The countdown title: the name emphasised when the phrase starts with it, then the rest.
struct CountdownTitle {
    QString emphasis; // empty: the title is one plain run
    QString rest;

    bool operator==(const CountdownTitle &) const = default;
};
CountdownTitle countdownTitle(const QString &phrase, const QString &name);
CountdownTitle countdownTitle(Prayer next, bool ramadan);

// "Yarın 05:12 · İmsak", "12:58", "17:46 · Güneş batışı".
QString subtitle(const PrayerStatus &status, bool nextIsRamadan, const TimeZone &zone);

// The time left split for the big countdown; hours only from one hour up.
struct BigTime {
    std::optional<int64_t> hours;
    int64_t minutes = 0;

    bool operator==(const BigTime &) const = default;
};
BigTime bigTime(int64_t minutesRemaining);

// The position of an instant between today's İmsak (0) and Yatsı (1), clamped; 0 for a day
// whose Yatsı is not after its İmsak.
double fraction(Instant instant, const DayTimes &today);

// The footer's source item: the offline note with its symbol, else the method's name.
struct SourceItem {
    QString text;
    QString symbol; // empty: plain text

    bool operator==(const SourceItem &) const = default;
};
SourceItem sourceItem(TimesSource source, CalculationMethod method);

// "sahur sonu" on İmsak and "iftar" on Akşam of a Ramadan day; "tahmini" on a time the sun does
// not give that day, after the Ramadan word when there is one.
std::optional<QString> prayerTag(Prayer prayer, bool ramadanToday, bool estimated = false);
QString bellToolTip(Prayer prayer, bool notify);
QString rowAccessibleName(Prayer prayer, const QString &time, PrayerRowState state);

} // namespace PanelRules

} // namespace orvel
