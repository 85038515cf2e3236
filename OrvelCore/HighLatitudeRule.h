#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace orvel {

// How İmsak and Yatsı are set where the sun does not sink far enough below the horizon, and how
// the day's times are found where it does not rise or set at all.
class HighLatitudeRule {
public:
    enum Value { angleBased, seventhOfNight, middleOfNight, nearestLatitude };

    static constexpr std::array<Value, 4> allCases{angleBased, seventhOfNight, middleOfNight, nearestLatitude};

    constexpr HighLatitudeRule(Value value)
        : value_(value)
    {
    }
    constexpr operator Value() const { return value_; }

    static std::optional<HighLatitudeRule> fromRawValue(std::string_view raw);
    std::string_view rawValue() const;
    std::string_view label() const; // "Açıya göre (gecenin payı)", …

private:
    Value value_;
};

} // namespace orvel
