#pragma once

#include "Enumeration.h"

namespace orvel {

namespace detail::timesSource {
enum Value { online, offline, rule };
}

// Where the times on screen came from: the web service, the calculator standing in for it, or
// Diyanet's own rule, which is the source of Diyanet's times and no stand-in.
class TimesSource : public Enumeration<TimesSource, detail::timesSource::Value, 3> {
public:
    using Enumeration::Enumeration;
    using enum detail::timesSource::Value;

    static constexpr Names ids{"online", "offline", "rule"};
    static constexpr Names labels{
        "çevrimiçi",
        "çevrimdışı · cihazda hesaplandı",
        "Diyanet hesabı · cihazda",
    };
};

} // namespace orvel
