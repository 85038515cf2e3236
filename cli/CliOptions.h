#pragma once

#include "CalculationMethod.h"
#include "Calendars.h"
#include "DayKey.h"
#include "DaySource.h"
#include "Location.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orvel::cli {

// A mistake on the command line. The message is one Turkish line naming the bad value; the
// program prints it on stderr and exits with status 2 before writing anything else.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// One option of a command: "--name VALUE" or "--name=VALUE" when it has a value name, a bare
// flag otherwise. `apply` receives the value (empty for a flag) and throws UsageError when the
// value is bad.
struct Option {
    std::string_view name;
    std::string_view valueName;
    std::string help;
    std::function<void(std::string_view value)> apply;
};

// The options a command accepts, applied in the order given on the command line.
class OptionTable {
public:
    void add(Option option);
    // Receives every argument that is not an option or its value, in order; without it such an
    // argument is a mistake.
    void setOperands(std::function<void(std::string_view operand)> take);
    void parse(const std::vector<std::string> &args) const;
    // One line per option, aligned, for --help.
    std::string help() const;

private:
    const Option *find(std::string_view name) const;

    std::vector<Option> options_;
    std::function<void(std::string_view)> operands_;
};

// Whether the arguments ask for help; help wins over every other option.
bool wantsHelp(const std::vector<std::string> &args);

// A command's --help: its synopsis after "orvel-cli", what it does, then its options.
std::string usage(std::string_view synopsis, std::string_view description, const OptionTable &options);

// A command reads its arguments into `Choices`, a plain struct whose defaults are what an absent
// option means; `table` binds one to the command's options. Throws UsageError.
template <class Choices>
Choices parsed(const std::vector<std::string> &args, OptionTable (*table)(Choices &))
{
    Choices choices;
    table(choices).parse(args);
    return choices;
}

// The --help of a command whose options `table` binds.
template <class Choices>
std::string usage(std::string_view synopsis, std::string_view description, OptionTable (*table)(Choices &))
{
    Choices choices;
    return usage(synopsis, description, table(choices));
}

// Strict readers of option values. `what` names the value in the error ("enlem").
namespace Values {
double number(std::string_view text, std::string_view what);
double number(std::string_view text, std::string_view what, double min, double max);
int64_t integer(std::string_view text, std::string_view what, int64_t min, int64_t max);
// "YYYY-MM-DD" of a day that exists.
// The years whose times and Hijri dates the rules support.
constexpr int64_t firstSupportedYear = 1900;
constexpr int64_t lastSupportedYear = 2100;
DayKey date(std::string_view text);
// "YYYY-MM-DDTHH:mm": a wall-clock minute, read later in the place's zone.
CivilTime minute(std::string_view text);
CalculationMethod method(std::string_view text);
// An http:// or https:// address, without trailing slashes.
std::string serviceURL(std::string_view text);
// A folder that exists or can be made; not a file.
std::filesystem::path directory(std::string_view text);
} // namespace Values

// What every command that shows times asks about: the place, the method and the user's own
// adjustments.
struct TimesQuery {
    Location location;
    CalculationMethod method = CalculationMethod::diyanet;
    TimesOptions times;
};

// The place and the calculation method, shared by every command that shows times:
// --lat, --lon, --tz, --name and --method, over the application's own place and method.
struct PlaceOptions {
    Location stored = Location::istanbul();
    std::optional<double> latitude;
    std::optional<double> longitude;
    std::optional<std::string> timeZoneID;
    std::optional<std::string> name;
    CalculationMethod method = CalculationMethod::diyanet;
    bool methodGiven = false;
    // The user's adjustments and choices for the times, as the application keeps them.
    TimesOptions times;

    void addTo(OptionTable &table);
    // Some place or method option was given: the times are not necessarily the application's.
    bool given() const { return latitude || longitude || timeZoneID || name || methodGiven; }
    // The stored place unless coordinates are given; coordinates without --tz take the machine's
    // zone.
    Location location() const;
    TimesQuery query() const { return {location(), method, times}; }
};

// The days a command covers: from the first for `count` days.
struct DayRange {
    DayKey first;
    int64_t count = 1;

    std::vector<DayKey> days() const;
};

// --date (the first day; else today at the place) and --days (1…400), shared by the commands
// that cover several days.
struct DayRangeOptions {
    static constexpr int64_t maxDays = 400;

    std::optional<DayKey> date;
    int64_t count = 1;

    explicit DayRangeOptions(int64_t defaultCount = 1)
        : count(defaultCount)
    {
    }
    void addTo(OptionTable &table);
    DayRange range(const Location &location, const Clock &clock) const;
};

// Where the times come from, shared by every command that shows times: --service, --cache and
// --offline.
struct SourceOptions {
    std::string serviceURL;
    std::optional<std::filesystem::path> cacheDirectory;
    bool offline = false;

    SourceOptions();
    void addTo(OptionTable &table);
    // The cached web timetable with the calculator behind it, or the calculator alone.
    DaySource daySource(const Clock &clock) const;
    // The query's days from that source.
    DaysAnswer days(const std::vector<DayKey> &keys, const TimesQuery &query, const Clock &clock) const;
    // The one line that says the service failed and the times were computed on the device;
    // none when the times are what was asked for.
    std::optional<std::string> fallbackNotice(const DaysAnswer &answer) const;
};

} // namespace orvel::cli
