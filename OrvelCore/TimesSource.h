#pragma once

#include <optional>
#include <string_view>

namespace orvel {

// Where the times on screen came from: the web service, the calculator standing in for it, or
// Diyanet's own rule, which is the source of Diyanet's times and no stand-in.
enum class TimesSource { online, offline, rule };

constexpr std::string_view rawValue(TimesSource source)
{
    switch (source) {
    case TimesSource::online:
        return "online";
    case TimesSource::rule:
        return "rule";
    case TimesSource::offline:
        break;
    }
    return "offline";
}

// "çevrimiçi", "çevrimdışı · cihazda hesaplandı", "Diyanet hesabı · cihazda"
constexpr std::string_view label(TimesSource source)
{
    switch (source) {
    case TimesSource::online:
        return "çevrimiçi";
    case TimesSource::rule:
        return "Diyanet hesabı · cihazda";
    case TimesSource::offline:
        break;
    }
    return "çevrimdışı · cihazda hesaplandı";
}

} // namespace orvel
