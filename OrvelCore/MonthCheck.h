#pragma once

#include "CalculationMethod.h"
#include "DayTimes.h"
#include "Location.h"
#include "MonthKey.h"

#include <vector>

namespace orvel {

class TimeZone;

// The one rule that decides whether a month of times from outside (the web service's answer, a
// cache file) may be shown as it is.
namespace MonthCheck {

// Exactly the month's days, in order, each with its six times on its own date and in the
// prayers' order, and a Hijri date in range when there is one. Yatsı may pass midnight only where
// the calculator's Yatsı does too: where the night is that short.
bool isWhole(const std::vector<DayTimes> &days, MonthKey month, const Location &location, CalculationMethod method,
             const TimeZone &zone);

} // namespace MonthCheck

} // namespace orvel
