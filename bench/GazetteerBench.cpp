#include "Gazetteer.h"

#include <benchmark/benchmark.h>

namespace {

using namespace orvel;

// Naming a position without the web: a pass over every place of the gazetteer.
void gazetteerNearest(benchmark::State &state)
{
    Gazetteer::speakTurkish();
    for (auto _ : state)
        benchmark::DoNotOptimize(Gazetteer::nearest(41.0255, 29.0153, 300));
}
BENCHMARK(gazetteerNearest)->Unit(benchmark::kMillisecond);

// The offline answer to a typed place name.
void gazetteerSearch(benchmark::State &state)
{
    Gazetteer::speakTurkish();
    for (auto _ : state)
        benchmark::DoNotOptimize(Gazetteer::search("Ankara"));
}
BENCHMARK(gazetteerSearch)->Unit(benchmark::kMillisecond);

} // namespace
