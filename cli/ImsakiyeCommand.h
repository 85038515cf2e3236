#pragma once

#include "CalculationMethod.h"
#include "CliOptions.h"
#include "DayKey.h"
#include "DaySource.h"
#include "Imsakiye.h"
#include "Location.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace orvel {
class Clock;
}

namespace orvel::cli {

// `orvel-cli imsakiye`: the timetable window's page (a week, a month or a Ramadan) in the
// terminal, with the same days, Hijri texts and notes, or as JSON.
namespace ImsakiyeCommand {

struct Request : TimesQuery {
    ImsakiyeMode mode = ImsakiyeMode::month;
    int64_t offset = 0;
    DayKey today;
    SourceOptions sources;
    bool json = false;
};

// The page's days and where they came from.
struct Page {
    ImsakiyePage page;
    std::vector<DayTimes> days;
    TimesSource source = TimesSource::offline;
};

// Reads the arguments after "imsakiye"; without --date today is the clock's day at the place.
// Throws UsageError.
Request parse(const std::vector<std::string> &args, const Clock &clock);
// Today's times first (they decide which Ramadan is current), then the page's days.
Page load(const Request &request, const DaySource &source);

std::string text(const Request &request, const Page &page);
std::string json(const Request &request, const Page &page);
std::string help();

int run(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &err);

} // namespace ImsakiyeCommand

} // namespace orvel::cli
