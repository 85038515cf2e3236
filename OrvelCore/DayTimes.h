#pragma once

#include "DayKey.h"
#include "HijriDate.h"
#include "Instant.h"
#include "Prayer.h"

#include <array>
#include <nlohmann/json_fwd.hpp>
#include <optional>

namespace orvel {

// One day's six instants, in Prayer::all order.
struct DayTimes {
    DayKey day;
    std::array<Instant, 6> times{};
    std::optional<HijriDate> hijri; // present when the source supplied one
    // Times that the sun does not give at this place and day, set by the high-latitude rule.
    std::array<bool, 6> estimated{};

    Instant operator[](Prayer prayer) const { return times[static_cast<size_t>(prayer.index())]; }
    HijriDate hijriOrApproximate() const;
    bool isEstimated(Prayer prayer) const { return estimated[static_cast<size_t>(prayer.index())]; }

    bool operator==(const DayTimes &) const = default;
};

// The "hijri" key is left out when there is none; on reading it may be absent or null. "estimated"
// lists the estimated prayers and is left out when there are none.
// "times" must hold exactly six numbers.
void to_json(nlohmann::json &json, const DayTimes &day);
void from_json(const nlohmann::json &json, DayTimes &day);

} // namespace orvel
