#pragma once

#include <optional>
#include <string_view>

namespace orvel {

// Where the times on screen came from: the web service, the calculator standing in for it, or
// Diyanet's own rule, which is the source of Diyanet's times and no stand-in.
enum class TimesSource { online, offline, rule };

namespace detail {
struct TimesSourceInfo {
    std::string_view raw;
    std::string_view label;
};
constexpr TimesSourceInfo timesSources[]{
    {"online", "çevrimiçi"},
    {"offline", "çevrimdışı · cihazda hesaplandı"},
    {"rule", "Diyanet hesabı · cihazda"},
};
} // namespace detail

constexpr std::string_view rawValue(TimesSource source)
{
    return detail::timesSources[static_cast<size_t>(source)].raw;
}

// "çevrimiçi", "çevrimdışı · cihazda hesaplandı", "Diyanet hesabı · cihazda"
constexpr std::string_view label(TimesSource source)
{
    return detail::timesSources[static_cast<size_t>(source)].label;
}

} // namespace orvel
