#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace orvel {

// What one page of the timetable holds: a week from Monday, a Gregorian month, or a Ramadan.
class ImsakiyeMode {
public:
    enum Value { week, month, ramadan };

    static constexpr std::array<Value, 3> allCases{week, month, ramadan};

    constexpr ImsakiyeMode(Value value)
        : value_(value)
    {
    }
    constexpr operator Value() const { return value_; }

    static std::optional<ImsakiyeMode> fromRawValue(std::string_view raw);
    std::string_view rawValue() const; // "week", "month", "ramadan"
    std::string_view id() const { return rawValue(); }
    std::string_view label() const;    // "Hafta", "Ay", "Ramazan"

private:
    Value value_;
};

} // namespace orvel
