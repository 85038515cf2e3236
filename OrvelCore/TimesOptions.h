#pragma once

#include "CalculationMethod.h"
#include "DayTimes.h"
#include "HighLatitudeRule.h"
#include "Prayer.h"

#include <nlohmann/json_fwd.hpp>

#include <array>
#include <cstdint>

namespace orvel {

// The user's say in the times themselves: how far-north nights are handled, minutes added to each
// prayer, a shift of the Hijri date after a local announcement, and whether Diyanet's times are
// taken from the web service rather than its own rule on the device.
struct TimesOptions {
    static constexpr int64_t maximumAdjustment = 30;      // minutes either way, per prayer
    static constexpr int64_t maximumHijriCorrection = 2;  // days either way

    HighLatitudeRule highLatitude = HighLatitudeRule::angleBased;
    std::array<int64_t, 6> minuteAdjustments{};           // in Prayer::all order
    int64_t hijriCorrection = 0;
    bool diyanetFromService = false;

    int64_t adjustment(Prayer prayer) const { return minuteAdjustments[static_cast<size_t>(prayer.index())]; }
    bool isValid() const;
    // The day as the user asked to see it: each time moved by its minutes, the Hijri date by the
    // correction (counted in the method's own calendar).
    DayTimes applied(DayTimes day, CalculationMethod method) const;

    bool operator==(const TimesOptions &) const = default;
};

// {"highLatitude": "angleBased", "adjustments": [0, 0, 0, 0, 0, 0], "hijriCorrection": 0,
//  "diyanetFromService": false}. Reading throws on any value out of range.
void to_json(nlohmann::json &json, const TimesOptions &options);
void from_json(const nlohmann::json &json, TimesOptions &options);

} // namespace orvel
