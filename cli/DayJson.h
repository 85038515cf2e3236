#pragma once

#include "DayTimes.h"

#include <nlohmann/json.hpp>

namespace orvel {

class TimeZone;

namespace cli {

// One day as every command writes it for scripts, the same keys in every method; the three lists
// of times hold İmsak, Güneş, Öğle, İkindi, Akşam and Yatsı in that order:
//   "date": "2026-03-10", "hijri": {"day": 20, "month": 9, "year": 1447},
//   "hijriText": "20 Ramazan 1447",
//   "times": ["2026-03-10T05:53:00+03:00", …] (ISO 8601 with the place's offset),
//   "unix": [1773111180, …] (seconds since 1970-01-01Z),
//   "clock": ["05:53", …] (the place's wall clock),
//   "estimated": ["imsak", …] (times the high-latitude rule set; empty when none).
nlohmann::ordered_json dayJson(const DayTimes &day, const TimeZone &zone);

} // namespace cli

} // namespace orvel
