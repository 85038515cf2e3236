#pragma once

#include "CalculationMethod.h"
#include "CliOptions.h"
#include "DayKey.h"
#include "DaySource.h"
#include "Location.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace orvel {
class Clock;
}

namespace orvel::cli {

// `orvel-cli times`: a place's six times for one or more days, as a Turkish table or as JSON.
namespace TimesCommand {

struct Request : TimesQuery {
    DayRange range;
    SourceOptions sources;
    bool json = false;

};

// Reads the arguments after "times"; without --date the first day is today at the place.
// Throws UsageError.
Request parse(const std::vector<std::string> &args, const Clock &clock);
std::string text(const Request &request, const DaysAnswer &answer);
std::string json(const Request &request, const DaysAnswer &answer);
std::string help();

// Parses, gets the days and prints them; a fallback to the calculator is told on `err` in text
// mode. Throws UsageError before anything is written.
int run(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &err);

} // namespace TimesCommand

} // namespace orvel::cli
