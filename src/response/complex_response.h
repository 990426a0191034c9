#pragma once

#include <complex>
#include <cstddef>
#include <span>
#include <vector>

#include "response/channel_model.h"
#include "response/frequency_grid.h"

namespace tessavo {

/// A complex response at the frequencies of a grid, in their order, unrounded.
///
/// Where nothing passes, as a high-pass at 0 Hz, the response is 0: its level is minus infinity, and phase and group
/// delay are not defined. Where a section has no response, because a pole lies on that very frequency, nothing is
/// defined. What is not defined is NaN.
class ComplexResponse {
 public:
    [[nodiscard]] std::size_t size() const { return real_.size(); }
    [[nodiscard]] std::complex<double> at(std::size_t point) const {
        return {real_[point], imaginary_[point]};
    }
    /// In dB.
    [[nodiscard]] double levelDb(std::size_t point) const;
    /// Above -180 up to 180 degrees.
    [[nodiscard]] double phaseDegrees(std::size_t point) const;
    /// The same but for whole turns. That of a channel has no jump from 0 to 24750 Hz, however far apart the points
    /// are: it begins with 180 degrees for an inverted polarity and 180 for every section of a high-pass, and each sample
    /// of delay takes off 360 degrees from 0 to 49500 Hz. That of a sum begins at the first point with the phase there and
    /// is followed from point to point by the group delay, over the undefined ones.
    [[nodiscard]] double unwrappedPhaseDegrees(std::size_t point) const;
    /// In milliseconds: minus the derivative of the phase, by its formula.
    [[nodiscard]] double groupDelayMs(std::size_t point) const;
    /// The derivative of ln |H| by the frequency, per Hz, by its formula.
    [[nodiscard]] double growthPerHz(std::size_t point) const;

    /// The response of one channel.
    [[nodiscard]] static ComplexResponse ofChannel(const ChannelModel& channel, const FrequencyGrid& grid);

    /// The complex sum of responses on one grid, of none it is 0 everywhere. Rounding errors are carried along and
    /// added at the end: channels that take each other away leave exactly 0.
    [[nodiscard]] static ComplexResponse sumOf(std::span<const ComplexResponse* const> responses,
                                               const FrequencyGrid& grid);

 private:
    explicit ComplexResponse(std::size_t size);
    void followPhase(const FrequencyGrid& grid);

    std::vector<double> real_;
    std::vector<double> imaginary_;
    std::vector<double> growth_;             // d ln |H| / dw, w in radians a sample
    std::vector<double> groupDelaySamples_;  // - d arg H / dw
    std::vector<double> turns_;              // the unwrapped phase, of a channel to less than half a turn
};

/// By how much the rounding of the coefficients raises the level at each point, in dB; NaN where one of them has none.
/// \param played, ideal on the same grid
[[nodiscard]] std::vector<double> roundingErrorDb(const ComplexResponse& played,
                                                  const ComplexResponse& ideal);

}  // namespace tessavo
