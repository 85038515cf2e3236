#include "DayTimes.h"

#include "Calendars.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace orvel {

HijriDate DayTimes::hijriOrApproximate() const
{
    return hijri ? *hijri : HijriDate::approximate(day);
}

void to_json(nlohmann::json &json, const DayTimes &day)
{
    auto times = nlohmann::json::array();
    for (const Instant instant : day.times)
        times.push_back(instant.seconds);
    json = {{"day", day.day}, {"times", std::move(times)}};
    if (day.hijri)
        json["hijri"] = *day.hijri;
    auto estimated = nlohmann::json::array();
    for (const Prayer::Value prayer : Prayer::all) {
        if (day.estimated[prayer])
            estimated.push_back(Prayer(prayer));
    }
    if (!estimated.empty())
        json["estimated"] = std::move(estimated);
}

void from_json(const nlohmann::json &json, DayTimes &day)
{
    day.day = json.at("day").get<DayKey>();
    const auto &times = json.at("times");
    if (!times.is_array() || times.size() != day.times.size())
        throw nlohmann::json::other_error::create(501, "a day needs exactly six times", &json);
    // Within a day and a half of the date: anything else is damage, and is refused before any
    // arithmetic could overflow on it.
    constexpr double daySeconds = 86400;
    constexpr double reach = 1.5 * daySeconds;
    const double start = static_cast<double>(Calendars::daysFromCivil(day.day.year, day.day.month, day.day.day)) * daySeconds
        - Instant::unixEpochOffset;
    for (size_t i = 0; i < day.times.size(); ++i) {
        const double seconds = times[i].get<double>();
        if (!std::isfinite(seconds) || seconds < start - reach || seconds > start + reach)
            throw nlohmann::json::other_error::create(501, "a time far from its day", &json);
        day.times[i] = Instant{seconds};
    }
    const auto hijri = json.find("hijri");
    if (hijri == json.end() || hijri->is_null())
        day.hijri.reset();
    else
        day.hijri = hijri->get<HijriDate>();
    day.estimated = {};
    if (const auto estimated = json.find("estimated"); estimated != json.end()) {
        for (const auto &raw : *estimated) {
            const auto prayer = Prayer::fromId(raw.get<std::string>());
            if (!prayer)
                throw nlohmann::json::other_error::create(501, "unknown prayer", &json);
            day.estimated[*prayer] = true;
        }
    }
}

} // namespace orvel
