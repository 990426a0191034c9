#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "fit/fit_problem.h"

namespace tessavo {

/// Bands to begin a search with, all over the range in several widths, each with what it does at the points of the range.
///
/// In dB the levels of bands add up, and a level grows almost in proportion with the gain: which few of the bands come nearest to
/// what is wanted is then a question of sums of products, which are computed once.
class SeedPool {
 public:
    explicit SeedPool(const FitProblem& problem);

    [[nodiscard]] std::size_t size() const { return shapes_.size(); }

    /// Some choices of so many bands that come near to what is wanted, the nearest first, no two alike.
    ///
    /// Each begins with bands chosen one after another, or with such a choice in which some were exchanged by chance, and then
    /// each of its bands is exchanged for a better one until there is none. The chance is the same at every call.
    /// \param bands how many bands each choice has, at least 1
    /// \param trials how many choices are made
    /// \param most how many are returned at most
    [[nodiscard]] std::vector<std::vector<BandShape>> choices(std::size_t bands, std::size_t trials,
                                                              std::size_t most) const;

    /// The bands that take most away from what some others leave, each by itself, the best first and each from another place.
    /// \param missingDb what is still wanted at the points of the range, less its mean
    [[nodiscard]] std::vector<BandShape> bestFor(std::span<const double> missingDb, std::size_t most) const;

 private:
    using Choice = std::vector<std::size_t>;

    void add(BandType type, double logHz, double logQ);
    void computeProducts(const FitProblem& problem);
    [[nodiscard]] double product(std::size_t a, std::size_t b) const {
        return products_[a * shapes_.size() + b];
    }
    /// How much of the wanted square a choice takes away, and with which factors of the seeds' gains.
    double taken(const Choice& choice, std::vector<double>& factors) const;
    /// The seed that takes most away beside those of a choice; size() where none takes anything away.
    [[nodiscard]] std::size_t bestBeside(const Choice& choice) const;
    void descend(Choice& choice) const;
    [[nodiscard]] std::vector<BandShape> shapesOf(const Choice& choice) const;

    const FitProblem& problem_;
    std::vector<BandShape> shapes_;
    std::vector<double> levels_;    // of all seeds, each at the points of the range and less its mean
    std::vector<double> products_;  // of each with each
    std::vector<double> wanted_;    // of each with what is wanted
};

}  // namespace tessavo
