#pragma once

#include "CalculationMethod.h"
#include "DayTimes.h"
#include "Instant.h"
#include "Location.h"
#include "Prayer.h"
#include "ReligiousDays.h"

#include <set>
#include <string>
#include <vector>

namespace orvel {

// The times in the user's own calendar application: an iCalendar file (RFC 5545), written with
// libical, that GNOME Calendar, Thunderbird or a phone subscribed to the same file can read.
namespace CalendarFile {

struct Contents {
    Location location;
    CalculationMethod method = CalculationMethod::diyanet;
    std::vector<DayTimes> days;
    std::set<Prayer::Value> prayers;         // the times that become events
    std::vector<ReligiousDay> religiousDays; // all-day events
    Instant stamp;                           // when the file was made (DTSTAMP)
};

// Each chosen time is an event at its moment (in UTC, so that every reader places it the same),
// with the place in its summary and location; each religious day an all-day event. Events are
// transparent, so that they never make the user look busy, and keep their UID from one export to
// the next, so that importing again updates them.
std::string ics(const Contents &contents);

} // namespace CalendarFile

} // namespace orvel
