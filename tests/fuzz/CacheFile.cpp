// A month cache file: the day decoder, then the month rule before anything is shown.
#include "DayTimes.h"
#include "Location.h"
#include "MonthCheck.h"
#include "TimeZone.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const orvel::Location place = orvel::Location::istanbul();
    static const orvel::TimeZone zone = place.timeZone();
    try {
        const auto days = nlohmann::json::parse(data, data + size).get<std::vector<orvel::DayTimes>>();
        if (orvel::MonthCheck::isWhole(days, {2017, 4}, place, orvel::CalculationMethod::isna, zone))
            static_cast<void>(nlohmann::json(days).dump());
        for (const auto &day : days)
            static_cast<void>(day.hijriOrApproximate().monthName());
    } catch (const std::exception &) {
    }
    return 0;
}
