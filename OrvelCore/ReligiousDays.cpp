#include "ReligiousDays.h"

#include "DiyanetCalendar.h"

namespace orvel {

namespace {

using Kind = ReligiousDay::Kind;

constexpr int64_t muharrem = 1, rebiulevvel = 3, recep = 7, saban = 8, ramazan = 9, sevval = 10, zilhicce = 12;
bool is(const HijriDate &date, int64_t month, int64_t day)
{
    return date.month == month && date.day == day;
}

std::string bayramName(std::string_view bayram, int day)
{
    return std::string(bayram) + " (" + std::to_string(day) + ". Gün)";
}

// The one entry a date outside the start of Recep can have.
template <typename Make>
std::optional<ReligiousDay> single(const Make &make, const HijriDate &today, const HijriDate &tomorrow)
{
    if (is(tomorrow, recep, 27))
        return make("Miraç Kandili", Kind::night);
    if (is(tomorrow, saban, 15))
        return make("Berat Kandili", Kind::night);
    if (is(today, ramazan, 1))
        return make("Ramazan Başlangıcı", Kind::day);
    if (is(tomorrow, ramazan, 27))
        return make("Kadir Gecesi", Kind::night);
    if (is(tomorrow, sevval, 1))
        return make("Ramazan Bayramı Arefesi", Kind::arefe);
    if (today.month == sevval && today.day <= 3)
        return make(bayramName("Ramazan Bayramı", static_cast<int>(today.day)), Kind::bayram,
                    static_cast<int>(today.day));
    if (is(today, zilhicce, 9))
        return make("Kurban Bayramı Arefesi", Kind::arefe);
    if (today.month == zilhicce && today.day >= 10 && today.day <= 13)
        return make(bayramName("Kurban Bayramı", static_cast<int>(today.day - 9)), Kind::bayram,
                    static_cast<int>(today.day - 9));
    if (is(today, muharrem, 1))
        return make("Hicri Yılbaşı", Kind::day);
    if (is(today, muharrem, 10))
        return make("Aşure Günü", Kind::day);
    if (is(tomorrow, rebiulevvel, 12))
        return make("Mevlid Kandili", Kind::night);
    return std::nullopt;
}

// The day's entries from its own date and the next day's: a holy night is on the evening before
// its Hijri date begins, an arefe on the day before a Bayram. Only the start of the three months
// and the Regaib night can fall on one date (when 1 Recep is a Thursday).
std::vector<ReligiousDay> entries(const DayKey &day, const HijriDate &today, const HijriDate &tomorrow,
                                  bool tomorrowIsFriday)
{
    const auto make = [&](std::string name, Kind kind, int bayramDay = 0) {
        return ReligiousDay{day, std::move(name), kind, bayramDay, today};
    };
    std::vector<ReligiousDay> found;
    if (is(today, recep, 1))
        found.push_back(make("Üç Ayların Başlangıcı", Kind::day));
    if (tomorrow.month == recep && tomorrow.day <= 7 && tomorrowIsFriday)
        found.push_back(make("Regaib Kandili", Kind::night));
    if (!found.empty())
        return found;
    if (std::optional<ReligiousDay> one = single(make, today, tomorrow))
        found.push_back(std::move(*one));
    return found;
}

} // namespace

std::string ReligiousDay::headline() const
{
    switch (kind) {
    case Kind::night:
        return "Bu gece " + name;
    case Kind::arefe:
        return name;
    case Kind::bayram:
        return name.substr(0, name.find(" (")) + " " + std::to_string(bayramDay) + ". günü";
    case Kind::day:
        return name;
    }
    return name;
}

namespace ReligiousDays {

HijriDate hijriDate(const DayKey &day, CalculationMethod method, int64_t correction)
{
    const DayKey moved = day.adding(correction);
    return method == CalculationMethod::diyanet ? DiyanetCalendar::date(moved) : HijriDate::approximate(moved);
}

std::vector<ReligiousDay> of(const DayKey &day, const HijriDate &today, const HijriDate &tomorrow)
{
    return entries(day, today, tomorrow, day.adding(1).isFriday());
}

std::vector<ReligiousDay> between(const DayKey &first, const DayKey &last, CalculationMethod method,
                                  int64_t correction)
{
    std::vector<ReligiousDay> days;
    HijriDate today = hijriDate(first, method, correction);
    for (DayKey day = first; day <= last; day = day.adding(1)) {
        const DayKey next = day.adding(1);
        const HijriDate tomorrow = hijriDate(next, method, correction);
        for (ReligiousDay &found : of(day, today, tomorrow))
            days.push_back(std::move(found));
        today = tomorrow;
    }
    return days;
}

std::vector<ReligiousDay> inYear(int64_t year, CalculationMethod method, int64_t correction)
{
    return between({year, 1, 1}, {year, 12, 31}, method, correction);
}

std::vector<ReligiousDay> on(const DayKey &day, CalculationMethod method, int64_t correction)
{
    return between(day, day, method, correction);
}

} // namespace ReligiousDays

} // namespace orvel
