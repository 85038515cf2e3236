#pragma once

#include <optional>
#include <string_view>

namespace orvel {

// Where the times on screen came from: the web service or the calculator.
enum class TimesSource { online, offline };

constexpr std::string_view rawValue(TimesSource source)
{
    return source == TimesSource::online ? "online" : "offline";
}

} // namespace orvel
