#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>

#include "dsp/biquad_words.h"

namespace tessavo {

/// Text of the warning that a generator gives at its first failure.
inline constexpr std::string_view unstableFilterText =
    "Your filter settings would lead to a instable filter.\r\nPlease change the parameters.";

/// Turns the parameters of a band or a crossover into the five words of a second-order section.
///
/// The application owns one object of each method. Used on the user-interface thread only.
class IcoefficientGenerator {
 public:
    /// Shows `unstableFilterText` to the user; may be empty.
    using Warn = std::function<void(std::string_view)>;

    explicit IcoefficientGenerator(Warn warn = {}) : warn_(std::move(warn)) {}
    virtual ~IcoefficientGenerator() = default;
    IcoefficientGenerator(const IcoefficientGenerator&) = delete;
    IcoefficientGenerator& operator=(const IcoefficientGenerator&) = delete;

    /// Second-order Butterworth high-pass or low-pass.
    ///
    /// \param kindWord the first four bytes of a CrossoverParams block as a little-endian word: bits 8-15 the
    ///        direction (non-zero low-pass), bits 16-31 the frequency in Hz, taken with an arithmetic shift.
    /// \param spare the block's last 16-bit field; not read.
    /// \return true when all five words were converted; see coefficientsToFixed() for what a failure leaves.
    virtual bool computeCrossover(std::int32_t kindWord, std::int32_t spare, BiquadWords& out) = 0;

    /// Equalizer band.
    ///
    /// \param kindWord the first four bytes of an EqBandParams block as a little-endian word: bits 0-7 the
    /// type
    ///        (0 high shelf, 1 low shelf, 2 peak), bits 16-31 the frequency in Hz.
    /// \param gainDb gain in dB, 0 and above boost, below 0 cut.
    /// \param q quality factor.
    /// \param spare the block's last word; not read.
    /// \return true when all five words were converted. An unknown type has no formula: it gives a section
    /// that
    ///         passes everything through, and false.
    virtual bool computeBand(std::int32_t kindWord, float gainDb, float q, std::int32_t spare,
                             BiquadWords& out) = 0;

    /// True until the warning has been shown once.
    [[nodiscard]] bool warnUnstable() const { return warnUnstable_; }

 protected:
    /// Converts five values in the target's scale and warns at the first failure in this object's life.
    bool convert(const std::array<double, 5>& scaled, BiquadWords& out);

    /// Writes the section that changes nothing, for a type that has no formula.
    /// \return false
    static bool passThrough(BiquadWords& out);

 private:
    bool warnUnstable_ = true;
    Warn warn_;
};

}  // namespace tessavo
