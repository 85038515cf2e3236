#include "CalculationMethod.h"

#include <nlohmann/json.hpp>

namespace orvel {

namespace {

struct MethodInfo {
    std::string_view raw;
    std::string_view name;
    std::string_view shortName;
    int64_t aladhanID;
};

constexpr std::array<MethodInfo, 5> methods{{
    {"diyanet", "Diyanet İşleri Başkanlığı", "Diyanet takvimi", 13},
    {"mwl", "Müslüman Dünya Birliği", "MWL", 3},
    {"isna", "Kuzey Amerika (ISNA)", "ISNA", 2},
    {"egypt", "Mısır Genel Araştırma Kurumu", "Mısır", 5},
    {"ummAlQura", "Ümmü'l-Kura, Mekke", "Ümmü'l-Kura", 4},
}};

} // namespace

double CalculationParameters::adjustment(Prayer prayer) const
{
    const auto found = adjustments.find(prayer);
    return found == adjustments.end() ? 0.0 : found->second;
}

std::optional<CalculationMethod> CalculationMethod::fromRawValue(std::string_view raw)
{
    for (const Value value : allCases) {
        if (methods[value].raw == raw)
            return CalculationMethod(value);
    }
    return std::nullopt;
}

std::string_view CalculationMethod::rawValue() const { return methods[value_].raw; }
std::string_view CalculationMethod::name() const { return methods[value_].name; }
std::string_view CalculationMethod::shortName() const { return methods[value_].shortName; }
int64_t CalculationMethod::aladhanID() const { return methods[value_].aladhanID; }

CalculationParameters CalculationMethod::parameters() const
{
    switch (value_) {
    case diyanet:
        return {18.0, 17.0, std::nullopt,
                {{Prayer::gunes, -7.0}, {Prayer::ogle, 5.0}, {Prayer::ikindi, 4.0}, {Prayer::aksam, 7.0}}};
    case mwl:
        return {18.0, 17.0, std::nullopt, {}};
    case isna:
        return {15.0, 15.0, std::nullopt, {}};
    case egypt:
        return {19.5, 17.5, std::nullopt, {}};
    case ummAlQura:
        return {18.5, std::nullopt, 90.0, {}};
    }
    return {};
}

void to_json(nlohmann::json &json, const CalculationMethod &method)
{
    json = method.rawValue();
}

void from_json(const nlohmann::json &json, CalculationMethod &method)
{
    const auto parsed = CalculationMethod::fromRawValue(json.get<std::string>());
    if (!parsed)
        throw nlohmann::json::other_error::create(501, "unknown method: " + json.get<std::string>(), &json);
    method = *parsed;
}

} // namespace orvel
