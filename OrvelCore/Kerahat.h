#pragma once

#include "DayTimes.h"
#include "Enumeration.h"
#include "Instant.h"

#include <optional>
#include <vector>

namespace orvel {

struct KerahatKindChoices {
    enum Value { sunrise, istiva, sunset };
    static constexpr Names<3> ids{"sunrise", "istiva", "sunset"};
};

// The three daily periods in which ritual prayer is disliked.
class KerahatKind : public Enumeration<KerahatKindChoices, KerahatKind> {
public:
    using Enumeration::Enumeration;

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
