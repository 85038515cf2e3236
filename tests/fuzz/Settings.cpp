// The stored settings that are JSON: the place, the quiet hours and the times options.
#include "Location.h"
#include "QuietHours.h"
#include "TimeZone.h"
#include "TimesOptions.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <exception>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const nlohmann::json json = nlohmann::json::parse(data, data + size, nullptr, false);
    if (json.is_discarded())
        return 0;
    try {
        const auto place = json.get<orvel::Location>();
        static_cast<void>(place.cacheKey());
    } catch (const std::exception &) {
    }
    try {
        const auto hours = json.get<orvel::QuietHours>();
        static_cast<void>(hours.contains(orvel::Instant{0}, orvel::TimeZone::utc()));
    } catch (const std::exception &) {
    }
    try {
        const auto options = json.get<orvel::TimesOptions>();
        orvel::DayTimes day;
        day.day = {2026, 3, 10};
        static_cast<void>(options.applied(day, orvel::CalculationMethod::isna));
    } catch (const std::exception &) {
    }
    return 0;
}
