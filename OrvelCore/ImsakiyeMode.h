#pragma once

#include "Enumeration.h"

namespace orvel {

namespace detail::imsakiyeMode {
enum Value { week, month, ramadan };
}

// What one page of the timetable holds: a week from Monday, a Gregorian month, or a Ramadan.
class ImsakiyeMode : public Enumeration<ImsakiyeMode, detail::imsakiyeMode::Value, 3> {
public:
    using Enumeration::Enumeration;
    using enum detail::imsakiyeMode::Value;

    static constexpr std::array<std::string_view, 3> ids{"week", "month", "ramadan"};
    static constexpr std::array<std::string_view, 3> labels{
        "Hafta",
        "Ay",
        "Ramazan",
    };

    std::string_view label() const { return labels[value_]; }
};

} // namespace orvel
