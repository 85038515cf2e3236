#include "TimesOptions.h"

#include "JsonValues.h"
#include "ReligiousDays.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>

namespace orvel {

namespace {

constexpr double minuteSeconds = 60;

} // namespace

bool TimesOptions::isValid() const
{
    const auto inRange = [](int64_t minutes) { return std::llabs(minutes) <= maximumAdjustment; };
    return std::ranges::all_of(minuteAdjustments, inRange) && std::llabs(hijriCorrection) <= maximumHijriCorrection;
}

DayTimes TimesOptions::applied(DayTimes day, CalculationMethod method) const
{
    for (size_t i = 0; i < day.times.size(); ++i)
        day.times[i] = day.times[i] + static_cast<double>(minuteAdjustments[i]) * minuteSeconds;
    // The date a day later is the one the calendar gives the next day, month lengths included.
    if (hijriCorrection != 0)
        day.hijri = ReligiousDays::hijriDate(day.day, method, hijriCorrection);
    return day;
}

void to_json(nlohmann::json &json, const TimesOptions &options)
{
    json = {{"highLatitude", options.highLatitude.id()},
            {"adjustments", options.minuteAdjustments},
            {"hijriCorrection", options.hijriCorrection},
            {"diyanetFromService", options.diyanetFromService}};
}

void from_json(const nlohmann::json &json, TimesOptions &options)
{
    TimesOptions read;
    const auto rule = HighLatitudeRule::fromId(json.at("highLatitude").get<std::string>());
    if (!rule)
        throw nlohmann::json::other_error::create(501, "unknown high-latitude rule", &json);
    read.highLatitude = *rule;
    const nlohmann::json &adjustments = json.at("adjustments");
    if (!adjustments.is_array() || adjustments.size() != read.minuteAdjustments.size())
        throw nlohmann::json::other_error::create(501, "six adjustments expected", &json);
    for (size_t i = 0; i < read.minuteAdjustments.size(); ++i)
        read.minuteAdjustments[i] = JsonValues::integer(adjustments[i]);
    read.hijriCorrection = JsonValues::integer(json, "hijriCorrection");
    read.diyanetFromService = json.at("diyanetFromService").get<bool>();
    if (!read.isValid())
        throw nlohmann::json::other_error::create(501, "adjustment out of range", &json);
    options = read;
}

} // namespace orvel
