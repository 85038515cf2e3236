#pragma once

#include "AdhanSound.h"
#include "CalculationMethod.h"
#include "Kerahat.h"
#include "Location.h"
#include "MenuBarStyle.h"
#include "Prayer.h"
#include "QuietHours.h"
#include "TimesOptions.h"

#include <QByteArray>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <nlohmann/json.hpp>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>

namespace orvel {

// The persisted settings: the per-user store, its 18 keys, their stored forms, and the rules
// that turn whatever is stored into a valid setting.
//
// The store is QSettings; in its INI form (Linux) every value written by an earlier run comes
// back as a string ("true", "45", "0.8"), data as a QByteArray, a one-element list as a plain
// string and an empty list as an invalid value. The typed reads accept all of those.
namespace Defaults {

enum class Key {
    location,        // JSON of Location, as data
    method,          // raw string
    menuBarStyle,    // raw string
    notified,        // list of prayer raw strings
    reminder,        // integer, minutes
    kerahatShow,     // boolean
    kerahatDot,      // boolean
    kerahatNotify,   // boolean
    kerahatMinutes,  // integer, one of 40, 45, 50
    ramadanMode,     // boolean
    adhanSound,      // raw string
    customSoundName, // string, "" when there is none
    soundVolume,     // number, 0…1
    quietHours,      // JSON of QuietHours, as data
    iconRemaining,   // boolean, "Simgede kalan süre"; absent: as suits the panel
    times,           // JSON of TimesOptions, as data
    fridayReminder,  // integer, minutes before Öğle on Fridays: 0 (off), 15, 30, 45, 60
    pauseMedia,      // boolean, media players pause while the entry sound plays
};

constexpr std::array<int64_t, 5> fridayReminderOptions{0, 15, 30, 45, 60};

// Each key with its stored name, in one row.
struct KeyName {
    Key key;
    const char *name;
};
constexpr std::array<KeyName, 18> keyNames{{
    {Key::location, "location"},
    {Key::method, "method"},
    {Key::menuBarStyle, "menuBarStyle"},
    {Key::notified, "notified"},
    {Key::reminder, "reminder"},
    {Key::kerahatShow, "kerahatShow"},
    {Key::kerahatDot, "kerahatDot"},
    {Key::kerahatNotify, "kerahatNotify"},
    {Key::kerahatMinutes, "kerahatMinutes"},
    {Key::ramadanMode, "ramadanMode"},
    {Key::adhanSound, "adhanSound"},
    {Key::customSoundName, "customSoundName"},
    {Key::soundVolume, "soundVolume"},
    {Key::quietHours, "quietHours"},
    {Key::iconRemaining, "iconRemaining"},
    {Key::times, "times"},
    {Key::fridayReminder, "fridayReminder"},
    {Key::pauseMedia, "pauseMedia"},
}};

// The stored name of the key ("location", "kerahatShow", …).
QString name(Key key);

// The process's store: QSettings("Orvel", "Orvel") in the native format, made on first use.
QSettings &store();
// Replaces the store (snapshot runs use their own, tests a temporary file).
void setStore(std::unique_ptr<QSettings> settings);

// Typed reads: none when nothing is stored or the stored value does not convert.
std::optional<int64_t> integer(Key key);
std::optional<bool> boolean(Key key);
std::optional<double> number(Key key);
std::optional<QString> string(Key key);
std::optional<QStringList> stringList(Key key);
std::optional<QByteArray> data(Key key);

// The value JSON-decoded from the data stored under the key; none when it does not decode.
template <typename T>
std::optional<T> decode(Key key)
{
    const std::optional<QByteArray> bytes = data(key);
    if (!bytes)
        return std::nullopt;
    const nlohmann::json json = nlohmann::json::parse(bytes->begin(), bytes->end(), nullptr, false);
    if (json.is_discarded())
        return std::nullopt;
    try {
        return json.get<T>();
    } catch (const nlohmann::json::exception &) {
        return std::nullopt;
    }
}

void write(Key key, const QVariant &value);
// Stores the value's JSON as data; false (and nothing stored) when it cannot be encoded.
template <typename T>
bool encode(Key key, const T &value)
{
    try {
        const std::string text = nlohmann::json(value).dump();
        write(key, QByteArray(text.data(), static_cast<qsizetype>(text.size())));
        return true;
    } catch (const nlohmann::json::exception &) {
        return false;
    }
}

// Every setting with its default, as a first start sees it.
struct Settings {
    Location location = Location::istanbul();
    CalculationMethod method = CalculationMethod::diyanet;
    MenuBarStyle menuBarStyle = MenuBarStyle::nameAndRemaining;
    std::set<Prayer::Value> notifiedPrayers{Prayer::imsak, Prayer::ogle, Prayer::ikindi, Prayer::aksam,
                                            Prayer::yatsi};
    int64_t reminderMinutes = 0;
    bool showKerahat = true;
    bool kerahatMenuDot = true;
    bool kerahatNotify = false;
    int64_t kerahatMinutes = Kerahat::defaultSunMinutes;
    bool ramadanMode = true;
    AdhanSound adhanSound = AdhanSound::system;
    std::optional<QString> customSoundName;
    double soundVolume = 0.8;
    QuietHours quietHours;
    // The time left drawn into the square tray icon; none leaves it to the panel: on where the
    // panel shows no text beside the icon, off where it does.
    std::optional<bool> iconRemaining;
    TimesOptions times;
    int64_t fridayMinutes = 0;
    bool pauseMedia = true;
};

// The stored settings, each one that is missing or unusable replaced by its default.
Settings load();
// Why the stored settings were not all read, in Turkish (one line, no program name): a file that
// is not a settings file at all, or a stored place that does not read. The file is kept as it is.
std::optional<QString> problem();

// The stored forms of the settings that are not plain values.
void writeNotified(const std::set<Prayer::Value> &prayers);
void writeCustomSoundName(const std::optional<QString> &name);
// None removes the key, so that the panel decides again.
void writeIconRemaining(std::optional<bool> shown);

} // namespace Defaults

} // namespace orvel
