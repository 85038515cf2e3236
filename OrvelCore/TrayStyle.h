#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace orvel {

// What the status item shows beside the crescent.
class TrayStyle {
public:
    enum Value { nameAndRemaining, remaining, nameAndTime, iconOnly };

    static constexpr std::array<Value, 4> allCases{nameAndRemaining, remaining, nameAndTime, iconOnly};

    constexpr TrayStyle(Value value)
        : value_(value)
    {
    }
    constexpr operator Value() const { return value_; }

    static std::optional<TrayStyle> fromRawValue(std::string_view raw);
    std::string_view rawValue() const;
    std::string_view label() const; // "Vakit + süre", "Süre", "Vakit saati", "Yalnız simge"

private:
    Value value_;
};

} // namespace orvel
