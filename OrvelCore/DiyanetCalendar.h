#pragma once

#include "DayKey.h"
#include "HijriDate.h"

#include <filesystem>
#include <optional>

namespace orvel {

// Diyanet's Hijri calendar, by the criteria of the 1978 and 2016 İstanbul conferences that it
// applies: a month begins on the day after the first evening on which, at local sunset somewhere
// on Earth before 24:00 UT, the moon stands at least 5° above the horizon (topocentric, without
// refraction) and 8° from the sun (geocentric). From the 2016 congress on, a sighting after
// 24:00 UT in the Americas counts too, when the conjunction came before dawn in New Zealand.
namespace DiyanetCalendar {

// The years the criteria are computed for; outside them the Umm al-Qura calendar answers.
constexpr int64_t firstYear = 1300;
constexpr int64_t lastYear = 1600;

HijriDate date(const DayKey &day);
// Keeps the month starts computed in the file and reads those it holds: they never change, and
// each costs milliseconds. Call once at start-up, before the first date is asked for.
void keepMonthStartsIn(const std::filesystem::path &file);
constexpr const char *storeFileName = "diyanet-month-starts.txt";
// The Gregorian day on which the Hijri month begins.
std::optional<DayKey> firstDay(int64_t year, int64_t month);

// The first evening's criterion on its own: whether a place on Earth sees the crescent on the
// evening of `evening` (a UT date), the conjunction being at the Julian day `conjunction`.
bool crescentVisible(const DayKey &evening, double conjunction);
// The Julian day (UT) of the new moon nearest to the given one.
double conjunctionNear(double julianDay);

} // namespace DiyanetCalendar

} // namespace orvel
