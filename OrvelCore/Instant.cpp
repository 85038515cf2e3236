#include "Instant.h"

#include <cmath>

namespace orvel {

Instant Instant::floorToMinute() const
{
    return {std::floor(seconds / 60.0) * 60.0};
}

Instant Instant::nearestMinute() const
{
    return {std::round(seconds / 60.0) * 60.0};
}

} // namespace orvel
