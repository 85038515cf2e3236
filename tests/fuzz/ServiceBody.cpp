// The web service's month: the body decoder, then the month rule on what it gave.
#include "AladhanClient.h"
#include "Location.h"
#include "MonthCheck.h"
#include "TimeZone.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const orvel::Location place = orvel::Location::istanbul();
    static const orvel::TimeZone zone = place.timeZone();
    try {
        const auto days = orvel::AladhanClient::parse(std::string_view(reinterpret_cast<const char *>(data), size), zone);
        for (const orvel::MonthKey month : {orvel::MonthKey{2017, 4}, orvel::MonthKey{2026, 2}})
            orvel::MonthCheck::isWhole(days, month, place, orvel::CalculationMethod::isna, zone);
        for (const auto &day : days)
            static_cast<void>(day.hijriOrApproximate().formatted());
    } catch (const std::exception &) {
        // Refusing the body is the right answer to most inputs.
    }
    return 0;
}
