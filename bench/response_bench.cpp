#include <array>
#include <benchmark/benchmark.h>
#include <vector>

#include "response/complex_response.h"
#include "tuned_car.h"

// How long exact responses take, in units of one curve evaluated by the plain formula: with level, phase and group delay
// of every curve, as a chart of all channels draws them.

namespace tessavo::bench {
namespace {

class Chart {
 public:
    Chart() {
        // Both crossovers are of 4th order: with a delay, no channel has more to compute.
        car_.tuning.setDelay(1.3F, true);
        responses_.reserve(channelCount);
        for (const ChannelImageBlock& block : car_.tuning.image().channels) {
            responses_.push_back(ComplexResponse::ofChannel(playedModel(block), grid_));
            read(responses_.back());
        }
    }

    void computeChannel(std::size_t channel) {
        const ChannelImageBlock& block = car_.tuning.image().channels.at(channel);
        responses_.at(channel) = ComplexResponse::ofChannel(playedModel(block), grid_);
        read(responses_.at(channel));
    }

    void computeSum() {
        std::array<const ComplexResponse*, channelCount> summed{};
        for (std::size_t channel = 0; channel < channelCount; ++channel) {
            summed.at(channel) = &responses_.at(channel);
        }
        read(ComplexResponse::sumOf(summed, grid_));
    }

 private:
    void read(const ComplexResponse& response) {
        for (std::size_t i = 0; i < response.size(); ++i) {
            levels_.at(i) = response.levelDb(i);
            phases_.at(i) = response.unwrappedPhaseDegrees(i);
            delays_.at(i) = response.groupDelayMs(i);
        }
        benchmark::DoNotOptimize(levels_.data());
        benchmark::DoNotOptimize(phases_.data());
        benchmark::DoNotOptimize(delays_.data());
        benchmark::ClobberMemory();
    }

    TunedCar car_;
    FrequencyGrid grid_ = FrequencyGrid::logarithmic(20.0, 20000.0, curvePointCount);
    std::vector<ComplexResponse> responses_;
    std::vector<double> levels_ = std::vector<double>(curvePointCount);
    std::vector<double> phases_ = std::vector<double>(curvePointCount);
    std::vector<double> delays_ = std::vector<double>(curvePointCount);
};

void allChannels(benchmark::State& state) {
    Chart chart;
    for ([[maybe_unused]] auto _ : state) {
        for (std::size_t channel = 0; channel < channelCount; ++channel) {
            chart.computeChannel(channel);
        }
        chart.computeSum();
    }
}
BENCHMARK(allChannels)->Name("exact responses of eight channels");

void editedChannel(benchmark::State& state) {
    Chart chart;
    std::size_t channel = 0;
    for ([[maybe_unused]] auto _ : state) {
        channel = (channel + 1) % channelCount;
        chart.computeChannel(channel);
        chart.computeSum();
    }
}
BENCHMARK(editedChannel)->Name("exact response of an edited channel");

}  // namespace
}  // namespace tessavo::bench
