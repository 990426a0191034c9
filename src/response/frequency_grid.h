#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace tessavo {

/// A place on the unit circle.
struct CirclePoint {
    double cosine;
    double sine;
};

/// The place after so many turns. Whole quarters of a turn give exact zeros and ones.
/// \param turns -0.5 to 0.5
[[nodiscard]] CirclePoint circlePoint(double turns);

/// The frequencies at which responses are computed, with what the response of a section needs of them. Several
/// responses share one grid. Not changed once it is made, so that any thread may read it.
///
/// A sampled response repeats every 49500 Hz and is mirrored at 24750 Hz; frequencies beyond are taken as what they
/// stand for.
class FrequencyGrid {
 public:
    static constexpr std::size_t lanes = 40;  ///< frequencies of a block
    using Lanes = std::array<double, lanes>;

    /// Some neighbouring frequencies, side by side for the processor's vectors; what is left over in the last block
    /// stands for 0 Hz. The angle w is that of a sample, in radians, with a sign beyond 24750 Hz.
    struct Block {
        /// 1 where 0 Hz is nearer than 24750 Hz, otherwise -1. Distances are measured from the nearer one, so that no
        /// digits are lost near either of them.
        Lanes side{};
        Lanes halfAngleSquare{};  ///< sin^2 of half the distance's angle
        Lanes cosine{};           ///< cos(w)
        Lanes sine{};             ///< sin(w)
        Lanes coarseHz{};  ///< the frequency in single precision; its product with a whole number is exact
        Lanes fineHz{};    ///< what the frequency has beyond that
    };

    /// \param frequenciesHz in any order, each 0 or above
    /// \return nothing where one of them is negative or not finite
    [[nodiscard]] static std::optional<FrequencyGrid> of(std::span<const double> frequenciesHz);

    /// Frequencies in equal ratios, the first and the last as they are told.
    /// \param lowestHz above 0
    /// \param highestHz above lowestHz, finite
    /// \param count at least 2
    [[nodiscard]] static FrequencyGrid logarithmic(double lowestHz, double highestHz, std::size_t count);

    [[nodiscard]] std::size_t size() const { return frequenciesHz_.size(); }
    /// The frequencies as they were told.
    [[nodiscard]] const std::vector<double>& frequenciesHz() const { return frequenciesHz_; }
    /// Block b holds the frequencies from b * lanes on.
    [[nodiscard]] const std::vector<Block>& blocks() const { return blocks_; }

 private:
    explicit FrequencyGrid(std::vector<double> frequenciesHz);

    std::vector<double> frequenciesHz_;
    std::vector<Block> blocks_;
};

}  // namespace tessavo
