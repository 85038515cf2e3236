#pragma once

#include "CalculationMethod.h"
#include "CliOptions.h"
#include "DaySource.h"
#include "DayTimes.h"
#include "Instant.h"
#include "Kerahat.h"
#include "Location.h"
#include "PrayerSchedule.h"
#include "StatusText.h"

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace orvel {
class Clock;
}

namespace orvel::cli {

// `orvel-cli status`: the next time and the time left at one moment, as the status item says
// it: two Turkish lines, a JSON object, one line for waybar's custom module, the title alone for
// polybar and i3blocks, or XML for XFCE's Generic Monitor. With --follow it keeps running and
// writes again each time that changes.
namespace StatusCommand {

enum class Format { text, json, waybar, line, genmon };

struct Request : TimesQuery {
    StatusSettings status; // the application's, so that the title is the tray's
    SourceOptions sources;
    Instant now;
    Format format = Format::text;
    bool follow = false;
    bool placeGiven = false; // a place or method on the command line rather than the application's
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
    StatusLine::State state = StatusLine::State::normal;
};

// Reads the arguments after "status"; without --now the moment is the clock's. Throws UsageError.
Request parse(const std::vector<std::string> &args, const Clock &clock);
// Today and tomorrow at the place, the day of `now` in the place's zone being today.
std::vector<DayKey> days(const Request &request);
// `answer` holds the days of `days(request)`.
Moment moment(const Request &request, const DaysAnswer &answer);

// What a running Orvel says takes the place of the command's own words, so that a status bar
// says what Orvel's icon says (its style, its kerahat settings).
Moment withWords(Moment moment, const StatusLine &words);

std::string text(const Moment &moment);
// Indented, or on one line when following.
std::string json(const Request &request, const Moment &moment);
std::string waybar(const Request &request, const Moment &moment);
std::string line(const Moment &moment);
// <txt>, <tool> and <txtclick>, on one line; the click runs `clickCommand`.
std::string genmon(const Request &request, const Moment &moment, const std::string &clickCommand);
// The moment in the request's format.
std::string output(const Request &request, const Moment &moment);
// The command that brings Orvel's panel forward: the `orvel` beside this program, else the one
// on the search path. A second start of Orvel shows the running one's panel.
std::string panelCommand();
std::string help();

int run(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &err);

} // namespace StatusCommand

} // namespace orvel::cli
