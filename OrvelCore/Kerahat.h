#pragma once

#include "DayTimes.h"
#include "Instant.h"

#include <array>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string_view>
#include <vector>

namespace orvel {

// The three daily periods in which ritual prayer is disliked.
class KerahatKind {
public:
    enum Value { sunrise, istiva, sunset };

    static constexpr std::array<Value, 3> allCases{sunrise, istiva, sunset};

    constexpr KerahatKind(Value value)
        : value_(value)
    {
    }
    constexpr operator Value() const { return value_; }

    static std::optional<KerahatKind> fromRawValue(std::string_view raw);
    std::string_view rawValue() const;
    std::string_view id() const { return rawValue(); }
    std::string_view title() const;       // "Kerahat", "Kerahat (istiva)"
    std::string_view explanation() const; // "Güneş doğuşu sonrası", …

private:
    Value value_;
};

void to_json(nlohmann::json &json, const KerahatKind &kind);
void from_json(const nlohmann::json &json, KerahatKind &kind);

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
