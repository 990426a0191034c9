#include "measure/smoothing.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>

#include "base/number_text.h"

namespace tessavo {

namespace {

constexpr double nepersPerDb = std::numbers::ln10 / 10.0;  // of power

/// Mean of the power of a straight line in dB, whose ends are given.
double meanPower(double firstDb, double lastDb) {
    const double fall = std::fabs(lastDb - firstDb) * nepersPerDb;
    const double highest = std::exp(std::max(firstDb, lastDb) * nepersPerDb);
    return fall > 0.0 ? highest * (-std::expm1(-fall) / fall) : highest;
}

/// Integrals of the power of a curve over windows, each of which begins and ends no earlier than the one before.
///
/// Only powers above 0 are added and none is ever taken off, so that a quiet part keeps all of its digits beside one that is
/// louder by a hundred dB.
class SlidingPower {
 public:
    /// \param levelsDb about the highest
    SlidingPower(std::vector<double> octaves, std::vector<double> levelsDb)
        : octaves_(std::move(octaves)), levelsDb_(std::move(levelsDb)), toMiddle_(octaves_.size(), 0.0) {}

    /// \param from at the first point or above
    /// \param to above `from`, at the last point or below
    double over(double from, double to) {
        left_ = segmentOf(from, left_);
        right_ = segmentOf(to, right_);
        if (left_ == right_) {
            return part(left_, from, to);
        }
        advance(left_ + 1, right_);
        return part(left_, from, octaves_[left_ + 1]) + toMiddle_[left_ + 1] + fromMiddle_ +
               part(right_, octaves_[right_], to);
    }

 private:
    // The segment that a place lies in, looking from a segment on.
    [[nodiscard]] std::size_t segmentOf(double octave, std::size_t segment) const {
        while (segment + 2 < octaves_.size() && octaves_[segment + 1] <= octave) {
            ++segment;
        }
        return segment;
    }

    [[nodiscard]] double levelIn(std::size_t segment, double octave) const {
        const double part = (octave - octaves_[segment]) / (octaves_[segment + 1] - octaves_[segment]);
        return std::lerp(levelsDb_[segment], levelsDb_[segment + 1], part);
    }

    [[nodiscard]] double part(std::size_t segment, double from, double to) const {
        return (to - from) * meanPower(levelIn(segment, from), levelIn(segment, to));
    }

    [[nodiscard]] double whole(std::size_t segment) const {
        return (octaves_[segment + 1] - octaves_[segment]) *
               meanPower(levelsDb_[segment], levelsDb_[segment + 1]);
    }

    // Makes toMiddle_[first] + fromMiddle_ the sum of the segments from `first` to before `last`. Every segment comes into
    // each of the two at most once, whatever the windows are.
    void advance(std::size_t first, std::size_t last) {
        if (first > middle_) {
            middle_ = last;
            end_ = last;
            fromMiddle_ = 0.0;
            toMiddle_[middle_] = 0.0;
            for (std::size_t segment = middle_; segment > first; --segment) {
                toMiddle_[segment - 1] = toMiddle_[segment] + whole(segment - 1);
            }
        }
        for (; end_ < last; ++end_) {
            fromMiddle_ += whole(end_);
        }
    }

    std::vector<double> octaves_;
    std::vector<double> levelsDb_;
    std::vector<double> toMiddle_;  // sums of segments from each one up to the middle
    double fromMiddle_ = 0.0;       // sum of the segments from the middle to the end
    std::size_t left_ = 0;
    std::size_t right_ = 0;
    std::size_t middle_ = 0;
    std::size_t end_ = 0;
};

/// A curve that goes on for so many octaves as it ends.
SlidingPower powerOf(const LevelCurve& curve, double beyond, double highestDb) {
    std::vector<double> octaves(curve.frequenciesHz.size() + 2);
    std::vector<double> levelsDb(octaves.size());
    for (std::size_t i = 0; i < curve.frequenciesHz.size(); ++i) {
        octaves[i + 1] = std::log2(curve.frequenciesHz[i]);
        levelsDb[i + 1] = curve.levelsDb[i] - highestDb;
    }
    octaves.front() = octaves[1] - beyond;
    octaves.back() = octaves[octaves.size() - 2] + beyond;
    levelsDb.front() = levelsDb[1];
    levelsDb.back() = levelsDb[levelsDb.size() - 2];
    // Two frequencies may be so near that their logarithms are one; what lies between them has no width then.
    return {std::move(octaves), std::move(levelsDb)};
}

}  // namespace

std::optional<Smoothing> smoothingOf(std::string_view text) {
    if (text == "none") {
        return Smoothing{};
    }
    if (!text.starts_with("1/")) {
        return std::nullopt;
    }
    const auto parts = wholeNumber<int>(text.substr(2));
    if (!parts || *parts < 1 || *parts > 48) {
        return std::nullopt;
    }
    return Smoothing{*parts};
}

std::string textOf(Smoothing smoothing) {
    if (smoothing.partsPerOctave == 0) {
        return "none";
    }
    std::string text = "1/";
    return text.append(std::to_string(smoothing.partsPerOctave));
}

std::vector<double> evenFrequencies(double lowestHz, double highestHz) {
    const double octaves = std::log2(highestHz) - std::log2(lowestHz);
    const auto steps = static_cast<std::size_t>(std::max(1.0, std::ceil(octaves * pointsPerOctave)));
    std::vector<double> frequenciesHz(steps + 1);
    for (std::size_t i = 0; i < steps; ++i) {
        // Two roots, because the ratio of two numbers may be larger than any number.
        const double root = std::exp2(octaves * (static_cast<double>(i) / static_cast<double>(steps)) / 2.0);
        frequenciesHz[i] = lowestHz * root * root;
    }
    frequenciesHz.back() = highestHz;
    return frequenciesHz;
}

LevelCurve smoothed(const LevelCurve& curve, Smoothing smoothing) {
    if (smoothing.partsPerOctave == 0 || curve.frequenciesHz.size() < 2) {
        return curve;
    }
    LevelCurve result =
        resampled(curve, evenFrequencies(curve.frequenciesHz.front(), curve.frequenciesHz.back()));
    const double width = 1.0 / smoothing.partsPerOctave;
    const double highestDb = *std::ranges::max_element(curve.levelsDb);
    SlidingPower power = powerOf(curve, width, highestDb);
    for (std::size_t i = 0; i < result.frequenciesHz.size(); ++i) {
        const double centre = std::log2(result.frequenciesHz[i]);
        const double mean = power.over(centre - width / 2.0, centre + width / 2.0) / width;
        // What is thousands of dB below the highest level is no number any more, and stays as it is.
        if (mean > 0.0) {
            result.levelsDb[i] = highestDb + 10.0 * std::log10(mean);
        }
    }
    return result;
}

std::optional<LevelCurve> powerMean(std::span<const LevelCurve> curves) {
    if (curves.empty()) {
        return std::nullopt;
    }
    if (curves.size() == 1) {
        return curves.front();
    }
    double lowestHz = curves.front().frequenciesHz.front();
    double highestHz = curves.front().frequenciesHz.back();
    for (const LevelCurve& curve : curves) {
        lowestHz = std::max(lowestHz, curve.frequenciesHz.front());
        highestHz = std::min(highestHz, curve.frequenciesHz.back());
    }
    if (!(lowestHz < highestHz)) {
        return std::nullopt;
    }
    const std::vector<double> frequenciesHz = evenFrequencies(lowestHz, highestHz);
    std::vector<LevelCurve> all;
    all.reserve(curves.size());
    for (const LevelCurve& curve : curves) {
        all.push_back(resampled(curve, frequenciesHz));
    }
    LevelCurve mean{frequenciesHz, std::vector<double>(frequenciesHz.size()), {}};
    for (std::size_t i = 0; i < frequenciesHz.size(); ++i) {
        double highestDb = all.front().levelsDb[i];
        for (const LevelCurve& curve : all) {
            highestDb = std::max(highestDb, curve.levelsDb[i]);
        }
        double power = 0.0;
        for (const LevelCurve& curve : all) {
            power += std::pow(10.0, (curve.levelsDb[i] - highestDb) / 10.0);
        }
        mean.levelsDb[i] = highestDb + 10.0 * std::log10(power / static_cast<double>(all.size()));
    }
    return mean;
}

LevelCurve calibrated(const LevelCurve& measurement, const LevelCurve& microphone) {
    LevelCurve result = measurement;
    const LevelCurve added = resampled(microphone, measurement.frequenciesHz);
    for (std::size_t i = 0; i < result.frequenciesHz.size(); ++i) {
        result.levelsDb[i] -= added.levelsDb[i];
        if (result.hasPhase() && added.hasPhase()) {
            result.phasesDegrees[i] -= added.phasesDegrees[i];
        }
    }
    return result;
}

}  // namespace tessavo
