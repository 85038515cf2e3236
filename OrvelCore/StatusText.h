#pragma once

#include "DayTimes.h"
#include "Instant.h"
#include "Kerahat.h"
#include "TrayStyle.h"
#include "PrayerSchedule.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvel {

class TimeZone;

// The words that describe the current moment: the status item's title, the entry announcement
// and the spoken label, with Ramadan names where they apply. Shared by the application and the
// command line so that both always say the same thing.
// What every status item shows at one moment, worked out once.
struct StatusLine {
    enum class State { normal, kerahat, entry };

    std::string text;  // beside the crescent: the title, or "Öğle vakti" in the entry minute; may be empty
    std::string label; // spoken: "Akşam ezanına 1 saat 15 dakika kaldı"
    State state = State::normal; // entry: the green pill; kerahat: the orange dot

    bool operator==(const StatusLine &) const = default;
};

// All that a status item in the desktop's panel shows: the line in the chosen style, and what the
// icon needs to carry the time left.
struct StatusItemContent {
    StatusLine line;
    TrayStyle style = TrayStyle::nameAndRemaining;
    std::optional<bool> iconRemaining;       // the user's choice; none leaves it to the panel
    std::optional<int64_t> minutesRemaining; // to the next time; none while nothing is loaded

    // Whether the icon carries the time left: never in the icon-only style, else the user's
    // choice when made, else only where the panel shows no title beside the icon.
    bool showsIconRemaining(bool panelShowsLabel) const
    {
        return style != TrayStyle::iconOnly && iconRemaining.value_or(!panelShowsLabel);
    }
    bool operator==(const StatusItemContent &) const = default;
};

// The moment's facts that StatusLine is made from.
struct StatusFacts {
    std::optional<PrayerStatus> status; // none while nothing is loaded
    Instant now;
    bool ramadanToday = false;
    bool nextIsRamadan = false;
    bool inKerahat = false;   // an interval runs now
    bool kerahatDot = true;   // the dot is wanted while one runs
};

// The user's settings that shape what the status says: the style, the Ramadan names and the
// kerahat intervals with their dot. The application and the command line read the same ones, so
// every face of Orvel says the same thing.
struct StatusSettings {
    TrayStyle style = TrayStyle::nameAndRemaining;
    bool ramadanMode = true;
    bool showKerahat = true;
    int64_t kerahatMinutes = Kerahat::defaultSunMinutes;
    bool kerahatDot = true;

    bool operator==(const StatusSettings &) const = default;
};

namespace StatusText {

// The day's kerahat intervals as the settings want them; none when they are not shown.
std::vector<KerahatInterval> kerahatIntervals(const StatusSettings &settings, const std::optional<DayTimes> &today);
// The facts of the moment under the settings.
StatusFacts facts(const StatusSettings &settings, Instant now, const std::optional<DayTimes> &today,
                  const std::optional<DayTimes> &tomorrow, const TimeZone &zone);
// What the status item shows at the moment under the settings.
StatusLine line(const StatusSettings &settings, Instant now, const std::optional<DayTimes> &today,
                const std::optional<DayTimes> &tomorrow, const TimeZone &zone);

StatusLine line(TrayStyle style, const StatusFacts &facts, const TimeZone &zone);

// The state as programs outside Orvel read it: "normal", "kerahat", "entry"; and back.
std::string_view stateName(StatusLine::State state);
std::optional<StatusLine::State> stateFromName(std::string_view name);

// Ramadan mode is on and today's Hijri month (stored, else approximated) is Ramadan.
bool isRamadanToday(bool ramadanMode, const std::optional<DayTimes> &today);
// Ramadan mode is on and the day of the next time (tomorrow when the next time is tomorrow's
// İmsak, else today) is in Ramadan; false when that day is not loaded.
bool nextIsRamadan(bool ramadanMode, const std::optional<PrayerStatus> &status, const std::optional<DayTimes> &today,
                   const std::optional<DayTimes> &tomorrow);

// "Öğle vakti" during the first minute after a time with a call to prayer entered; none otherwise.
std::optional<std::string> entryAnnouncement(const PrayerStatus &status, Instant now, bool ramadanToday);

// The text beside the crescent: "Akşam 1:15", "1:15", "Akşam 20:47", or none for iconOnly.
std::optional<std::string> title(TrayStyle style, const PrayerStatus &status, bool nextIsRamadan,
                                 const TimeZone &zone);

// "Akşam ezanına 1 saat 15 dakika kaldı", followed by ", kerahat vakti" while an interval runs;
// "Orvel" when nothing is loaded.
std::string accessibilityLabel(const std::optional<PrayerStatus> &status, bool nextIsRamadan, bool inKerahat);

} // namespace StatusText

} // namespace orvel
