#pragma once

#include "PlaceFinder.h"

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace orvel {
class Clock;
}

// orvel-cli places: finds a place by name and, with --choose, makes it the application's place.
namespace orvel::cli::PlacesCommand {

struct Request {
    std::string query;
    std::string searchURL;
    std::optional<int64_t> choice; // 1-based
    bool json = false;
};

// Reads the arguments after "places". Throws UsageError.
Request parse(const std::vector<std::string> &args);

// " 1  İstanbul, Üsküdar  41.0225  29.0237  Europe/Istanbul", numbered as --choose counts.
std::string table(const std::vector<Location> &places);
std::string json(const PlaceFinder::Search &found);
std::string help();

int run(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &err);

} // namespace orvel::cli::PlacesCommand
