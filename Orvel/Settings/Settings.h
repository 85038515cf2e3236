#pragma once

#include "Kerahat.h"
#include "Setting.h"
#include "SettingsStore.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orvel {

// Every persisted setting, one row each: its stored name, its default, the check a value must
// pass (on every set and every read), what a change sets off, and the names earlier versions
// stored it under. The application holds their values in this order; orvel-cli reads the place
// and the method from here too.
namespace Settings {

constexpr std::array<int64_t, 5> fridayReminderOptions{0, 15, 30, 45, 60};

// The checks.
bool isUsablePlace(const Location &location);
bool isUsableHours(const QuietHours &hours);
bool isSunMinutesOption(const int64_t &minutes);
bool isFridayOption(const int64_t &minutes);
bool isVolume(const double &volume);
bool isUsableTimes(const TimesOptions &options);
bool isNotNegative(const int64_t &minutes);

inline const Setting<Location> location{"location", Location::istanbul(), Effect::reload, isUsablePlace};
inline const Setting<CalculationMethod> method{"method", CalculationMethod::diyanet, Effect::reload};
// What the tray item shows; earlier versions stored it as "menuBarStyle".
inline const Setting<TrayStyle> trayStyle{"trayStyle", TrayStyle::nameAndRemaining, Effect::none, nullptr,
                                          {"menuBarStyle"}};
inline const Setting<std::set<Prayer::Value>> notifiedPrayers{
    "notified", {Prayer::imsak, Prayer::ogle, Prayer::ikindi, Prayer::aksam, Prayer::yatsi},
    Effect::reschedule | Effect::recheck};
inline const Setting<int64_t> reminderMinutes{"reminder", 0, Effect::reschedule, isNotNegative};
inline const Setting<bool> showKerahat{"kerahatShow", true, Effect::reschedule};
inline const Setting<bool> kerahatMenuDot{"kerahatDot", true, Effect::none};
inline const Setting<bool> kerahatNotify{"kerahatNotify", false, Effect::reschedule};
inline const Setting<int64_t> kerahatMinutes{"kerahatMinutes", Kerahat::defaultSunMinutes, Effect::reschedule,
                                             isSunMinutesOption};
inline const Setting<bool> ramadanMode{"ramadanMode", true, Effect::reschedule};
inline const Setting<AdhanSound> adhanSound{"adhanSound", AdhanSound::system, Effect::reschedule | Effect::recheck};
inline const Setting<std::optional<QString>> customSoundName{"customSoundName", std::nullopt, Effect::none};
inline const Setting<double> soundVolume{"soundVolume", 0.8, Effect::volume, isVolume};
inline const Setting<QuietHours> quietHours{"quietHours", QuietHours(), Effect::reschedule | Effect::recheck,
                                            isUsableHours};
// "Simgede kalan süre": the time left drawn into the square tray icon; none leaves it to the
// panel: on where the panel shows no text beside the icon, off where it does.
inline const Setting<std::optional<bool>> iconRemaining{"iconRemaining", std::nullopt, Effect::none};
// The high-latitude rule, the minutes added to each prayer, the Hijri correction and the source
// of Diyanet's times.
inline const Setting<TimesOptions> timesOptions{"times", TimesOptions(), Effect::reload, isUsableTimes};
// "Cuma hatırlatması": minutes before Öğle on Fridays, 0 for none.
inline const Setting<int64_t> fridayMinutes{"fridayReminder", 0, Effect::reschedule, isFridayOption};
// Media players pause while the entry sound plays, and go on after it.
inline const Setting<bool> pauseMedia{"pauseMedia", true, Effect::none};
// "Kandil ve bayram bildirimleri": a notice at Akşam on a kandil's evening and a Bayram's eve.
inline const Setting<bool> religiousDayNotify{"religiousDayNotify", true, Effect::reschedule};

// Why the stored settings were not all read, in Turkish (one line, no program name): a file that
// is not a settings file at all, or a stored place that does not read. The file is kept as it is.
std::optional<QString> problem();

} // namespace Settings

} // namespace orvel
