#pragma once

#include "Enumeration.h"

namespace orvel {

struct PrayerChoices {
    enum Value { imsak, gunes, ogle, ikindi, aksam, yatsi };
    static constexpr Names<6> ids{"imsak", "gunes", "ogle", "ikindi", "aksam", "yatsi"};
};

// One of the six daily times, in day order.
class Prayer : public Enumeration<PrayerChoices, Prayer> {
public:
    using Enumeration::Enumeration;

    std::string_view name() const;
    std::string_view symbol() const;
    std::optional<std::string_view> detail() const;
    std::string_view countdownPhrase() const { return countdownPhrase(false); }
    bool isEzan() const { return value_ != gunes; }
    std::optional<Prayer> nextInDay() const;

    std::string_view displayName(bool ramadan) const;
    std::string_view countdownPhrase(bool ramadan) const;
    std::optional<std::string_view> ramadanTag() const;
};

} // namespace orvel
