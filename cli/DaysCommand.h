#pragma once

#include "CalculationMethod.h"
#include "ReligiousDays.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace orvel {
class Clock;
}

// `orvel-cli days`: a year's religious days and nights from the method's own Hijri calendar.
namespace orvel::cli::DaysCommand {

struct Request {
    int64_t year = 0;
    CalculationMethod method = CalculationMethod::diyanet;
    int64_t hijriCorrection = 0;
    bool json = false;
};

// Reads the arguments after "days"; without --year the year is this one on the machine's clock.
// Throws UsageError.
Request parse(const std::vector<std::string> &args, const Clock &clock);
std::string text(const Request &request, const std::vector<ReligiousDay> &days);
std::string json(const Request &request, const std::vector<ReligiousDay> &days);
std::string help();

int run(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &err);

} // namespace orvel::cli::DaysCommand
