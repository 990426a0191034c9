#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <vector>

#include "dsp/filter_kind.h"
#include "params/tuning_state.h"
#include "plot/curve_display.h"
#include "plot/response_curve.h"

// How long a person waits for an edit, in units of one curve evaluated by the plain formula.

namespace tessavo::bench {
namespace {

constexpr auto highPass = static_cast<std::uint8_t>(CrossoverKind::highPass);
constexpr auto lowPass = static_cast<std::uint8_t>(CrossoverKind::lowPass);

class NoBoxes final : public IMessageBox {
 public:
    BoxAnswer show(std::string_view /*text*/, BoxIcon /*icon*/, BoxButtons /*buttons*/) override {
        return BoxAnswer::ok;
    }
};

class CurveSink final : public ICurveDisplay {
 public:
    void setCurve(const ResponseCurve& curve) override {
        benchmark::DoNotOptimize(curve.magnitudeDb.data());
        benchmark::ClobberMemory();
    }
};

/// A tuning as a car has it: every band of every channel shaped, both crossovers on.
class TunedCar {
 public:
    explicit TunedCar(std::uint32_t filterMode = 0) : tuning(boxes) {
        tuning.start();
        tuning.setFilterMode(filterMode);
        for (const std::uint32_t set : {1U, 0U}) {
            tuning.selectSet(set);
            tuning.setSelectionMask(0xFF);
            for (std::size_t band = 0; band < bandCount; ++band) {
                const auto frequencyHz = static_cast<std::uint16_t>(40U << band);
                tuning.setBandFrequency(band, frequencyHz, true);
                tuning.setBandGainOrQ(band, BandValue::gain, band % 2 == 0 ? -4.5F : 3.5F, true);
                tuning.setBandGainOrQ(band, BandValue::q, 1.4F, true);
            }
            tuning.setCrossover(0, highPass, 4, 1);
            tuning.setCrossoverFrequency(0, 80, true);
            tuning.setCrossover(1, lowPass, 4, 1);
            tuning.setCrossoverFrequency(1, 3500, true);
        }
        tuning.setCurveDisplay(&sink);
    }

    [[nodiscard]] std::array<BiquadWords, bandCount + crossoverCount> cascade(RecordChannel channel) const {
        std::array<BiquadWords, bandCount + crossoverCount> words;
        for (std::size_t band = 0; band < bandCount; ++band) {
            words.at(band) = tuning.bandWords(channel, band);
        }
        for (std::size_t crossover = 0; crossover < crossoverCount; ++crossover) {
            words.at(bandCount + crossover) = tuning.crossoverWords(channel, crossover);
        }
        return words;
    }

    NoBoxes boxes;
    CurveSink sink;
    TuningState tuning;
};

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
