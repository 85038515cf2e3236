#include "TrayStyle.h"

namespace orvel {

namespace {

struct StyleTexts {
    std::string_view raw;
    std::string_view label;
};

constexpr std::array<StyleTexts, 4> styles{{
    {"nameAndRemaining", "Vakit + süre"},
    {"remaining", "Süre"},
    {"nameAndTime", "Vakit saati"},
    {"iconOnly", "Yalnız simge"},
}};

} // namespace

std::optional<TrayStyle> TrayStyle::fromRawValue(std::string_view raw)
{
    for (const Value value : allCases) {
        if (styles[value].raw == raw)
            return TrayStyle(value);
    }
    return std::nullopt;
}

std::string_view TrayStyle::rawValue() const { return styles[value_].raw; }
std::string_view TrayStyle::label() const { return styles[value_].label; }

} // namespace orvel
