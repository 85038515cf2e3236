#pragma once

#include "Enumeration.h"

namespace orvel {

// What the status item shows beside the crescent.
struct TrayStyleChoices {
    enum Value { nameAndRemaining, remaining, nameAndTime, iconOnly };
    static constexpr Names<4> ids{"nameAndRemaining", "remaining", "nameAndTime", "iconOnly"};
    static constexpr Names<4> labels{"Vakit + süre", "Süre", "Vakit saati", "Yalnız simge"};
};
using TrayStyle = Enumeration<TrayStyleChoices>;

} // namespace orvel
