#pragma once

#include "Instant.h"

#include <cstdint>
#include <nlohmann/json_fwd.hpp>

namespace orvel {

class TimeZone;

// The daily period in which notifications and the entry sound stay silent.
struct QuietHours {
    bool enabled = false;
    int64_t start = 1380; // minutes after local midnight
    int64_t end = 420;

    // Whether the wall-clock minute of the instant in the zone lies in the period; a period
    // whose start is after its end runs over midnight.
    bool contains(Instant instant, const TimeZone &zone) const;

    bool operator==(const QuietHours &) const = default;
};

void to_json(nlohmann::json &json, const QuietHours &hours);
void from_json(const nlohmann::json &json, QuietHours &hours);

} // namespace orvel
