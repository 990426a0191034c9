#include "fit/seed_pool.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <numeric>
#include <optional>
#include <utility>

#include "fit/lane_sums.h"

namespace tessavo {

namespace {

constexpr double octave = std::numbers::ln2;
// What lies closer to a sum of the others than this, beside its own square, is no seed of its own.
constexpr double leastOwnPart = 1e-3;

/// A width of the peaks, and how far apart they stand.
struct SeedWidth {
    double q = 1;
    double octavesApart = 1;
};

constexpr std::array<SeedWidth, 4> widths{{{0.8, 0.5}, {1.6, 0.33}, {3.2, 0.22}, {6.0, 0.14}}};

/// The same sequence on every machine.
class Chance {
 public:
    std::size_t below(std::size_t count) {
        // Multiplier and increment of D. E. Knuth's MMIX.
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::size_t>((state_ >> 33U) % count);
    }

 private:
    std::uint64_t state_ = 1;
};

/// Normal equations of a choice of seeds, solved row by row: Cholesky factors of their products, and what each row adds to the
/// wanted square that is taken away.
class GrownEquations {
 public:
    /// What one more seed would take away of the wanted square, beyond what those take away that were kept.
    /// \param productWith gives the seed's product with the k-th that was kept
    /// \return nothing where it is hardly more than a sum of them
    template <typename ProductWith>
    std::optional<double> taken(ProductWith productWith, double square, double wanted) {
        const double rest = eliminate(productWith, square, wanted);
        return rest > leastOwnPart * square ? std::optional(part_ * part_ / rest) : std::nullopt;
    }

    /// Keeps a seed. Its square counts as a little larger, so that seeds close to each other do not take turns with large gains.
    /// \return what it takes away of the wanted square
    template <typename ProductWith>
    double keep(ProductWith productWith, double square, double wanted) {
        const double rest = eliminate(productWith, square * (1.0 + leastOwnPart), wanted);
        const double pivot = std::sqrt(std::max(rest, smallestPart * square));
        rows_[count_][count_] = pivot;
        parts_[count_] = part_ / pivot;
        ++count_;
        return parts_[count_ - 1] * parts_[count_ - 1];
    }

    /// The factors of the gains of all seeds that were kept.
    [[nodiscard]] std::vector<double> factors() const {
        std::vector<double> factors(count_);
        for (std::size_t i = count_; i-- > 0;) {
            double rest = parts_[i];
            for (std::size_t k = i + 1; k < count_; ++k) {
                rest -= rows_[k][i] * factors[k];
            }
            factors[i] = rest / rows_[i][i];
        }
        return factors;
    }

 private:
    // What is left of a seed's square, and of its product with what is wanted, once the others are taken off.
    template <typename ProductWith>
    double eliminate(ProductWith productWith, double square, double wanted) {
        auto& row = rows_[count_];
        double rest = square;
        part_ = wanted;
        for (std::size_t k = 0; k < count_; ++k) {
            double sum = productWith(k);
            for (std::size_t m = 0; m < k; ++m) {
                sum -= row[m] * rows_[k][m];
            }
            row[k] = sum / rows_[k][k];
            rest -= row[k] * row[k];
            part_ -= row[k] * parts_[k];
        }
        return rest;
    }

    static constexpr double smallestPart = 1e-9;

    std::array<std::array<double, bandCount + 1>, bandCount + 1> rows_{};
    std::array<double, bandCount + 1> parts_{};
    double part_ = 0;
    std::size_t count_ = 0;
};

}  // namespace

SeedPool::SeedPool(const FitProblem& problem) : problem_(problem) {
    const double lowest = problem.room.lowest[0];
    const double highest = problem.room.highest[0];
    const double lowestQ = problem.room.lowest[2];
    const double highestQ = problem.room.highest[2];
    for (const SeedWidth& width : widths) {
        if (std::log(width.q) > highestQ && width.q > widths.front().q) {
            continue;
        }
        const auto gaps =
            static_cast<std::size_t>(std::ceil((highest - lowest) / (width.octavesApart * octave)));
        for (std::size_t i = 0; i <= gaps; ++i) {
            add(BandType::peak,
                lowest + (highest - lowest) * static_cast<double>(i) / static_cast<double>(gaps),
                std::clamp(std::log(width.q), lowestQ, highestQ));
        }
    }
    constexpr double shelfQ = 0.7;
    const auto gaps = static_cast<std::size_t>(std::ceil((highest - lowest) / octave));
    for (std::size_t i = 0; i <= gaps; ++i) {
        const double logHz = lowest + (highest - lowest) * static_cast<double>(i) / static_cast<double>(gaps);
        add(BandType::lowShelf, logHz, std::clamp(std::log(shelfQ), lowestQ, highestQ));
        add(BandType::highShelf, logHz, std::clamp(std::log(shelfQ), lowestQ, highestQ));
    }
    computeProducts(problem);
}

void SeedPool::add(BandType type, double logHz, double logQ) {
    constexpr double seedGainDb = 5.0;
    shapes_.push_back({type, logHz, seedGainDb, logQ});
}

void SeedPool::computeProducts(const FitProblem& problem) {
    const std::size_t count = problem.rangeCount;
    levels_.resize(shapes_.size() * count);
    for (std::size_t seed = 0; seed < shapes_.size(); ++seed) {
        const PowerRatio ratio = designedRatio(*problem.method, shapes_[seed]);
        double* levels = &levels_[seed * count];
        for (std::size_t i = 0; i < count; ++i) {
            const double x = problem.points.halfAngleSquare[i];
            levels[i] = decibelsOfPower(ratio.numerator(x) / ratio.denominator(x));
        }
        const double mean = std::accumulate(levels, levels + count, 0.0) / static_cast<double>(count);
        std::for_each(levels, levels + count, [mean](double& level) { level -= mean; });
    }
    products_.resize(shapes_.size() * shapes_.size());
    for (std::size_t a = 0; a < shapes_.size(); ++a) {
        for (std::size_t b = 0; b <= a; ++b) {
            const double sum = productSum(&levels_[a * count], &levels_[b * count], count);
            products_[a * shapes_.size() + b] = sum;
            products_[b * shapes_.size() + a] = sum;
        }
        wanted_.push_back(productSum(&levels_[a * count], problem.wantedDb.data(), count));
    }
}

double SeedPool::taken(const Choice& choice, std::vector<double>& factors) const {
    GrownEquations equations;
    double sum = 0;
    for (const std::size_t seed : choice) {
        sum += equations.keep([&](std::size_t k) { return product(seed, choice[k]); }, product(seed, seed),
                              wanted_[seed]);
    }
    factors = equations.factors();
    return sum;
}

std::size_t SeedPool::bestBeside(const Choice& choice) const {
    GrownEquations equations;
    for (const std::size_t seed : choice) {
        (void)equations.keep([&](std::size_t k) { return product(seed, choice[k]); }, product(seed, seed),
                             wanted_[seed]);
    }
    std::size_t best = shapes_.size();
    double most = 0;
    for (std::size_t seed = 0; seed < shapes_.size(); ++seed) {
        const auto gained = equations.taken([&](std::size_t k) { return product(seed, choice[k]); },
                                            product(seed, seed), wanted_[seed]);
        if (gained.value_or(0.0) > most) {
            most = *gained;
            best = seed;
        }
    }
    return best;
}

void SeedPool::descend(Choice& choice) const {
    constexpr int mostSweeps = 6;
    constexpr double leastGain = 1e-6;
    std::vector<double> factors;
    double now = taken(choice, factors);
    for (int sweep = 0; sweep < mostSweeps; ++sweep) {
        bool better = false;
        for (std::size_t turn = 0; turn < choice.size(); ++turn) {
            Choice rest(choice.begin() + 1, choice.end());
            const std::size_t seed = bestBeside(rest);
            const std::size_t first = choice.front();
            rest.push_back(seed < shapes_.size() ? seed : first);
            const double reached = taken(rest, factors);
            if (reached > now * (1.0 + leastGain)) {
                now = reached;
                better = true;
            } else {
                rest.back() = first;
            }
            choice = std::move(rest);
        }
        if (!better) {
            break;
        }
    }
}

std::vector<BandShape> SeedPool::shapesOf(const Choice& choice) const {
    std::vector<double> factors;
    (void)taken(choice, factors);
    std::vector<BandShape> shapes;
    for (std::size_t i = 0; i < choice.size(); ++i) {
        BandShape shape = shapes_[choice[i]];
        shape.gainDb =
            std::clamp(shape.gainDb * factors[i], problem_.room.lowest[1], problem_.room.highest[1]);
        shapes.push_back(shape);
    }
    return shapes;
}

std::vector<std::vector<BandShape>> SeedPool::choices(std::size_t bands, std::size_t trials,
                                                      std::size_t most) const {
    Choice first;
    while (first.size() < bands) {
        const std::size_t seed = bestBeside(first);
        first.push_back(seed < shapes_.size() ? seed : first.size());
    }
    struct Rated {
        double taken = 0;
        Choice choice{};
    };
    std::vector<Rated> rated;
    Chance chance;
    Choice choice = first;
    for (std::size_t trial = 0; trial < trials; ++trial) {
        if (trial > 0) {
            // Begin at the best so far, or at the first one, with a third of it exchanged.
            choice = trial % 2 == 0 ? first : rated.front().choice;
            for (std::size_t i = 0; i < bands / 3 + 1; ++i) {
                choice[chance.below(bands)] = chance.below(shapes_.size());
            }
        }
        descend(choice);
        std::ranges::sort(choice);
        std::vector<double> factors;
        const Rated entry{taken(choice, factors), choice};
        if (std::ranges::none_of(rated, [&](const Rated& other) { return other.choice == entry.choice; })) {
            rated.insert(std::ranges::upper_bound(rated, entry.taken, std::greater<>(), &Rated::taken),
                         entry);
        }
    }
    std::vector<std::vector<BandShape>> result;
    for (const Rated& entry : rated) {
        if (result.size() == most) {
            break;
        }
        result.push_back(shapesOf(entry.choice));
    }
    return result;
}

std::vector<BandShape> SeedPool::bestFor(std::span<const double> missingDb, std::size_t most) const {
    struct Rated {
        double gained = 0;
        BandShape shape{};
    };
    std::vector<Rated> rated;
    for (std::size_t seed = 0; seed < shapes_.size(); ++seed) {
        const double sum = productSum(&levels_[seed * missingDb.size()], missingDb.data(), missingDb.size());
        const double square = product(seed, seed);
        Rated entry{.gained = 0, .shape = shapes_[seed]};
        const double seedGainDb = entry.shape.gainDb;
        entry.shape.gainDb = std::clamp(square > 0.0 ? seedGainDb * sum / square : 0.0,
                                        problem_.room.lowest[1], problem_.room.highest[1]);
        const double factor = entry.shape.gainDb / seedGainDb;
        entry.gained = 2.0 * factor * sum - factor * factor * square;
        rated.push_back(entry);
    }
    std::ranges::stable_sort(rated, std::greater<>(), &Rated::gained);
    constexpr double apart = 0.3;
    std::vector<BandShape> best;
    for (const Rated& entry : rated) {
        if (best.size() == most) {
            break;
        }
        if (std::ranges::none_of(best, [&](const BandShape& other) {
                return other.type == entry.shape.type && std::abs(other.logHz - entry.shape.logHz) < apart;
            })) {
            best.push_back(entry.shape);
        }
    }
    return best;
}

}  // namespace tessavo
