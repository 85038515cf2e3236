#include "HighLatitudeRule.h"

namespace orvel {

namespace {

struct RuleInfo {
    std::string_view raw;
    std::string_view label;
};

constexpr std::array<RuleInfo, 4> rules{{
    {"angleBased", "Açıya göre (gecenin payı)"},
    {"seventhOfNight", "Gecenin yedide biri"},
    {"middleOfNight", "Gecenin ortası"},
    {"nearestLatitude", "En yakın enlem"},
}};

} // namespace

std::optional<HighLatitudeRule> HighLatitudeRule::fromRawValue(std::string_view raw)
{
    for (const Value value : allCases) {
        if (rules[value].raw == raw)
            return HighLatitudeRule(value);
    }
    return std::nullopt;
}

std::string_view HighLatitudeRule::rawValue() const { return rules[value_].raw; }
std::string_view HighLatitudeRule::label() const { return rules[value_].label; }

} // namespace orvel
