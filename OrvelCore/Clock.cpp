#include "Clock.h"

#include <chrono>

namespace orvel {

Instant SystemClock::now() const
{
    const auto since1970 = std::chrono::system_clock::now().time_since_epoch();
    return Instant::fromUnix(std::chrono::duration<double>(since1970).count());
}

double SystemClock::monotonicSeconds() const
{
    // CLOCK_BOOTTIME would count the sleep; steady_clock (CLOCK_MONOTONIC) does not.
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace orvel
