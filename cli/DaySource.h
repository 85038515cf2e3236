#pragma once

#include "CalculationMethod.h"
#include "Clock.h"
#include "DayKey.h"
#include "DayTimes.h"
#include "Location.h"
#include "TimesOptions.h"
#include "TimesSource.h"

#include <chrono>
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
using DaySource = std::function<DaysAnswer(const std::vector<DayKey> &, const Location &, CalculationMethod,
                                           const TimesOptions &)>;

// Computes the days on the device.
DaySource calculatorSource();
// How long a command waits for the web service: status bars run commands every few seconds.
inline constexpr std::chrono::milliseconds serviceTimeout{4000};
// After the service failed for a month, how long commands leave it alone and compute instead.
inline constexpr double failureQuietSeconds = 1800;

// Months from the cache folder, else from the web service at the base URL (and then kept in the
// folder), else computed on the device. Each month is fetched at most once per source, and not
// at all within failureQuietSeconds of a failure of the same service for it (the failure is
// remembered beside the cached month, so later runs know of it too).
DaySource repositorySource(std::filesystem::path cacheDirectory, std::string serviceURL, const Clock &clock);

} // namespace orvel::cli
