#pragma once

#include <cstdint>
#include <numbers>
#include <optional>
#include <vector>

#include "params/records.h"

namespace tessavo {

/// What a filter does, whatever formulas stand behind it.
enum class FilterShape : std::uint8_t { peak, lowShelf, highShelf, lowPass, highPass };

/// Whether a filter of this shape is a band of the equalizer; the others are crossovers.
[[nodiscard]] constexpr bool isBand(FilterShape shape) {
    return shape == FilterShape::peak || shape == FilterShape::lowShelf || shape == FilterShape::highShelf;
}

/// Q of a Butterworth filter of 2nd order.
inline constexpr double butterworthQ = std::numbers::sqrt2 / 2.0;

/// A filter as other programs mean it: the forms of R. Bristow-Johnson's "Cookbook formulae for audio equalizer biquad
/// filter coefficients", with their own Q.
struct CookbookFilter {
    FilterShape shape = FilterShape::peak;
    double frequencyHz = 0;   ///< centre of a peak or of a shelf, corner of a low-pass or high-pass; above 0
    double gainDb = 0;        ///< 0 for a low-pass or high-pass
    double q = butterworthQ;  ///< above 0; the cookbook's Q, also of a shelf
    int order =
        2;  ///< of a low-pass or high-pass: 2, or 4 for two equal ones of 2nd order with this Q one after another
};

/// A filter in the forms of the target, before or after it was put on the target's steps.
struct DeviceFilter {
    FilterShape shape = FilterShape::peak;
    double frequencyHz = 0;
    double gainDb = 0;  ///< 0 for a crossover
    double q = 0;       ///< 0 for a crossover, which has none to choose
    int order = 2;      ///< of a crossover: 2 or 4
};

/// A value of a filter.
enum class FilterValue : std::uint8_t { frequency, gain, q };

/// A filter on the steps of the target: 1 Hz, 0.1 dB, 0.1 in Q, inside the ranges that records allow.
struct SteppedFilter {
    DeviceFilter filter{};
    std::vector<FilterValue>
        clamped{};  ///< the values that lay outside their range after rounding, in this order
};

/// Puts a filter on the steps of the target: rounds first, then clamps. A half rounds away from zero.
[[nodiscard]] SteppedFilter onDeviceSteps(const DeviceFilter& exact);

/// The band that a filter on the target's steps is.
/// \param filter a shape for which isBand() holds
/// \param off whether the band is bypassed
[[nodiscard]] EqBandParams bandOf(const DeviceFilter& filter, bool off);

/// The crossover that a filter on the target's steps is, enabled or not.
/// \param filter a low-pass or high-pass
[[nodiscard]] CrossoverParams crossoverOf(const DeviceFilter& filter, bool enabled);

/// The filter of a band, whether it is bypassed or not.
/// \return nothing for a type that is no BandType
[[nodiscard]] std::optional<DeviceFilter> filterOf(const EqBandParams& band);

/// The filter of a crossover, whether it is enabled or not.
[[nodiscard]] DeviceFilter filterOf(const CrossoverParams& crossover);

}  // namespace tessavo
