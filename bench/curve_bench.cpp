#include <benchmark/benchmark.h>

#include "plot/response_curve.h"
#include "tuned_car.h"

// How long a person waits for an edit, in units of one curve evaluated by the plain formula.

namespace tessavo::bench {
namespace {

template <ResponseCurve (*compute)(std::span<const BiquadWords>)>
void outputCurve(benchmark::State& state) {
    const TunedCar car;
    const auto words = car.cascade({0});
    for ([[maybe_unused]] auto _ : state) {
        auto cascade = words;
        benchmark::DoNotOptimize(cascade);
        benchmark::DoNotOptimize(compute(cascade));
    }
}
BENCHMARK(outputCurve<plainResponse>)->Name("plain curve");
BENCHMARK(outputCurve<computeResponse>)->Name("fast curve");

/// Edits all eight channels, with a value that changes each time.
void editBand(benchmark::State& state) {
    TunedCar car(static_cast<std::uint32_t>(state.range(0)));
    std::uint16_t step = 0;
    for ([[maybe_unused]] auto _ : state) {
        step = static_cast<std::uint16_t>((step + 1) % 1000);
        car.tuning.setBandFrequency(step % bandCount, static_cast<std::uint16_t>(50 + 19 * step), false);
    }
}
BENCHMARK(editBand)->Name("band edit BZT")->Arg(0);
BENCHMARK(editBand)->Name("band edit MZT")->Arg(1);
BENCHMARK(editBand)->Name("band edit BZT/MZT")->Arg(2);

void editCrossover(benchmark::State& state) {
    TunedCar car(static_cast<std::uint32_t>(state.range(0)));
    std::uint16_t step = 0;
    for ([[maybe_unused]] auto _ : state) {
        step = static_cast<std::uint16_t>((step + 1) % 1000);
        car.tuning.setCrossoverFrequency(step % crossoverCount, static_cast<std::uint16_t>(50 + 19 * step),
                                         false);
    }
}
BENCHMARK(editCrossover)->Name("crossover edit BZT")->Arg(0);
BENCHMARK(editCrossover)->Name("crossover edit MZT")->Arg(1);
BENCHMARK(editCrossover)->Name("crossover edit BZT/MZT")->Arg(2);

/// Another set becomes current: 80 bands, 16 crossover sections, 13 input sections, and the image.
void deriveSet(benchmark::State& state) {
    TunedCar car(static_cast<std::uint32_t>(state.range(0)));
    car.tuning.setCurveDisplay(nullptr);
    std::uint32_t set = 0;
    for ([[maybe_unused]] auto _ : state) {
        set = 1 - set;
        car.tuning.selectSet(set);
        benchmark::DoNotOptimize(car.tuning.image().channels.data());
    }
}
BENCHMARK(deriveSet)->Name("whole set BZT")->Arg(0);
BENCHMARK(deriveSet)->Name("whole set MZT")->Arg(1);
BENCHMARK(deriveSet)->Name("whole set BZT/MZT")->Arg(2);

}  // namespace
}  // namespace tessavo::bench
