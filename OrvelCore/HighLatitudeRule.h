#pragma once

#include "Enumeration.h"

namespace orvel {

namespace detail::highLatitudeRule {
enum Value { angleBased, seventhOfNight, middleOfNight, nearestLatitude };
}

// How İmsak and Yatsı are set where the sun does not sink far enough below the horizon, and how
// the day's times are found where it does not rise or set at all.
class HighLatitudeRule : public Enumeration<HighLatitudeRule, detail::highLatitudeRule::Value, 4> {
public:
    using Enumeration::Enumeration;
    using enum detail::highLatitudeRule::Value;

    static constexpr Names ids{"angleBased", "seventhOfNight", "middleOfNight", "nearestLatitude"};
    static constexpr Names labels{
        "Açıya göre (gecenin payı)",
        "Gecenin yedide biri",
        "Gecenin ortası",
        "En yakın enlem",
    };
};

} // namespace orvel
