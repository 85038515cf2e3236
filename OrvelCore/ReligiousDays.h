#pragma once

#include "CalculationMethod.h"
#include "DayKey.h"
#include "HijriDate.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvel {

// One of the religious days and nights of the year, as Diyanet lists them. A holy night (a kandil,
// the Kadir night) stands on the Gregorian date of its evening, as Diyanet lists it.
struct ReligiousDay {
    enum class Kind { day, night, bayram, arefe };

    DayKey date;
    std::string name;   // "Berat Kandili", "Ramazan Bayramı (1. Gün)"
    Kind kind = Kind::day;
    int bayramDay = 0;  // 1–4 on a Bayram's days, else 0
    HijriDate hijri;    // the date in the method's calendar

    // What the panel's header says on the day: "Bu gece Berat Kandili", "Kurban Bayramı 2. günü",
    // "Ramazan Bayramı Arefesi", "Aşure Günü".
    std::string headline() const;

    bool operator==(const ReligiousDay &) const = default;
};

// The religious days from the method's own Hijri calendar (Diyanet's for Diyanet, Umm al-Qura's
// otherwise), moved with the user's Hijri correction as the dates are.
namespace ReligiousDays {

// The date of the Gregorian day in the method's calendar, moved by `correction` days.
HijriDate hijriDate(const DayKey &day, CalculationMethod method, int64_t correction = 0);

// The day's religious days from its Hijri date and the next day's, as a timetable shows them.
std::vector<ReligiousDay> of(const DayKey &day, const HijriDate &today, const HijriDate &tomorrow);

// The days from `first` to `last`, both included, in date order.
std::vector<ReligiousDay> between(const DayKey &first, const DayKey &last, CalculationMethod method,
                                  int64_t correction = 0);
// The days of a Gregorian year.
std::vector<ReligiousDay> inYear(int64_t year, CalculationMethod method, int64_t correction = 0);
// The day's religious days: mostly none or one; the start of the three months and the Regaib
// night share a date when 1 Recep is a Thursday.
std::vector<ReligiousDay> on(const DayKey &day, CalculationMethod method, int64_t correction = 0);

} // namespace ReligiousDays

} // namespace orvel
