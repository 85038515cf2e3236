#pragma once

#include <array>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string_view>

namespace orvel {

// One of the six daily times, in day order. Converts to and from its enumerator so that it
// works in switches and as `Prayer::ogle`.
class Prayer {
public:
    enum Value { imsak, gunes, ogle, ikindi, aksam, yatsi };

    static constexpr std::array<Value, 6> allCases{imsak, gunes, ogle, ikindi, aksam, yatsi};

    constexpr Prayer(Value value)
        : value_(value)
    {
    }
    constexpr operator Value() const { return value_; }

    static std::optional<Prayer> fromRawValue(std::string_view raw);
    std::string_view rawValue() const;
    std::string_view id() const { return rawValue(); }
    constexpr int index() const { return static_cast<int>(value_); }

    std::string_view name() const;
    std::string_view symbol() const;
    std::optional<std::string_view> detail() const;
    std::string_view countdownPhrase() const { return countdownPhrase(false); }
    bool isEzan() const { return value_ != gunes; }
    std::optional<Prayer> nextInDay() const;

    std::string_view displayName(bool ramadan) const;
    std::string_view countdownPhrase(bool ramadan) const;
    std::optional<std::string_view> ramadanTag() const;

private:
    Value value_;
};

void to_json(nlohmann::json &json, const Prayer &prayer);
void from_json(const nlohmann::json &json, Prayer &prayer);

} // namespace orvel
