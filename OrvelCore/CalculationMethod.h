#pragma once

#include "Prayer.h"

#include <array>
#include <cstdint>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string_view>

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

// The convention by which the six times are computed.
class CalculationMethod {
public:
    enum Value { diyanet, mwl, isna, egypt, ummAlQura };

    static constexpr std::array<Value, 5> allCases{diyanet, mwl, isna, egypt, ummAlQura};

    constexpr CalculationMethod(Value value)
        : value_(value)
    {
    }
    constexpr operator Value() const { return value_; }

    static std::optional<CalculationMethod> fromRawValue(std::string_view raw);
    std::string_view rawValue() const;
    std::string_view id() const { return rawValue(); }
    std::string_view name() const;
    std::string_view shortName() const;
    // The method number of the web service.
    int64_t aladhanID() const;
    CalculationParameters parameters() const;

private:
    Value value_;
};

void to_json(nlohmann::json &json, const CalculationMethod &method);
void from_json(const nlohmann::json &json, CalculationMethod &method);

} // namespace orvel
