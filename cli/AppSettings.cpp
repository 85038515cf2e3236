#include "AppSettings.h"

#include "Settings.h"

namespace orvel::cli::AppSettings {

PlaceOptions placeOptions()
{
    PlaceOptions options;
    options.stored = Settings::location.read().value_or(Settings::location.fallback());
    options.method = Settings::method.read().value_or(Settings::method.fallback());
    options.times = Settings::timesOptions.read().value_or(Settings::timesOptions.fallback());
    return options;
}

StatusSettings statusSettings()
{
    const auto value = [](const auto &setting) { return setting.read().value_or(setting.fallback()); };
    return {value(Settings::trayStyle), value(Settings::ramadanMode), value(Settings::showKerahat),
            value(Settings::kerahatMinutes), value(Settings::kerahatMenuDot)};
}

bool choosePlace(const Location &location)
{
    if (!Settings::isUsablePlace(location))
        return false;
    Settings::location.write(location);
    QSettings &store = SettingsStore::store();
    store.sync();
    return store.status() == QSettings::NoError;
}

} // namespace orvel::cli::AppSettings
