#pragma once

#include "AdhanSound.h"
#include "CalculationMethod.h"
#include "Location.h"
#include "TrayStyle.h"
#include "Prayer.h"
#include "QuietHours.h"
#include "TimesOptions.h"

#include <QString>
#include <QVariant>

#include <any>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <set>
#include <type_traits>
#include <vector>

namespace orvel {

// What a change of a setting sets off in the application besides redrawing.
enum class Effect : unsigned {
    none = 0,
    reload = 1u << 0,     // the days are loaded again (place, method, times)
    reschedule = 1u << 1, // the notifications are planned again
    recheck = 1u << 2,    // the minute's checks (entry sound) run again
    volume = 1u << 3,     // the player takes the new volume
};

constexpr Effect operator|(Effect a, Effect b)
{
    return static_cast<Effect>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

constexpr bool contains(Effect effects, Effect one)
{
    return (static_cast<unsigned>(effects) & static_cast<unsigned>(one)) != 0;
}

// How a value of each setting type is stored, and read back from whatever an earlier run or a
// hand edit left: none when it does not read.
namespace SettingCodec {

QVariant encode(bool value);
QVariant encode(int64_t value);
QVariant encode(double value);
QVariant encode(const std::optional<bool> &value); // none: the key goes
QVariant encode(const std::optional<QString> &value); // none: ""
QVariant encode(const std::set<Prayer::Value> &value);
QVariant encode(const Location &value);
QVariant encode(const QuietHours &value);
QVariant encode(const TimesOptions &value);

template <typename T>
struct Tag {};
std::optional<bool> decode(const QVariant &stored, Tag<bool>);
std::optional<int64_t> decode(const QVariant &stored, Tag<int64_t>);
std::optional<double> decode(const QVariant &stored, Tag<double>);
std::optional<std::optional<bool>> decode(const QVariant &stored, Tag<std::optional<bool>>);
std::optional<std::optional<QString>> decode(const QVariant &stored, Tag<std::optional<QString>>);
std::optional<std::set<Prayer::Value>> decode(const QVariant &stored, Tag<std::set<Prayer::Value>>);
std::optional<Location> decode(const QVariant &stored, Tag<Location>);
std::optional<QuietHours> decode(const QVariant &stored, Tag<QuietHours>);
std::optional<TimesOptions> decode(const QVariant &stored, Tag<TimesOptions>);

// A choice is stored as its id.
template <AnEnumeration T>
QVariant encode(T value)
{
    return QString::fromUtf8(value.id().data(), static_cast<qsizetype>(value.id().size()));
}

std::optional<QString> enumerationId(const QVariant &stored);

template <AnEnumeration T>
std::optional<T> decode(const QVariant &stored, Tag<T>)
{
    const std::optional<QString> id = enumerationId(stored);
    return id ? T::fromId(id->toStdString()) : std::nullopt;
}

// One value of each meaning: an empty sound name is no name.
template <typename T>
T normalized(const T &value)
{
    return value;
}
std::optional<QString> normalized(const std::optional<QString> &value);

} // namespace SettingCodec

// A setting whatever its type: its stored name, what a change sets off, and what the loops over
// all settings need. Every setting adds itself to `all()` as it is made, in the table's order.
class SettingRow {
public:
    SettingRow(const SettingRow &) = delete;
    SettingRow &operator=(const SettingRow &) = delete;

    const char *name() const { return name_; }
    Effect effect() const { return effect_; }
    // The setting's place in `all()`, which holds the application's values in the same order.
    std::size_t index() const { return index_; }

    virtual std::any defaultValue() const = 0;
    // The stored value, read and checked; the default when it is missing or unusable.
    virtual std::any load() const = 0;
    virtual bool equal(const std::any &a, const std::any &b) const = 0;

    static const std::vector<const SettingRow *> &all();

protected:
    SettingRow(const char *name, std::initializer_list<const char *> formerNames, Effect effect);
    ~SettingRow() = default;

    // The stored value under the setting's name, else under a name an earlier version used.
    std::optional<QVariant> stored() const;
    // Stores the value under the setting's name (an invalid one removes it), and drops the
    // former names.
    void store(const QVariant &value) const;

private:
    const char *name_;
    std::vector<const char *> formerNames_;
    Effect effect_;
    std::size_t index_;
};

template <typename T>
class Setting final : public SettingRow {
public:
    using Check = bool (*)(const T &);

    Setting(const char *name, T defaultValue, Effect effect, Check check = nullptr,
            std::initializer_list<const char *> formerNames = {})
        : SettingRow(name, formerNames, effect)
        , default_(std::move(defaultValue))
        , check_(check)
    {
    }

    const T &fallback() const { return default_; }
    bool accepts(const T &value) const { return !check_ || check_(value); }

    // The stored value, if there is one that reads and passes the check.
    std::optional<T> read() const
    {
        const std::optional<QVariant> value = stored();
        if (!value)
            return std::nullopt;
        std::optional<T> decoded = SettingCodec::decode(*value, SettingCodec::Tag<T>{});
        if (!decoded || !accepts(*decoded))
            return std::nullopt;
        return decoded;
    }
    void write(const T &value) const { store(SettingCodec::encode(value)); }

    std::any defaultValue() const override { return default_; }
    std::any load() const override { return read().value_or(default_); }
    bool equal(const std::any &a, const std::any &b) const override
    {
        return std::any_cast<const T &>(a) == std::any_cast<const T &>(b);
    }

private:
    T default_;
    Check check_;
};

} // namespace orvel
