#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>

#include "dsp/biquad_words.h"
#include "dsp/filter_requests.h"
#include "dsp/section.h"

namespace tessavo {

/// Text of the warning that a generator gives at its first failure.
inline constexpr std::string_view unstableFilterText =
    "Your filter settings would lead to a instable filter.\r\nPlease change the parameters.";

/// Turns the parameters of a band or a crossover into the five words of a second-order section.
///
/// Each filter method is a class derived from it, which designs the section in real numbers; what all of them
/// share, unpacking the arguments and converting into the target's words, is done here. Used on the
/// user-interface thread only.
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
    /// \param kindWord the first four bytes of a CrossoverParams block as a little-endian word: bits 8 to 15
    ///     the direction (anything but 0 is a low-pass), bits 16 to 31 the frequency in Hz, taken with its
    ///     sign
    /// \param spare the block's last 16-bit field; not read
    /// \param out the words; see coefficientsToFixed() for what a failure leaves there
    /// \return true when all five words were converted
    bool computeCrossover(std::int32_t kindWord, std::int32_t spare, BiquadWords& out);

    /// Equalizer band.
    ///
    /// \param kindWord the first four bytes of an EqBandParams block as a little-endian word: bits 0 to 7 the
    ///     code of a BandType, bits 8 to 15 not read, bits 16 to 31 the frequency in Hz, taken with its sign
    /// \param gainDb gain in dB: 0 and above boosts, below 0 cuts
    /// \param q quality factor
    /// \param spare the block's last word; not read
    /// \param out the words; an unknown type, which has no formula, leaves a section there that passes
    ///     everything through, and gives no warning
    /// \return true when all five words were converted; false also for an unknown type
    bool computeBand(std::int32_t kindWord, float gainDb, float q, std::int32_t spare, BiquadWords& out);

    /// The section that computeCrossover() turns into words, before it does. Gives no warning.
    [[nodiscard]] Section crossoverSection(std::int32_t kindWord) const;

    /// The section that computeBand() turns into words, before it does. Gives no warning.
    /// \return nothing for an unknown type
    [[nodiscard]] std::optional<Section> bandSection(std::int32_t kindWord, float gainDb, float q) const;

    /// The same for a band whose frequency, gain and linear gain need not be on anybody's steps.
    [[nodiscard]] std::optional<Section> bandSection(const BandRequest& request) const {
        return designBand(request);
    }

    /// True until the warning has been shown once.
    [[nodiscard]] bool warnUnstable() const { return warnUnstable_; }

 private:
    [[nodiscard]] virtual Section designCrossover(const CrossoverRequest& request) const = 0;
    /// \return nothing for a type that has no formula
    [[nodiscard]] virtual std::optional<Section> designBand(const BandRequest& request) const = 0;

    /// Converts a section into the target's scale and words, and warns at the first failure in this object's
    /// life.
    bool convert(const Section& section, BiquadWords& out);

    bool warnUnstable_ = true;
    Warn warn_;
};

}  // namespace tessavo
