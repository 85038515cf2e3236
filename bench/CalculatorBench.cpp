#include "CalculationMethod.h"
#include "DayKey.h"
#include "DiyanetCalendar.h"
#include "DiyanetRule.h"
#include "TimeZone.h"
#include "Location.h"
#include "MonthKey.h"
#include "PrayerCalculator.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

using namespace orvel;

// Low, middle and high latitudes on both sides of the equator and of Greenwich, in zones with
// and without daylight saving; Tromsø has midnight sun and polar night.
const std::vector<Location> &places()
{
    static const std::vector<Location> list{
        Location::istanbul(),
        {"Mekke", 21.4225, 39.8262, "Asia/Riyadh"},
        {"Oslo", 59.9139, 10.7522, "Europe/Oslo"},
        {"Tromsø", 69.6492, 18.9553, "Europe/Oslo"},
        {"New York", 40.7128, -74.0060, "America/New_York"},
        {"Santiago", -33.4489, -70.6693, "America/Santiago"},
    };
    return list;
}

std::vector<DayKey> yearOfDays(int64_t year)
{
    std::vector<DayKey> days;
    for (int64_t month = 1; month <= 12; ++month) {
        for (const DayKey &day : MonthKey{year, month}.days())
            days.push_back(day);
    }
    return days;
}

// A year of days for every place under every method, each place's zone resolved once as the
// repository does when it fills months.
void calculatorYear(benchmark::State &state)
{
    const std::vector<DayKey> days = yearOfDays(2025);
    std::vector<TimeZone> zones;
    for (const Location &place : places())
        zones.push_back(place.timeZone());

    int64_t computed = 0;
    for (auto _ : state) {
        for (size_t i = 0; i < places().size(); ++i) {
            for (const CalculationMethod::Value method : CalculationMethod::all) {
                for (const DayKey &day : days) {
                    benchmark::DoNotOptimize(PrayerCalculator::times(day, places()[i], method, zones[i]));
                    ++computed;
                }
            }
        }
    }
    state.SetItemsProcessed(computed); // items_per_second: days per second
}
BENCHMARK(calculatorYear)->Unit(benchmark::kMillisecond);

// The same through the entry that resolves the place's zone on every call.
void calculatorYearResolvingZone(benchmark::State &state)
{
    const std::vector<DayKey> days = yearOfDays(2025);
    int64_t computed = 0;
    for (auto _ : state) {
        for (const Location &place : places()) {
            for (const DayKey &day : days) {
                benchmark::DoNotOptimize(PrayerCalculator::times(day, place, CalculationMethod::diyanet));
                ++computed;
            }
        }
    }
    state.SetItemsProcessed(computed); // items_per_second: days per second
}
BENCHMARK(calculatorYearResolvingZone)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();

namespace {

// Diyanet's rule alone, at İstanbul's point: one solar position a day.
void diyanetRuleYear(benchmark::State &state)
{
    const std::vector<DayKey> days = yearOfDays(2025);
    const TimeZone zone = TimeZone::named("Europe/Istanbul");
    int64_t computed = 0;
    for (auto _ : state) {
        for (const DayKey &day : days) {
            benchmark::DoNotOptimize(DiyanetRule::times(day, 41.0148, 28.9687, zone));
            ++computed;
        }
    }
    state.SetItemsProcessed(computed); // items_per_second: days per second
}
BENCHMARK(diyanetRuleYear)->Unit(benchmark::kMillisecond);

// Diyanet's Hijri calendar: the start of a month not yet known.
void diyanetMonthStart(benchmark::State &state)
{
    int64_t year = DiyanetCalendar::firstYear;
    for (auto _ : state) {
        benchmark::DoNotOptimize(DiyanetCalendar::firstDay(year, 9));
        year = year == DiyanetCalendar::lastYear ? DiyanetCalendar::firstYear : year + 1;
    }
}
BENCHMARK(diyanetMonthStart)->Unit(benchmark::kMillisecond)->Iterations(50);

} // namespace
