#include "Settings.h"

namespace orvel::Settings {

bool isUsablePlace(const Location &location)
{
    // A hand-edited or damaged place must not reach the calculator.
    return std::isfinite(location.latitude) && std::isfinite(location.longitude) && location.latitude >= -90
        && location.latitude <= 90 && location.longitude >= -180 && location.longitude <= 180;
}

bool isUsableHours(const QuietHours &hours)
{
    constexpr int64_t minutesPerDay = 24 * 60;
    return hours.start >= 0 && hours.start < minutesPerDay && hours.end >= 0 && hours.end < minutesPerDay;
}

bool isSunMinutesOption(const int64_t &minutes)
{
    return std::ranges::find(Kerahat::sunMinuteOptions, minutes) != Kerahat::sunMinuteOptions.end();
}

bool isFridayOption(const int64_t &minutes)
{
    return std::ranges::find(fridayReminderOptions, minutes) != fridayReminderOptions.end();
}

bool isVolume(const double &volume)
{
    return volume >= 0 && volume <= 1;
}

bool isUsableTimes(const TimesOptions &options)
{
    return options.isValid();
}

bool isNotNegative(const int64_t &minutes)
{
    return minutes >= 0;
}

std::optional<QString> problem()
{
    if (std::optional<QString> unreadable = SettingsStore::problem())
        return unreadable;
    if (SettingsStore::store().contains(QLatin1String(location.name())) && !location.read())
        return QStringLiteral("kayıtlı yer okunamadı, İstanbul gösteriliyor (%1)").arg(SettingsStore::store().fileName());
    return std::nullopt;
}

} // namespace orvel::Settings
