#include "ImsakiyeMode.h"

namespace orvel {

namespace {

struct ModeTexts {
    std::string_view raw;
    std::string_view label;
};

constexpr std::array<ModeTexts, 3> modes{{
    {"week", "Hafta"},
    {"month", "Ay"},
    {"ramadan", "Ramazan"},
}};

} // namespace

std::optional<ImsakiyeMode> ImsakiyeMode::fromRawValue(std::string_view raw)
{
    for (const Value value : allCases) {
        if (modes[value].raw == raw)
            return ImsakiyeMode(value);
    }
    return std::nullopt;
}

std::string_view ImsakiyeMode::rawValue() const { return modes[value_].raw; }
std::string_view ImsakiyeMode::label() const { return modes[value_].label; }

} // namespace orvel
