#include "SettingsStore.h"

#include <QFileInfo>
#include <QMetaType>

#include <cmath>

namespace orvel::SettingsStore {

namespace {

std::unique_ptr<QSettings> &holder()
{
    static std::unique_ptr<QSettings> settings;
    return settings;
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

} // namespace

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

std::optional<QString> problem()
{
    QSettings &settings = store();
    // Qt marks a file that is no settings file at all by an error, or by reading nothing from it.
    const bool nothingRead = settings.allKeys().isEmpty() && QFileInfo(settings.fileName()).size() > 0;
    if (settings.status() == QSettings::FormatError || nothingRead)
        return QStringLiteral("ayarlar dosyası okunamadı, varsayılan ayarlar kullanılıyor (%1)").arg(settings.fileName());
    return std::nullopt;
}

std::optional<int64_t> integer(const QVariant &stored)
{
    const QVariant *value = &stored;
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

std::optional<bool> boolean(const QVariant &stored)
{
    const QVariant *value = &stored;
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

std::optional<double> number(const QVariant &stored)
{
    const QVariant *value = &stored;
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

std::optional<QString> string(const QVariant &stored)
{
    const QVariant *value = &stored;
    if (value->typeId() != QMetaType::QString)
        return std::nullopt;
    return value->toString();
}

std::optional<QStringList> stringList(const QVariant &stored)
{
    const QVariant *value = &stored;
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

std::optional<QByteArray> data(const QVariant &stored)
{
    const QVariant *value = &stored;
    if (value->typeId() == QMetaType::QByteArray)
        return value->toByteArray();
    if (value->typeId() == QMetaType::QString)
        return value->toString().toUtf8();
    return std::nullopt;
}

} // namespace orvel::SettingsStore
