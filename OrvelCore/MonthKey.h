#pragma once

#include <compare>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace orvel {

struct DayKey;

// A Gregorian calendar month.
struct MonthKey {
    int64_t year = 0;
    int64_t month = 1;

    int dayCount() const;
    std::vector<DayKey> days() const;
    std::string description() const; // "2025-03"

    auto operator<=>(const MonthKey &) const = default;
};

void to_json(nlohmann::json &json, const MonthKey &month);
void from_json(const nlohmann::json &json, MonthKey &month);

} // namespace orvel

template<>
struct std::hash<orvel::MonthKey> {
    size_t operator()(const orvel::MonthKey &key) const noexcept
    {
        return std::hash<int64_t>()(key.year * 16 + key.month);
    }
};
