#pragma once

#include "CalculationMethod.h"
#include "DayKey.h"
#include "DayTimes.h"
#include "Location.h"
#include "TimesSource.h"

#include <functional>
#include <vector>

namespace orvel::cli {

// The days a command shows and where their times came from.
struct DaysAnswer {
    std::vector<DayTimes> days;
    TimesSource source = TimesSource::offline;
};

// Gives exactly one day per key, in the order of the keys. Commands take their days only from
// here, so the calculator and the cached online timetable are interchangeable.
using DaySource = std::function<DaysAnswer(const std::vector<DayKey> &, const Location &, CalculationMethod)>;

// Computes the days on the device.
DaySource calculatorSource();

} // namespace orvel::cli
