#include "CliRun.h"

#include <gtest/gtest.h>

#include <libical/ical.h>
#include <nlohmann/json.hpp>

#include <map>
#include <memory>
#include <string>

using nlohmann::json;

namespace {

struct Parsed {
    std::map<std::string, long long> moments; // SUMMARY's time name + date → Unix seconds
    std::map<std::string, std::string> allDay; // date → summary
    int events = 0;
};

// Read back by libical's own parser, as a calendar application would.
Parsed parse(const std::string &text)
{
    Parsed parsed;
    const std::unique_ptr<icalcomponent, void (*)(icalcomponent *)> calendar(icalparser_parse_string(text.c_str()),
                                                                            icalcomponent_free);
    EXPECT_TRUE(calendar);
    if (!calendar)
        return parsed;
    EXPECT_EQ(icalcomponent_isa(calendar.get()), ICAL_VCALENDAR_COMPONENT);
    EXPECT_EQ(icalcomponent_count_errors(calendar.get()), 0);
    for (icalcomponent *event = icalcomponent_get_first_component(calendar.get(), ICAL_VEVENT_COMPONENT); event;
         event = icalcomponent_get_next_component(calendar.get(), ICAL_VEVENT_COMPONENT)) {
        ++parsed.events;
        const icaltimetype start = icalcomponent_get_dtstart(event);
        const std::string summary = icalcomponent_get_summary(event);
        if (start.is_date) {
            parsed.allDay[icaltime_as_ical_string(start)] = summary;
            continue;
        }
        const std::string name = summary.substr(0, summary.find(" · "));
        parsed.moments[name + " " + std::to_string(start.year) + "-" + std::to_string(start.month) + "-"
                       + std::to_string(start.day)] = icaltime_as_timet_with_zone(start, icaltimezone_get_utc_timezone());
    }
    return parsed;
}

} // namespace

// Thirty days of the six times at the moments times --json gives, each day's local date, and the
// religious days in the range as all-day events.
TEST(CliIcs, ThirtyDaysAsTimesSaysAndTheHolyDays)
{
    const std::vector<std::string> place{"--offline", "--lat", "41.0082", "--lon", "28.9784", "--tz", "Europe/Istanbul",
                                         "--name", "İstanbul, Fatih", "--date", "2026-03-01"};
    std::vector<std::string> icsArgs{"ics", "--days", "30"};
    icsArgs.insert(icsArgs.end(), place.begin(), place.end());
    const CliRun ics = runCli(icsArgs);
    ASSERT_EQ(ics.status, 0) << ics.err;
    std::vector<std::string> timesArgs{"times", "--days", "30", "--json"};
    timesArgs.insert(timesArgs.end(), place.begin(), place.end());
    const json times = json::parse(runCli(timesArgs).out);

    const Parsed parsed = parse(ics.out);
    ASSERT_EQ(times["days"].size(), 30u);
    const std::array<std::string, 6> names{"İmsak", "Güneş", "Öğle", "İkindi", "Akşam", "Yatsı"};
    size_t checked = 0;
    for (const json &day : times["days"]) {
        for (size_t i = 0; i < names.size(); ++i) {
            // The event's date is the UTC date of its moment; İstanbul is three hours ahead.
            const long long unix = day["unix"][i];
            const time_t seconds = static_cast<time_t>(unix);
            std::tm utc{};
            gmtime_r(&seconds, &utc);
            const std::string key = names[i] + " " + std::to_string(utc.tm_year + 1900) + "-"
                + std::to_string(utc.tm_mon + 1) + "-" + std::to_string(utc.tm_mday);
            ASSERT_TRUE(parsed.moments.contains(key)) << key;
            EXPECT_EQ(parsed.moments.at(key), unix) << key;
            ++checked;
        }
    }
    EXPECT_EQ(checked, 180u);
    // From 1 to 30 March 2026: the Kadir night, the Arefe and the Bayram's three days.
    EXPECT_EQ(parsed.allDay.at("20260316"), "Kadir Gecesi");
    EXPECT_EQ(parsed.allDay.at("20260319"), "Ramazan Bayramı Arefesi");
    EXPECT_EQ(parsed.allDay.at("20260320"), "Ramazan Bayramı (1. Gün)");
    EXPECT_EQ(parsed.events, 180 + static_cast<int>(parsed.allDay.size()));
    EXPECT_EQ(parsed.allDay.size(), 5u);

    icsArgs.insert(icsArgs.end(), {"--prayers", "imsak,aksam"});
    EXPECT_EQ(parse(runCli(icsArgs).out).moments.size(), 60u);
    EXPECT_EQ(runCli({"ics", "--prayers", "sabah"}).status, 2);
}
