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

    static constexpr Names ids{"week", "month", "ramadan"};
    static constexpr Names labels{"Hafta", "Ay", "Ramazan"};
};

} // namespace orvel
