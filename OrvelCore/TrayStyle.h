#pragma once

#include "Enumeration.h"

namespace orvel {

namespace detail::trayStyle {
enum Value { nameAndRemaining, remaining, nameAndTime, iconOnly };
}

// What the status item shows beside the crescent.
class TrayStyle : public Enumeration<TrayStyle, detail::trayStyle::Value, 4> {
public:
    using Enumeration::Enumeration;
    using enum detail::trayStyle::Value;

    static constexpr Names ids{"nameAndRemaining", "remaining", "nameAndTime", "iconOnly"};
    static constexpr Names labels{
        "Vakit + süre",
        "Süre",
        "Vakit saati",
        "Yalnız simge",
    };
};

} // namespace orvel
