#include "AladhanClient.h"
#include "PrayerRepository.h"
#include "TimeZone.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace {

using namespace orvel;
namespace fs = std::filesystem;

const Location place{"İstanbul", 41.0054, 28.9768, "Europe/Istanbul"};
constexpr MonthKey april{2017, 4};
const std::vector<DayKey> twoDays{{2017, 4, 10}, {2017, 4, 11}};

// April 2017 in Istanbul as the service sent it: 30 days, 83 kB.
const std::string &aprilBody()
{
    static const std::string body = [] {
        std::ifstream file(fs::path(ORVEL_FIXTURES_DIR) / "calendar_2017-04_istanbul_method2_isna.json", std::ios::binary);
        return std::string{std::istreambuf_iterator<char>(file), {}};
    }();
    return body;
}

std::vector<DayTimes> aprilDays()
{
    return AladhanClient::parse(aprilBody(), *TimeZone::known(place.timeZoneID));
}

fs::path temporaryFolder()
{
    std::string pattern = (fs::temp_directory_path() / "orvel-bench-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        throw std::runtime_error("no temporary folder");
    return pattern;
}

std::vector<DayTimes> noNetwork(MonthKey, const Location &, CalculationMethod)
{
    throw std::runtime_error("the month should have come from the cache");
}

void parseMonth(benchmark::State &state)
{
    const TimeZone zone = *TimeZone::known(place.timeZoneID);
    for (auto _ : state)
        benchmark::DoNotOptimize(AladhanClient::parse(aprilBody(), zone));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * aprilBody().size()));
}
BENCHMARK(parseMonth)->Unit(benchmark::kMicrosecond);

// Today and tomorrow from a month already in memory: what every load asks.
void lookupFromMemory(benchmark::State &state)
{
    const fs::path folder = temporaryFolder();
    PrayerRepository repository(folder, [](MonthKey, const Location &, CalculationMethod) { return aprilDays(); });
    repository.days(twoDays, place, CalculationMethod::isna);
    for (auto _ : state) {
        const auto answer = repository.days(twoDays, place, CalculationMethod::isna);
        if (answer.source != TimesSource::online)
            state.SkipWithError("not served from the cache");
        benchmark::DoNotOptimize(answer);
    }
    fs::remove_all(folder);
}
BENCHMARK(lookupFromMemory)->Unit(benchmark::kMicrosecond);

// The first request of a run: a fresh repository reads and decodes the month's file.
void lookupFromDisk(benchmark::State &state)
{
    const fs::path folder = temporaryFolder();
    PrayerRepository(folder, [](MonthKey, const Location &, CalculationMethod) { return aprilDays(); }).prefetch(april, place, CalculationMethod::isna);
    for (auto _ : state) {
        PrayerRepository repository(folder, noNetwork);
        const auto answer = repository.days(twoDays, place, CalculationMethod::isna);
        if (answer.source != TimesSource::online || answer.days.front().day != twoDays.front())
            state.SkipWithError("not served from the cache");
        benchmark::DoNotOptimize(answer);
    }
    fs::remove_all(folder);
}
BENCHMARK(lookupFromDisk)->Unit(benchmark::kMicrosecond);

} // namespace
