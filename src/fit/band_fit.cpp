#include "fit/band_fit.h"

#include <algorithm>
#include <cmath>

#include "dsp/filter_kind.h"
#include "fit/band_search.h"
#include "fit/boost_limit.h"
#include "fit/fighting_bands.h"
#include "fit/narrow_nulls.h"
#include "fit/step_search.h"
#include "response/complex_response.h"

namespace tessavo {

namespace {

constexpr std::size_t fewestPoints = 150;
constexpr std::size_t mostPoints = 180;
constexpr double pointsAnOctave = 18.0;
constexpr std::size_t guardPoints = 72;
constexpr double guardBetween = 1.05;
constexpr double lowestFittedQ = 0.2;
// Bands may stand a little outside the range, from where their flanks reach into it.
constexpr double outsideRange = 1.5;

// What the target does with the channel but for its bands, in dB.
std::vector<double> levelsWithoutBands(const ChannelImageBlock& channel,
                                       std::span<const double> frequenciesHz) {
    ChannelImageBlock plain = channel;
    for (EqBandParams& band : plain.bands) {
        band.off = 1;
    }
    const auto grid = FrequencyGrid::of(frequenciesHz);
    const ComplexResponse response = ComplexResponse::ofChannel(playedModel(plain), *grid);
    std::vector<double> levels;
    levels.reserve(frequenciesHz.size());
    for (std::size_t i = 0; i < response.size(); ++i) {
        const double level = response.levelDb(i);
        levels.push_back(std::isfinite(level) ? level : decibelsOfPower(0.0));
    }
    return levels;
}

/// The mean of a curve over the part of an octave around a point that belongs to it, so that detail between the points counts.
double meanAround(const LevelCurve& curve, double hz, double ratio) {
    constexpr int parts = 4;
    double sum = 0;
    for (int part = 0; part < parts; ++part) {
        sum += levelAt(curve, hz * std::pow(ratio, (part + 0.5) / parts - 0.5));
    }
    return sum / parts;
}

FitProblem problemOf(const ChannelImageBlock& channel, const LevelCurve& fitted, const LevelCurve& target,
                     const FitLimits& limits, const IcoefficientGenerator& method) {
    FitProblem problem;
    problem.method = &method;
    const double octaves = std::log2(limits.toHz / limits.fromHz);
    problem.rangeCount =
        std::clamp(static_cast<std::size_t>(octaves * pointsAnOctave), fewestPoints, mostPoints);
    problem.points = FitPoints::even(limits.fromHz, limits.toHz, problem.rangeCount);
    const double ratio = std::exp2(octaves / static_cast<double>(problem.rangeCount - 1));
    const std::vector<double> others = levelsWithoutBands(channel, problem.points.frequenciesHz);
    for (std::size_t i = 0; i < problem.rangeCount; ++i) {
        const double hz = problem.points.frequenciesHz[i];
        problem.wantedDb.push_back(levelAt(target, hz) - meanAround(fitted, hz, ratio) - others[i]);
    }
    // Few points watch the limit of the boosts where nothing else counts, more of them where bands may stand.
    for (const double hz : FitPoints::even(lowestHeardHz, highestHeardHz, guardPoints).frequenciesHz) {
        if (hz < limits.fromHz || hz > limits.toHz) {
            problem.points.watch(hz);
            const bool isNear = hz > limits.fromHz / outsideRange && hz < limits.toHz * outsideRange;
            if (isNear) {
                problem.points.watch(hz * guardBetween);
            }
        }
    }
    problem.mostBoostDb = limits.mostBoostDb;
    constexpr double deviceGainDb = 18.0;
    constexpr double deviceQ = 20.0;
    const double highestQ = std::min(limits.highestQ, deviceQ);
    problem.room = {
        .lowest = {std::log(std::max(lowestHeardHz, limits.fromHz / outsideRange)),
                   -std::min(limits.mostCutDb, deviceGainDb), std::log(std::min(lowestFittedQ, highestQ))},
        .highest = {std::log(std::min(highestHeardHz, limits.toHz * outsideRange)),
                    std::min(limits.mostBoostDb, deviceGainDb), std::log(highestQ)}};
    return problem;
}

struct Judged {
    double rmsDb = 0;
    double levelDb = 0;
};

/// How far predicted and target are from each other, at points that are closer than those of the search.
class Judge {
 public:
    Judge(const ChannelImageBlock& channel, const LevelCurve& measured, const LevelCurve& target,
          const FitLimits& limits, const IcoefficientGenerator& method)
        : method_(method) {
        std::vector<double> frequencies = evenFrequencies(limits.fromHz, limits.toHz);
        points_ = FitPoints::even(limits.fromHz, limits.toHz, std::max(frequencies.size(), fewestPoints));
        differencesDb_ = levelsWithoutBands(channel, points_.frequenciesHz);
        for (std::size_t i = 0; i < points_.size(); ++i) {
            const double hz = points_.frequenciesHz[i];
            differencesDb_[i] += levelAt(measured, hz) - levelAt(target, hz);
        }
    }

    [[nodiscard]] Judged judge(std::span<const EqBandParams> bands) const {
        std::vector<double> differences = levelsOf(playedRatios(method_, bands), points_);
        for (std::size_t i = 0; i < differences.size(); ++i) {
            differences[i] += differencesDb_[i];
        }
        Judged judged;
        judged.rmsDb = rmsAboutMean(differences, judged.levelDb);
        return judged;
    }

    [[nodiscard]] std::size_t size() const { return points_.size(); }

 private:
    const IcoefficientGenerator& method_;
    FitPoints points_;
    std::vector<double> differencesDb_;
};

/// The best of what a search finds, on the steps of the target and inside all limits.
SteppedBands bestStepped(const FitProblem& problem, std::size_t count, double mostBoostDb) {
    SteppedBands best;
    bool first = true;
    for (std::vector<BandShape>& shapes : BandSearch(problem).run(count)) {
        FitProblem watched = problem;
        holdBoost(watched, shapes, mostBoostDb);
        SteppedBands stepped = putOnSteps(watched, shapes);
        if (fightingBands(stepped.bands)) {
            stepped = withoutFights(watched, shapes, std::move(stepped));
        }
        holdBoost(std::move(watched), stepped, mostBoostDb);
        if (first || stepped.cost < best.cost) {
            best = std::move(stepped);
            first = false;
        }
    }
    return best;
}

}  // namespace

std::optional<FitRange> defaultFitRange(const ChannelImageBlock& channel, const LevelCurve& measurement) {
    FitRange range{lowestHeardHz, highestHeardHz};
    for (const CrossoverParams& crossover : channel.crossovers) {
        if (crossover.enabled == 0) {
            continue;
        }
        const double corner = crossover.frequencyHz;
        if (crossover.kind == static_cast<std::uint8_t>(CrossoverKind::highPass)) {
            range.fromHz = std::max(range.fromHz, corner);
        } else {
            range.toHz = std::min(range.toHz, corner);
        }
    }
    range.fromHz = std::max(range.fromHz, measurement.frequenciesHz.front());
    range.toHz = std::min(range.toHz, measurement.frequenciesHz.back());
    return range.fromHz < range.toHz ? std::optional(range) : std::nullopt;
}

BandFit fitBands(const ChannelImageBlock& channel, const LevelCurve& measurement, const LevelCurve& target,
                 const FitLimits& limits, const IcoefficientGenerator& method) {
    const Judge judge(channel, smoothed(measurement, limits.smoothing), target, limits, method);
    const Judged before = judge.judge({});
    BandFit fit{.bands = channel.bands,
                .rmsBeforeDb = before.rmsDb,
                .rmsAfterDb = before.rmsDb,
                .levelDb = before.levelDb,
                .peakBoostDb = 0,
                .points = judge.size()};
    for (EqBandParams& band : fit.bands) {
        band.off = 1;
    }
    const auto usable = static_cast<std::size_t>(std::ranges::count(limits.bands, true));
    if (usable == 0) {
        return fit;
    }
    const LevelCurve fitted = smoothed(bridged(measurement, narrowNulls(measurement)), limits.smoothing);
    const FitProblem problem = problemOf(channel, fitted, target, limits, method);
    SteppedBands stepped = bestStepped(problem, usable, limits.mostBoostDb);
    std::erase_if(stepped.bands, [](const EqBandParams& band) { return band.gainDb == 0.0F; });
    std::ranges::stable_sort(stepped.bands, {}, &EqBandParams::frequencyHz);
    const Judged after = judge.judge(stepped.bands);
    if (!(after.rmsDb < before.rmsDb)) {
        return fit;
    }
    std::size_t next = 0;
    for (std::size_t i = 0; i < bandCount && next < stepped.bands.size(); ++i) {
        if (limits.bands[i]) {
            EqBandParams& band = fit.bands[i];
            const EqBandParams& found = stepped.bands[next++];
            band.type = found.type;
            band.frequencyHz = found.frequencyHz;
            band.gainDb = found.gainDb;
            band.q = found.q;
            band.off = 0;
        }
    }
    fit.rmsAfterDb = after.rmsDb;
    fit.levelDb = after.levelDb;
    fit.peakBoostDb = highestLevel(playedRatios(method, stepped.bands));
    return fit;
}

}  // namespace tessavo
