#pragma once

#include <array>
#include <benchmark/benchmark.h>

#include "dsp/filter_kind.h"
#include "params/tuning_state.h"
#include "plot/curve_display.h"

namespace tessavo::bench {

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
            tuning.setCrossover(0, static_cast<std::uint8_t>(CrossoverKind::highPass), 4, 1);
            tuning.setCrossoverFrequency(0, 80, true);
            tuning.setCrossover(1, static_cast<std::uint8_t>(CrossoverKind::lowPass), 4, 1);
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

}  // namespace tessavo::bench
