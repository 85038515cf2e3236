#pragma once

#include "CliOptions.h"
#include "DayKey.h"

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace orvel {
class Clock;
}

// `orvel-cli qibla`: the qibla's bearing and distance from a place, and the day's kıble saati.
namespace orvel::cli::QiblaCommand {

struct Request {
    Location location;
    DayKey day;
    bool json = false;
};

// Reads the arguments after "qibla"; without --date the day is today at the place. Throws
// UsageError.
Request parse(const std::vector<std::string> &args, const Clock &clock);
std::string text(const Request &request);
std::string json(const Request &request);
std::string help();

int run(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &err);

} // namespace orvel::cli::QiblaCommand
