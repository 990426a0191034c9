#include <array>
#include <benchmark/benchmark.h>

#include "history/history.h"
#include "tuned_car.h"

// What undo costs with each edit, in units of one curve evaluated by the plain formula.

namespace tessavo::bench {
namespace {

// The edit itself is measured with it; of one channel, and without its curve, it is the smaller part.
void step(benchmark::State& state) {
    TunedCar car;
    car.tuning.setCurveDisplay(nullptr);
    car.tuning.setSelectionMask(selectionBit({6}));
    History history(car.tuning);
    int tenths = 0;
    for ([[maybe_unused]] auto _ : state) {
        tenths = (tenths + 1) % 100;
        car.tuning.setBandGainOrQ(2, BandValue::gain, static_cast<float>(tenths) / 10, true);
        if (!history.commit()) {
            state.SkipWithError("the edit was no step");
            break;
        }
    }
}
BENCHMARK(step)->Name("step");

/// Back and forth over one step, without pages.
void undoAndRedo(benchmark::State& state) {
    TunedCar car;
    History history(car.tuning);
    car.tuning.setVolume(3, true);
    history.commit();
    for ([[maybe_unused]] auto _ : state) {
        if (!history.undo() || !history.redo()) {
            state.SkipWithError("no step");
            break;
        }
    }
}
BENCHMARK(undoAndRedo)->Name("undo and redo");

}  // namespace
}  // namespace tessavo::bench
