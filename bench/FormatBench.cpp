#include "Calendars.h"
#include "OrvelFormat.h"
#include "TimeZone.h"

#include <benchmark/benchmark.h>

namespace {

using namespace orvel;

const TimeZone &istanbul()
{
    static const TimeZone zone = TimeZone::named("Europe/Istanbul");
    return zone;
}

Instant noon()
{
    return Calendars::startOfDay(2026, 11, 16, istanbul()) + 12 * 3600;
}

void formatTime(benchmark::State &state)
{
    Instant instant = noon();
    for (auto _ : state) {
        benchmark::DoNotOptimize(OrvelFormat::time(instant, istanbul()));
        instant = instant + 60;
    }
}
BENCHMARK(formatTime)->Unit(benchmark::kMicrosecond);

void formatTimeWithDative(benchmark::State &state)
{
    Instant instant = noon();
    for (auto _ : state) {
        benchmark::DoNotOptimize(OrvelFormat::timeWithDative(instant, istanbul()));
        instant = instant + 60;
    }
}
BENCHMARK(formatTimeWithDative)->Unit(benchmark::kMicrosecond);

void formatLongDate(benchmark::State &state)
{
    Instant instant = noon();
    for (auto _ : state) {
        benchmark::DoNotOptimize(OrvelFormat::longDate(instant, istanbul()));
        instant = instant + 86400;
    }
}
BENCHMARK(formatLongDate)->Unit(benchmark::kMicrosecond);

// What a month timetable asks for: six clock times and a short date for each of 31 days.
void formatMonthView(benchmark::State &state)
{
    for (auto _ : state) {
        Instant day = noon();
        for (int d = 0; d < 31; ++d, day = day + 86400) {
            benchmark::DoNotOptimize(OrvelFormat::pattern(day, istanbul(), "d MMM EEE"));
            for (int p = 0; p < 6; ++p)
                benchmark::DoNotOptimize(OrvelFormat::time(day + p * 7200, istanbul()));
        }
    }
}
BENCHMARK(formatMonthView)->Unit(benchmark::kMillisecond);

} // namespace
