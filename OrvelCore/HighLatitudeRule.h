#pragma once

#include "Enumeration.h"

namespace orvel {

// How İmsak and Yatsı are set where the sun does not sink far enough below the horizon, and how
// the day's times are found where it does not rise or set at all.
struct HighLatitudeRuleChoices {
    enum Value { angleBased, seventhOfNight, middleOfNight, nearestLatitude };
    static constexpr Names<4> ids{"angleBased", "seventhOfNight", "middleOfNight", "nearestLatitude"};
    static constexpr Names<4> labels{"Açıya göre (gecenin payı)", "Gecenin yedide biri",
                                     "Gecenin ortası", "En yakın enlem"};
};
using HighLatitudeRule = Enumeration<HighLatitudeRuleChoices>;

} // namespace orvel
