#pragma once

#include "DayTimes.h"
#include "Enumeration.h"
#include "Instant.h"

#include <optional>
#include <vector>

namespace orvel {

namespace detail::kerahatKind {
enum Value { sunrise, istiva, sunset };
}

// The three daily periods in which ritual prayer is disliked.
class KerahatKind : public Enumeration<KerahatKind, detail::kerahatKind::Value, 3> {
public:
    using Enumeration::Enumeration;
    using enum detail::kerahatKind::Value;

    static constexpr Names ids{"sunrise", "istiva", "sunset"};

    std::string_view title() const;       // "Kerahat", "Kerahat (istiva)"
    std::string_view explanation() const; // "Güneş doğuşu sonrası", …
};

struct KerahatInterval {
    KerahatKind kind = KerahatKind::sunrise;
    Instant start;
    Instant end;

    KerahatKind id() const { return kind; }
    // Half-open: start ≤ instant < end.
    bool contains(Instant instant) const { return start <= instant && instant < end; }

    bool operator==(const KerahatInterval &other) const
    {
        return kind == other.kind && start == other.start && end == other.end;
    }
};

namespace Kerahat {

constexpr int defaultSunMinutes = 45;
constexpr int defaultIstivaMinutes = 10;
constexpr std::array<int, 3> sunMinuteOptions{40, 45, 50};

// Sunrise, istiva and sunset, in that order.
std::vector<KerahatInterval> intervals(const DayTimes &day, int64_t sunMinutes, int64_t istivaMinutes);
std::optional<KerahatInterval> active(Instant at, const std::vector<KerahatInterval> &intervals);
std::optional<KerahatInterval> next(Instant after, const std::vector<KerahatInterval> &intervals);

} // namespace Kerahat

} // namespace orvel
