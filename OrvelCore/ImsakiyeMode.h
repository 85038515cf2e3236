#pragma once

#include "Enumeration.h"

namespace orvel {

// What one page of the timetable holds: a week from Monday, a Gregorian month, or a Ramadan.
struct ImsakiyeModeChoices {
    enum Value { week, month, ramadan };
    static constexpr Names<3> ids{"week", "month", "ramadan"};
    static constexpr Names<3> labels{"Hafta", "Ay", "Ramazan"};
};
using ImsakiyeMode = Enumeration<ImsakiyeModeChoices>;

} // namespace orvel
