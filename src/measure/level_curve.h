#pragma once

#include <span>
#include <vector>

namespace tessavo {

/// A level over frequency, and perhaps a phase: a measurement, a target curve, or what a microphone does.
///
/// Between its points level and phase are straight lines over the logarithm of the frequency; beyond its ends they stay
/// what they are at the end.
struct LevelCurve {
    std::vector<double>
        frequenciesHz{};  ///< above 0, each above the one before it; never empty in a curve that was made
    std::vector<double> levelsDb{};  ///< one for each frequency, finite
    std::vector<double>
        phasesDegrees{};  ///< one for each frequency, unwrapped; empty where there is no phase

    [[nodiscard]] bool hasPhase() const { return !phasesDegrees.empty(); }
};

/// \param curve with at least one point
/// \param frequencyHz above 0
[[nodiscard]] double levelAt(const LevelCurve& curve, double frequencyHz);

/// The curve at other frequencies, with its phase where it has one.
/// \param curve with at least one point
/// \param frequenciesHz above 0, each above the one before it
[[nodiscard]] LevelCurve resampled(const LevelCurve& curve, std::span<const double> frequenciesHz);

/// Phases with whole turns added, so that each differs from the one before it by at most half a turn.
[[nodiscard]] std::vector<double> unwrappedDegrees(std::span<const double> degrees);

/// The root of the mean of the squares of some differences in dB from their own mean; 0 for none.
/// \param meanDb takes that mean
[[nodiscard]] double rmsAboutMean(std::span<const double> differencesDb, double& meanDb);

}  // namespace tessavo
