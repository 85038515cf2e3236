#pragma once

#include "DayKey.h"
#include "HijriDate.h"
#include "Instant.h"
#include "Prayer.h"

#include <array>
#include <nlohmann/json_fwd.hpp>
#include <optional>

namespace orvel {

// One day's six instants, in Prayer::allCases order.
struct DayTimes {
    DayKey day;
    std::array<Instant, 6> times{};
    std::optional<HijriDate> hijri; // present when the source supplied one

    Instant operator[](Prayer prayer) const { return times[static_cast<size_t>(prayer.index())]; }
    HijriDate hijriOrApproximate() const;

    bool operator==(const DayTimes &) const = default;
};

// The "hijri" key is left out when there is none; on reading it may be absent or null.
// "times" must hold exactly six numbers.
void to_json(nlohmann::json &json, const DayTimes &day);
void from_json(const nlohmann::json &json, DayTimes &day);

} // namespace orvel
