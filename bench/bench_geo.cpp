// Locator validations and bearing-and-distance computations per second.
#include "core/Station.h"
#include "geo/Bearing.h"
#include "geo/Locator.h"

#include <benchmark/benchmark.h>

static void BM_LocatorValidation(benchmark::State& state)
{
    const QString locators[] = {"JO31HH", "JN48TH", "jo31", "RR99XX", "JO31MM22ax", "JS31", "IO91WM", "FN20"};
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Locator::isValid(locators[i++ & 7]));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_LocatorValidation);

static void BM_BearingAndDistance(benchmark::State& state)
{
    RecordingPrompts prompts;
    Station station(prompts);
    station.settings.setText(6, "JN48TH");
    const QString targets[] = {"JO62QM", "IO91WM", "FN20", "QF56", "KP20LE", "JJ00AA", "PM95", "GG66"};
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ShowBearingAndDistance(station, targets[i++ & 7]));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_BearingAndDistance);

BENCHMARK_MAIN();
