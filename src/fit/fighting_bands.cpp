#include "fit/fighting_bands.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "fit/band_search.h"

namespace tessavo {

namespace {

constexpr double fightDb = 6.0;
constexpr double fightOctaves = 0.5;
constexpr double worthDb = 0.1;

}  // namespace

bool fightingBands(std::span<const EqBandParams> bands) {
    for (const EqBandParams& up : bands) {
        for (const EqBandParams& down : bands) {
            if (up.gainDb > fightDb && down.gainDb < -fightDb &&
                std::abs(std::log2(static_cast<double>(up.frequencyHz) / down.frequencyHz)) <= fightOctaves) {
                return true;
            }
        }
    }
    return false;
}

SteppedBands withoutFights(FitProblem& problem, const std::vector<BandShape>& shapes, SteppedBands fighting) {
    struct Calm {
        BandRoom room{};
        SteppedBands found{};
    };
    std::optional<Calm> best;
    // Where no band boosts by more than 6 dB, or none cuts by more, there is no fight.
    for (const bool limitBoosts : {true, false}) {
        FitProblem calm = problem;
        if (limitBoosts) {
            calm.room.highest[1] = std::min(calm.room.highest[1], fightDb);
        } else {
            calm.room.lowest[1] = std::max(calm.room.lowest[1], -fightDb);
        }
        std::vector<BandShape> start = shapes;
        for (BandShape& shape : start) {
            shape.gainDb = std::clamp(shape.gainDb, calm.room.lowest[1], calm.room.highest[1]);
        }
        BandSearch search(calm);
        SteppedBands found = putOnSteps(calm, search.goOn(std::move(start)));
        if (!best || found.cost < best->found.cost) {
            best = Calm{calm.room, std::move(found)};
        }
    }
    if (std::sqrt(best->found.cost) > std::sqrt(fighting.cost) + worthDb) {
        return fighting;
    }
    problem.room = best->room;
    return std::move(best->found);
}

}  // namespace tessavo
