#include "response/headroom.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "dsp/filter_kind.h"
#include "params/volume_gain_table.h"
#include "response/complex_response.h"
#include "response/frequency_grid.h"

namespace tessavo {

namespace {

constexpr std::size_t firstPoints = 1000;
constexpr double dbPerNeper = 20.0 / std::numbers::ln10;
// What a peak between two points may hide is not looked for below this.
constexpr double smallestGainDb = 1e-9;
constexpr int mostRounds = 16;

// The points of the first look, and the angle of each pole, where a peak may be narrower than they are apart.
std::vector<double> firstLook(const ChannelModel& channel) {
    std::vector<double> hertz =
        FrequencyGrid::logarithmic(lowestHeardHz, highestHeardHz, firstPoints).frequenciesHz();
    for (const Section& section : channel.sections) {
        const double cosine = -section.a1 / (2.0 * std::sqrt(section.a2));
        const double poleHz = std::acos(cosine) / (2.0 * std::numbers::pi) * responseSamplingRateHz;
        if (poleHz > lowestHeardHz && poleHz < highestHeardHz) {
            hertz.push_back(poleHz);
        }
    }
    std::ranges::sort(hertz);
    return hertz;
}

class PeakSearch {
 public:
    explicit PeakSearch(const ChannelModel& channel) : channel_(channel) {}

    void look(const std::vector<double>& hertz, int round) {
        const auto grid = FrequencyGrid::of(hertz);
        if (!grid) {
            return;
        }
        const ComplexResponse response = ComplexResponse::ofChannel(channel_, *grid);
        for (std::size_t i = 0; i < hertz.size(); ++i) {
            take(hertz[i], response.levelDb(i));
        }
        for (std::size_t i = 1; round < mostRounds && i < hertz.size(); ++i) {
            const double rise = response.growthPerHz(i - 1);
            const double width = hertz[i] - hertz[i - 1];
            const bool holdsPeak = rise > 0.0 && response.growthPerHz(i) < 0.0;
            const double reachDb = response.levelDb(i - 1) + rise * width * dbPerNeper;
            if (holdsPeak && reachDb > highest_.highestDb + smallestGainDb) {
                look(between(hertz[i - 1], hertz[i]), round + 1);
            }
        }
    }

    [[nodiscard]] Headroom found() const { return highest_; }

 private:
    static std::vector<double> between(double lowHz, double highHz) {
        std::vector<double> hertz(FrequencyGrid::lanes);
        for (std::size_t i = 0; i < hertz.size(); ++i) {
            const double part = static_cast<double>(i) / static_cast<double>(hertz.size() - 1);
            hertz[i] = lowHz + (highHz - lowHz) * part;
        }
        hertz.back() = highHz;
        return hertz;
    }

    void take(double hertz, double levelDb) {
        if (levelDb > highest_.highestDb) {
            highest_ = {levelDb, hertz, static_cast<double>(highestChannelGainDb) - levelDb};
        }
    }

    const ChannelModel& channel_;
    Headroom highest_{-std::numeric_limits<double>::infinity(), lowestHeardHz,
                      std::numeric_limits<double>::infinity()};
};

}  // namespace

Headroom headroomOf(const ChannelModel& channel) {
    PeakSearch search(channel);
    search.look(firstLook(channel), 0);
    return search.found();
}

}  // namespace tessavo
