#include "fit/band_search.h"

#include <algorithm>
#include <cmath>

namespace tessavo {

namespace {

constexpr std::size_t choiceTrials = 10;
constexpr std::size_t choicesTaken = 5;
constexpr std::size_t grownVariants = 5;
constexpr std::size_t settledCandidates = 3;
constexpr int rounds = 1;
constexpr int stepsOfChoice = 8;
constexpr int stepsWhileGrowing = 6;
constexpr int stepsOfTrial = 5;
constexpr int stepsOfSettling = 12;

}  // namespace

std::vector<BandShape> BandSearch::bestSeeds(std::span<const BandShape> bands, std::size_t count) {
    FitLevels levels;
    std::vector<PowerRatio> ratios;
    ratios.reserve(bands.size());
    for (const BandShape& band : bands) {
        ratios.push_back(designedRatio(*problem_.method, band));
    }
    (void)costOf(problem_, ratios, levels);
    std::vector<double> missing(problem_.rangeCount);
    for (std::size_t i = 0; i < missing.size(); ++i) {
        missing[i] = problem_.wantedDb[i] - levels.levelsDb[i] + levels.meanDb;
    }
    return seeds_.bestFor(missing, count);
}

double BandSearch::improve(std::vector<BandShape>& bands, int steps) {
    rooms_.assign(bands.size(), problem_.room);
    return solver_.improve(bands, rooms_, steps);
}

bool BandSearch::moveFirst(std::vector<BandShape>& bands, double& cost) {
    constexpr double leastGain = 2e-3;
    std::vector<BandShape> rest(bands.begin() + 1, bands.end());
    if (!rest.empty()) {
        (void)improve(rest, 2);
    }
    for (const BandShape& seed : bestSeeds(rest, 2)) {
        std::vector<BandShape> trial = rest;
        trial.push_back(seed);
        const double reached = improve(trial, stepsOfTrial);
        if (reached < cost * (1.0 - leastGain)) {
            bands = std::move(trial);
            cost = reached;
            return true;
        }
    }
    return false;
}

void BandSearch::holdBelowLimit(std::vector<BandShape>& bands) {
    // From beyond the limit of the boosts the way back is steep.
    constexpr int mostTries = 6;
    for (int attempt = 0; attempt < mostTries; ++attempt) {
        const double highest = solver_.highestLevel(bands);
        if (highest <= problem_.mostBoostDb) {
            return;
        }
        const double factor = std::max(0.5, problem_.mostBoostDb / highest);
        for (BandShape& band : bands) {
            band.gainDb *= factor * 0.95;
        }
    }
}

std::vector<BandShape> BandSearch::grown(std::size_t count, std::size_t variant, double& cost) {
    std::vector<BandShape> bands;
    while (bands.size() < count) {
        const bool deviates = variant > 0 && bands.size() + 1 == variant;
        bands.push_back(bestSeeds(bands, deviates ? 2 : 1).back());
        cost = improve(bands, stepsWhileGrowing);
    }
    return bands;
}

std::vector<std::vector<BandShape>> BandSearch::run(std::size_t count) {
    struct Candidate {
        double cost = 0;
        std::vector<BandShape> bands{};
    };
    std::vector<Candidate> candidates;
    for (std::vector<BandShape>& bands : seeds_.choices(count, choiceTrials, choicesTaken)) {
        holdBelowLimit(bands);
        const double cost = improve(bands, stepsOfChoice);
        candidates.push_back({cost, std::move(bands)});
    }
    for (std::size_t variant = 0; variant < grownVariants; ++variant) {
        Candidate candidate;
        candidate.bands = grown(count, variant, candidate.cost);
        candidates.push_back(std::move(candidate));
    }
    std::ranges::stable_sort(candidates, {}, &Candidate::cost);
    candidates.resize(std::min(candidates.size(), settledCandidates));
    for (Candidate& candidate : candidates) {
        candidate.cost = settle(candidate.bands, candidate.cost);
    }
    std::ranges::stable_sort(candidates, {}, &Candidate::cost);
    std::vector<std::vector<BandShape>> found;
    found.reserve(candidates.size());
    for (Candidate& candidate : candidates) {
        found.push_back(std::move(candidate.bands));
    }
    return found;
}

std::vector<BandShape> BandSearch::goOn(std::vector<BandShape> bands) {
    const double cost = improve(bands, stepsOfChoice);
    (void)settle(bands, cost);
    return bands;
}

double BandSearch::settle(std::vector<BandShape>& bands, double cost) {
    for (int round = 0; round < rounds; ++round) {
        bool moved = false;
        for (std::size_t i = 0; i < bands.size(); ++i) {
            // A band that was moved stands last now; the others come forward in turn.
            if (moveFirst(bands, cost)) {
                moved = true;
            } else {
                std::rotate(bands.begin(), bands.begin() + 1, bands.end());
            }
        }
        if (!moved) {
            break;
        }
    }
    return improve(bands, stepsOfSettling);
}

}  // namespace tessavo
