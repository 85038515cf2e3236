#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace orvel {

struct DayKey;

// A date of the Islamic calendar.
struct HijriDate {
    int64_t day = 1;
    int64_t month = 1;
    int64_t year = 0;

    static constexpr std::array<std::string_view, 12> monthNames{
        "Muharrem", "Safer", "Rebiülevvel", "Rebiülahir", "Cemaziyelevvel", "Cemaziyelahir",
        "Recep", "Şaban", "Ramazan", "Şevval", "Zilkade", "Zilhicce"};

    // The Umm al-Qura date of the Gregorian day, reckoned at 12:00 UTC so that it is the same
    // whatever the place's zone.
    static HijriDate approximate(const DayKey &day);

    // Day 1–30, month 1–12, year 1–9999: a date the calendars can work with.
    bool isValid() const;
    std::string_view monthName() const;
    std::string formatted() const; // "9 Ramazan 1446"

    bool operator==(const HijriDate &) const = default;
};

void to_json(nlohmann::json &json, const HijriDate &date);
void from_json(const nlohmann::json &json, HijriDate &date);

} // namespace orvel
