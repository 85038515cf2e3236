#include "Defaults.h"

#include <QFileInfo>
#include <QMetaType>

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvel::Defaults {

namespace {

std::unique_ptr<QSettings> &holder()
{
    static std::unique_ptr<QSettings> settings;
    return settings;
}

// The stored value; an invalid QVariant means "stored, but as an empty list" in the INI form.
std::optional<QVariant> stored(Key key)
{
    QSettings &settings = store();
    const QString keyName = name(key);
    if (!settings.contains(keyName))
        return std::nullopt;
    return settings.value(keyName);
}

bool isIntegerType(int typeId)
{
    switch (typeId) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

bool isFloatingType(int typeId)
{
    return typeId == QMetaType::Double || typeId == QMetaType::Float;
}

std::optional<int64_t> wholeNumber(double value)
{
    constexpr double limit = 9.0e18;
    if (!std::isfinite(value) || std::trunc(value) != value || std::fabs(value) > limit)
        return std::nullopt;
    return static_cast<int64_t>(value);
}

std::optional<double> finite(double value)
{
    if (!std::isfinite(value))
        return std::nullopt;
    return value;
}

template <typename Enum>
std::optional<Enum> rawEnum(Key key)
{
    const std::optional<QString> raw = string(key);
    if (!raw)
        return std::nullopt;
    return Enum::fromRawValue(raw->toStdString());
}

// A place the calculator can work with: a hand-edited or damaged value must not reach it.
bool isUsable(const Location &location)
{
    return std::isfinite(location.latitude) && std::isfinite(location.longitude) && location.latitude >= -90
        && location.latitude <= 90 && location.longitude >= -180 && location.longitude <= 180;
}

bool isUsable(const QuietHours &hours)
{
    constexpr int64_t minutesPerDay = 24 * 60;
    return hours.start >= 0 && hours.start < minutesPerDay && hours.end >= 0 && hours.end < minutesPerDay;
}

std::set<Prayer::Value> prayers(const QStringList &rawValues)
{
    std::set<Prayer::Value> result;
    for (const QString &raw : rawValues) {
        if (const std::optional<Prayer> prayer = Prayer::fromRawValue(raw.toStdString()))
            result.insert(*prayer);
    }
    return result;
}

} // namespace

QString name(Key key)
{
    for (const KeyName &row : keyNames) {
        if (row.key == key)
            return QString::fromLatin1(row.name);
    }
    return {};
}

QSettings &store()
{
    std::unique_ptr<QSettings> &settings = holder();
    if (!settings)
        settings = std::make_unique<QSettings>(QStringLiteral("Orvel"), QStringLiteral("Orvel"));
    return *settings;
}

void setStore(std::unique_ptr<QSettings> settings)
{
    holder() = std::move(settings);
}

std::optional<int64_t> integer(Key key)
{
    const std::optional<QVariant> value = stored(key);
    if (!value)
        return std::nullopt;
    const int type = value->typeId();
    if (isIntegerType(type))
        return value->toLongLong();
    if (type == QMetaType::Bool)
        return value->toBool() ? 1 : 0;
    if (isFloatingType(type))
        return wholeNumber(value->toDouble());
    if (type == QMetaType::QString) {
        const QString text = value->toString().trimmed();
        bool ok = false;
        const qlonglong number = text.toLongLong(&ok);
        if (ok)
            return number;
        const double real = text.toDouble(&ok);
        return ok ? wholeNumber(real) : std::nullopt;
    }
    return std::nullopt;
}

std::optional<bool> boolean(Key key)
{
    const std::optional<QVariant> value = stored(key);
    if (!value)
        return std::nullopt;
    const int type = value->typeId();
    if (type == QMetaType::Bool)
        return value->toBool();
    if (isIntegerType(type))
        return value->toLongLong() != 0;
    if (type == QMetaType::QString) {
        const QString text = value->toString().trimmed().toLower();
        if (text == QLatin1String("true") || text == QLatin1String("1"))
            return true;
        if (text == QLatin1String("false") || text == QLatin1String("0"))
            return false;
    }
    return std::nullopt;
}

std::optional<double> number(Key key)
{
    const std::optional<QVariant> value = stored(key);
    if (!value)
        return std::nullopt;
    const int type = value->typeId();
    if (isFloatingType(type) || isIntegerType(type))
        return finite(value->toDouble());
    if (type == QMetaType::QString) {
        bool ok = false;
        const double real = value->toString().trimmed().toDouble(&ok);
        return ok ? finite(real) : std::nullopt;
    }
    return std::nullopt;
}

std::optional<QString> string(Key key)
{
    const std::optional<QVariant> value = stored(key);
    if (!value || value->typeId() != QMetaType::QString)
        return std::nullopt;
    return value->toString();
}

std::optional<QStringList> stringList(Key key)
{
    const std::optional<QVariant> value = stored(key);
    if (!value)
        return std::nullopt;
    if (!value->isValid())
        return QStringList();
    switch (value->typeId()) {
    case QMetaType::QStringList:
        return value->toStringList();
    case QMetaType::QString:
        return QStringList{value->toString()};
    case QMetaType::QVariantList: {
        QStringList list;
        for (const QVariant &element : value->toList()) {
            if (element.typeId() != QMetaType::QString)
                return std::nullopt;
            list.append(element.toString());
        }
        return list;
    }
    default:
        return std::nullopt;
    }
}

std::optional<QByteArray> data(Key key)
{
    const std::optional<QVariant> value = stored(key);
    if (!value)
        return std::nullopt;
    if (value->typeId() == QMetaType::QByteArray)
        return value->toByteArray();
    if (value->typeId() == QMetaType::QString)
        return value->toString().toUtf8();
    return std::nullopt;
}

void write(Key key, const QVariant &value)
{
    store().setValue(name(key), value);
}

Settings load()
{
    Settings settings;
    if (const auto location = decode<Location>(Key::location); location && isUsable(*location))
        settings.location = *location;
    if (const auto method = rawEnum<CalculationMethod>(Key::method))
        settings.method = *method;
    if (const auto style = rawEnum<MenuBarStyle>(Key::menuBarStyle))
        settings.menuBarStyle = *style;
    if (const auto notified = stringList(Key::notified))
        settings.notifiedPrayers = prayers(*notified);
    settings.reminderMinutes = integer(Key::reminder).value_or(settings.reminderMinutes);
    settings.showKerahat = boolean(Key::kerahatShow).value_or(settings.showKerahat);
    settings.kerahatMenuDot = boolean(Key::kerahatDot).value_or(settings.kerahatMenuDot);
    settings.kerahatNotify = boolean(Key::kerahatNotify).value_or(settings.kerahatNotify);
    if (const auto minutes = integer(Key::kerahatMinutes);
        minutes && std::ranges::find(Kerahat::sunMinuteOptions, *minutes) != Kerahat::sunMinuteOptions.end())
        settings.kerahatMinutes = *minutes;
    settings.ramadanMode = boolean(Key::ramadanMode).value_or(settings.ramadanMode);
    if (const auto sound = rawEnum<AdhanSound>(Key::adhanSound))
        settings.adhanSound = *sound;
    if (const auto soundName = string(Key::customSoundName); soundName && !soundName->isEmpty())
        settings.customSoundName = *soundName;
    if (const auto volume = number(Key::soundVolume); volume && *volume >= 0 && *volume <= 1)
        settings.soundVolume = *volume;
    if (const auto hours = decode<QuietHours>(Key::quietHours); hours && isUsable(*hours))
        settings.quietHours = *hours;
    settings.iconRemaining = boolean(Key::iconRemaining);
    if (const auto times = decode<TimesOptions>(Key::times))
        settings.times = *times;
    if (const auto minutes = integer(Key::fridayReminder);
        minutes && std::ranges::find(fridayReminderOptions, *minutes) != fridayReminderOptions.end())
        settings.fridayMinutes = *minutes;
    settings.pauseMedia = boolean(Key::pauseMedia).value_or(settings.pauseMedia);
    return settings;
}

std::optional<QString> problem()
{
    QSettings &settings = store();
    // Qt marks a file that is no settings file at all by an error, or by reading nothing from it.
    const bool nothingRead = settings.allKeys().isEmpty() && QFileInfo(settings.fileName()).size() > 0;
    if (settings.status() == QSettings::FormatError || nothingRead)
        return QStringLiteral("ayarlar dosyası okunamadı, varsayılan ayarlar kullanılıyor (%1)").arg(settings.fileName());
    if (settings.contains(name(Key::location))) {
        const auto location = decode<Location>(Key::location);
        if (!location || !isUsable(*location))
            return QStringLiteral("kayıtlı yer okunamadı, İstanbul gösteriliyor (%1)").arg(settings.fileName());
    }
    return std::nullopt;
}

void writeNotified(const std::set<Prayer::Value> &prayers)
{
    QStringList rawValues;
    for (const Prayer::Value prayer : prayers)
        rawValues.append(QString::fromUtf8(Prayer(prayer).rawValue()));
    write(Key::notified, rawValues);
}

void writeCustomSoundName(const std::optional<QString> &soundName)
{
    write(Key::customSoundName, soundName.value_or(QString()));
}

void writeIconRemaining(std::optional<bool> shown)
{
    if (shown)
        write(Key::iconRemaining, *shown);
    else
        store().remove(name(Key::iconRemaining));
}

} // namespace orvel::Defaults
