#pragma once

#include "CalculationMethod.h"
#include "CliOptions.h"
#include "DaySource.h"
#include "DayTimes.h"
#include "Instant.h"
#include "Kerahat.h"
#include "Location.h"
#include "PrayerSchedule.h"

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace orvel {
class Clock;
}

namespace orvel::cli {

// `orvel-cli status`: the next time and the time left at one moment, as the status item says
// it: two Turkish lines, a JSON object, or one line for waybar's custom module.
namespace StatusCommand {

enum class Format { text, json, waybar };

struct Request {
    Location location;
    CalculationMethod method = CalculationMethod::diyanet;
    SourceOptions sources;
    Instant now;
    Format format = Format::text;
};

// Everything said about the moment, computed once from today and tomorrow.
struct Moment {
    DayTimes today;
    DayTimes tomorrow;
    TimesSource source = TimesSource::offline;
    PrayerStatus status;
    std::optional<KerahatInterval> kerahat; // the interval running now
    bool ramadanToday = false;
    bool entryMinute = false;
    std::string title; // the entry announcement in the entry minute, else name and time left
    std::string label;
};

// Reads the arguments after "status"; without --now the moment is the clock's. Throws UsageError.
Request parse(const std::vector<std::string> &args, const Clock &clock);
// Today and tomorrow at the place, the day of `now` in the place's zone being today.
std::vector<DayKey> days(const Request &request);
// `answer` holds the days of `days(request)`.
Moment moment(const Request &request, const DaysAnswer &answer);

std::string text(const Moment &moment);
std::string json(const Request &request, const Moment &moment);
std::string waybar(const Request &request, const Moment &moment);
std::string help();

int run(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &err);

} // namespace StatusCommand

} // namespace orvel::cli
