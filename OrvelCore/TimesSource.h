#pragma once

#include "Enumeration.h"

namespace orvel {

// Where the times on screen came from: the web service, the calculator standing in for it, or
// Diyanet's own rule, which is the source of Diyanet's times and no stand-in.
struct TimesSourceChoices {
    enum Value { online, offline, rule };
    static constexpr Names<3> ids{"online", "offline", "rule"};
    static constexpr Names<3> labels{
        "çevrimiçi",
        "çevrimdışı · cihazda hesaplandı",
        "Diyanet hesabı · cihazda",
    };
};
using TimesSource = Enumeration<TimesSourceChoices>;

} // namespace orvel
