#pragma once

#include <QByteArray>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <cstdint>
#include <memory>
#include <optional>

namespace orvel {

// The per-user store of the settings and the readings of what it holds.
//
// The store is QSettings; in its INI form (Linux) every value written by an earlier run comes
// back as a string ("true", "45", "0.8"), data as a QByteArray, a one-element list as a plain
// string and an empty list as an invalid value. The readings accept all of those.
namespace SettingsStore {

// The process's store: QSettings("Orvel", "Orvel") in the native format, made on first use.
QSettings &store();
// Replaces the store (snapshot runs use their own, tests a temporary file).
void setStore(std::unique_ptr<QSettings> settings);

// Why the stored settings were not all read, in Turkish (one line, no program name): a file that
// is not a settings file at all. The file is kept as it is.
std::optional<QString> problem();

// Readings of a stored value: none when it does not convert.
std::optional<int64_t> integer(const QVariant &value);
std::optional<bool> boolean(const QVariant &value);
std::optional<double> number(const QVariant &value);
std::optional<QString> string(const QVariant &value);
std::optional<QStringList> stringList(const QVariant &value);
std::optional<QByteArray> data(const QVariant &value);

} // namespace SettingsStore

} // namespace orvel
