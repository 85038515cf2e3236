#pragma once

#include "CliOptions.h"
#include "DayKey.h"
#include "Prayer.h"

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace orvel {
class Clock;
}

// `orvel-cli ics`: the times and the religious days of a range as an iCalendar file.
namespace orvel::cli::IcsCommand {

struct Request : TimesQuery {
    DayRange range;
    std::set<Prayer::Value> prayers{Prayer::all.begin(), Prayer::all.end()};
    std::optional<std::filesystem::path> output; // none: standard output
    SourceOptions sources;
};

// Reads the arguments after "ics"; without --date the first day is today at the place. Throws
// UsageError.
Request parse(const std::vector<std::string> &args, const Clock &clock);
std::string help();

int run(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &err);

} // namespace orvel::cli::IcsCommand
