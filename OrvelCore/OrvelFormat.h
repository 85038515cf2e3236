#pragma once

#include "Instant.h"

#include <cstdint>
#include <string>
#include <utility>

namespace orvel {

class TimeZone;

// Turkish wording of durations, clock times and dates. Clock texts are 24-hour, "tr_TR", in the
// zone the caller passes (the place's, never the machine's).
namespace OrvelFormat {

std::pair<int64_t, int64_t> hoursMinutes(int64_t minutes);
std::string compact(int64_t minutes);  // "1:15"
std::string spoken(int64_t minutes);   // "1 saat 15 dakika"
std::string time(Instant instant, const TimeZone &zone);           // "05:12"
std::string timeWithDative(Instant instant, const TimeZone &zone); // "12:30'a"
std::string timeWithLocative(Instant instant, const TimeZone &zone); // "12:53'te", "12:30'da"
std::string dativeSuffix(int64_t number);                          // "a", "e", "ya", "ye"
// The locative ending of a number read aloud: "te" for 3 (üç), "da" for 30 (otuz).
std::string locativeSuffix(int64_t number);
std::string longDate(Instant instant, const TimeZone &zone);       // "16 Kasım 2026 Pazartesi"
// Any ICU date pattern with "tr_TR" in the zone ("d MMM EEE", "LLLL yyyy", …).
std::string pattern(Instant instant, const TimeZone &zone, const std::string &pattern);
// Lower-casing with Turkish rules ("İkindi" → "ikindi").
std::string lowercased(const std::string &text);

} // namespace OrvelFormat

} // namespace orvel
