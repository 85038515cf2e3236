#pragma once

#include "Prayer.h"

#include <cstdint>
#include <map>
#include <optional>

namespace orvel {

// The numbers behind a calculation method.
struct CalculationParameters {
    double fajrAngle = 18.0;                 // degrees below the horizon at İmsak
    std::optional<double> ishaAngle;         // degrees below the horizon at Yatsı
    std::optional<double> ishaInterval;      // minutes from Akşam to Yatsı; wins over ishaAngle
    std::map<Prayer::Value, double> adjustments; // minutes; an absent prayer gets 0

    double adjustment(Prayer prayer) const;

    bool operator==(const CalculationParameters &) const = default;
};

struct CalculationMethodChoices {
    enum Value { diyanet, mwl, isna, egypt, ummAlQura };
    static constexpr Names<5> ids{"diyanet", "mwl", "isna", "egypt", "ummAlQura"};
};

// The convention by which the six times are computed.
class CalculationMethod : public Enumeration<CalculationMethodChoices, CalculationMethod> {
public:
    using Enumeration::Enumeration;

    std::string_view name() const;
    std::string_view shortName() const;
    // The method number of the web service.
    int64_t aladhanID() const;
    CalculationParameters parameters() const;
};

} // namespace orvel
