#include "CalculationMethod.h"

namespace orvel {

namespace {

struct MethodInfo {
    std::string_view name;
    std::string_view shortName;
    int64_t aladhanID;
};

constexpr std::array<MethodInfo, 5> methods{{
    {"Diyanet İşleri Başkanlığı", "Diyanet takvimi", 13},
    {"Müslüman Dünya Birliği", "MWL", 3},
    {"Kuzey Amerika (ISNA)", "ISNA", 2},
    {"Mısır Genel Araştırma Kurumu", "Mısır", 5},
    {"Ümmü'l-Kura, Mekke", "Ümmü'l-Kura", 4},
}};

} // namespace

double CalculationParameters::adjustment(Prayer prayer) const
{
    const auto found = adjustments.find(prayer);
    return found == adjustments.end() ? 0.0 : found->second;
}

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

} // namespace orvel
