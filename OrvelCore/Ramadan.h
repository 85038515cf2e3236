#pragma once

#include "DayKey.h"
#include "DayTimes.h"

#include <optional>
#include <vector>

namespace orvel {

// Ramadan rules on a day's Hijri date (stored, else approximated).
namespace Ramadan {

constexpr int64_t month = 9;

bool isRamadan(const DayTimes &day);
std::optional<int64_t> dayNumber(const DayTimes &day);
// The 26th of Ramadan, whose following night is the Kadir night.
bool isKadirEve(const DayTimes &day);
int64_t upcomingYear(const DayTimes &day);
// 34 Gregorian days from two days before 1 Ramadan of the Hijri year; empty when the calendar
// cannot form that date.
std::vector<DayKey> candidateDays(int64_t hijriYear);

} // namespace Ramadan

} // namespace orvel
