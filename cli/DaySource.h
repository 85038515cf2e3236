#pragma once

#include "CalculationMethod.h"
#include "DayKey.h"
#include "DayTimes.h"
#include "Location.h"
#include "TimesSource.h"

#include <filesystem>
#include <functional>
#include <string>
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
// Months from the cache folder, else from the web service at the base URL (and then kept in the
// folder), else computed on the device. Each month is fetched at most once per source.
DaySource repositorySource(std::filesystem::path cacheDirectory, std::string serviceURL);

} // namespace orvel::cli
