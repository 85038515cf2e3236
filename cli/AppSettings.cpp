#include "AppSettings.h"

#include "Defaults.h"

namespace orvel::cli::AppSettings {

PlaceOptions placeOptions()
{
    const Defaults::Settings settings = Defaults::load();
    PlaceOptions options;
    options.stored = settings.location;
    options.method = settings.method;
    options.times = settings.times;
    return options;
}

StatusSettings statusSettings()
{
    const Defaults::Settings settings = Defaults::load();
    return {settings.menuBarStyle, settings.ramadanMode, settings.showKerahat, settings.kerahatMinutes,
            settings.kerahatMenuDot};
}

bool choosePlace(const Location &location)
{
    if (!Defaults::encode(Defaults::Key::location, location))
        return false;
    QSettings &store = Defaults::store();
    store.sync();
    return store.status() == QSettings::NoError;
}

} // namespace orvel::cli::AppSettings
