#include "Clock.h"

#include <chrono>

namespace orvel {

Instant SystemClock::now() const
{
    const auto since1970 = std::chrono::system_clock::now().time_since_epoch();
    return Instant::fromUnix(std::chrono::duration<double>(since1970).count());
}

} // namespace orvel
