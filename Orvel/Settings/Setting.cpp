#include "Setting.h"

#include "SettingsStore.h"

#include <nlohmann/json.hpp>

#include <QStringList>

namespace orvel {

namespace {

std::vector<const SettingRow *> &registry()
{
    static std::vector<const SettingRow *> rows;
    return rows;
}

QString qt(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

template <typename T>
QVariant json(const T &value)
{
    try {
        const std::string text = nlohmann::json(value).dump();
        return QByteArray(text.data(), static_cast<qsizetype>(text.size()));
    } catch (const nlohmann::json::exception &) {
        return {};
    }
}

template <typename T>
std::optional<T> fromJson(const QVariant &stored)
{
    const std::optional<QByteArray> bytes = SettingsStore::data(stored);
    if (!bytes)
        return std::nullopt;
    const nlohmann::json parsed = nlohmann::json::parse(bytes->begin(), bytes->end(), nullptr, false);
    if (parsed.is_discarded())
        return std::nullopt;
    try {
        return parsed.get<T>();
    } catch (const nlohmann::json::exception &) {
        return std::nullopt;
    }
}

} // namespace

namespace SettingCodec {

QVariant encode(bool value) { return value; }
QVariant encode(int64_t value) { return qint64(value); }
QVariant encode(double value) { return value; }
QVariant encode(const std::optional<bool> &value) { return value ? QVariant(*value) : QVariant(); }
QVariant encode(const std::optional<QString> &value) { return value.value_or(QString()); }
QVariant encode(const Location &value) { return json(value); }
QVariant encode(const QuietHours &value) { return json(value); }
QVariant encode(const TimesOptions &value) { return json(value); }

QVariant encode(const std::set<Prayer::Value> &value)
{
    QStringList ids;
    for (const Prayer::Value prayer : value)
        ids.append(qt(Prayer(prayer).id()));
    return ids;
}

std::optional<bool> decode(const QVariant &stored, Tag<bool>) { return SettingsStore::boolean(stored); }
std::optional<int64_t> decode(const QVariant &stored, Tag<int64_t>) { return SettingsStore::integer(stored); }
std::optional<double> decode(const QVariant &stored, Tag<double>) { return SettingsStore::number(stored); }
std::optional<Location> decode(const QVariant &stored, Tag<Location>) { return fromJson<Location>(stored); }
std::optional<QuietHours> decode(const QVariant &stored, Tag<QuietHours>) { return fromJson<QuietHours>(stored); }
std::optional<TimesOptions> decode(const QVariant &stored, Tag<TimesOptions>) { return fromJson<TimesOptions>(stored); }

std::optional<std::optional<bool>> decode(const QVariant &stored, Tag<std::optional<bool>>)
{
    const std::optional<bool> value = SettingsStore::boolean(stored);
    if (!value)
        return std::nullopt;
    return std::optional<bool>(*value);
}

std::optional<std::optional<QString>> decode(const QVariant &stored, Tag<std::optional<QString>>)
{
    const std::optional<QString> value = SettingsStore::string(stored);
    if (!value)
        return std::nullopt;
    return normalized(std::optional<QString>(*value));
}

std::optional<std::set<Prayer::Value>> decode(const QVariant &stored, Tag<std::set<Prayer::Value>>)
{
    const std::optional<QStringList> ids = SettingsStore::stringList(stored);
    if (!ids)
        return std::nullopt;
    std::set<Prayer::Value> prayers;
    for (const QString &id : *ids) {
        if (const std::optional<Prayer> prayer = Prayer::fromId(id.toStdString()))
            prayers.insert(*prayer);
    }
    return prayers;
}

std::optional<QString> enumerationId(const QVariant &stored)
{
    return SettingsStore::string(stored);
}

std::optional<QString> normalized(const std::optional<QString> &value)
{
    return value && !value->isEmpty() ? value : std::nullopt;
}

} // namespace SettingCodec

SettingRow::SettingRow(const char *name, std::initializer_list<const char *> formerNames, Effect effect)
    : name_(name)
    , formerNames_(formerNames)
    , effect_(effect)
    , index_(registry().size())
{
    registry().push_back(this);
}

const std::vector<const SettingRow *> &SettingRow::all()
{
    return registry();
}

std::optional<QVariant> SettingRow::stored() const
{
    QSettings &settings = SettingsStore::store();
    if (settings.contains(QLatin1String(name_)))
        return settings.value(QLatin1String(name_));
    for (const char *former : formerNames_) {
        if (settings.contains(QLatin1String(former)))
            return settings.value(QLatin1String(former));
    }
    return std::nullopt;
}

void SettingRow::store(const QVariant &value) const
{
    QSettings &settings = SettingsStore::store();
    if (value.isValid())
        settings.setValue(QLatin1String(name_), value);
    else
        settings.remove(QLatin1String(name_));
    for (const char *former : formerNames_)
        settings.remove(QLatin1String(former));
}

} // namespace orvel
