#pragma once

#include "Instant.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <unicode/basictz.h>

namespace orvel {

// An IANA time zone. The only place that creates ICU zones; everything else passes these.
class TimeZone {
public:
    // The zone named by `id`, or the machine's current zone when `id` names no zone.
    static TimeZone named(std::string_view id);
    // The zone named by `id`, or none when it names no zone.
    static std::optional<TimeZone> known(std::string_view id);
    static TimeZone current();
    static TimeZone utc();
    // Re-reads the machine's zone (after the system changed it) so that current() follows.
    static void redetectCurrent();

    const std::string &id() const { return id_; }
    // Total offset from UTC (standard plus daylight saving) in force at the instant, in seconds.
    int offsetSeconds(Instant instant) const;
    // Offset in force at a local wall-clock time (seconds since 1970 as if the zone were UTC).
    // A skipped wall time takes the offset before the change, a repeated one the earlier offset,
    // which makes the result the first instant at or after that wall time.
    int offsetSecondsAtLocal(double localUnixSeconds) const;

    const icu::TimeZone &icuZone() const { return *zone_; }

    bool operator==(const TimeZone &other) const { return id_ == other.id_; }

private:
    TimeZone(std::shared_ptr<const icu::BasicTimeZone> zone, std::string id);

    std::shared_ptr<const icu::BasicTimeZone> zone_;
    std::string id_;
};

} // namespace orvel
