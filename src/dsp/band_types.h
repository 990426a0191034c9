#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tessavo {

/// Type of an equalizer band; the numbers are the codes in records, image and target.
enum class BandType : std::uint8_t { highShelf = 0, lowShelf = 1, peak = 2 };

/// What people and scripts call a type of band.
struct BandTypeName {
    BandType type;
    std::string_view shown;   ///< on the screen
    std::string_view script;  ///< in edit scripts
    std::string_view inText;  ///< in reports
};

/// All types, by rising code.
inline constexpr auto bandTypeNames = std::to_array<BandTypeName>({
    {BandType::highShelf, "High Shelf", "high-shelf", "high shelf"},
    {BandType::lowShelf, "Low Shelf", "low-shelf", "low shelf"},
    {BandType::peak, "Peak", "peak", "peak"},
});

/// Terms of a band's formulas.
struct BandTerms {
    /// Centre or corner frequency: tan(pi f / fs) for the bilinear transform, 2 pi f in radians a second for the
    /// matched one.
    double w = 0;
    double w2 = 0;     ///< its square
    double q = 1;      ///< quality factor
    double v = 1;      ///< linear gain of the boost, 1 or above
    double rootV = 1;  ///< its square root
};

/// A quadratic in z^-1 before the division by its leading term: c0 + c1 z^-1 + c2 z^-2.
struct BilinearQuadratic {
    double c0 = 0;
    double c1 = 0;
    double c2 = 0;
};

/// A monic quadratic of the analog prototype: s^2 + p s + q.
struct AnalogQuadratic {
    double p = 0;
    double q = 0;
};

/// The formulas of one type of band. Every type has the poles of a plain resonance at f and Q when it boosts; its
/// zeros make it what it is. A cut is the inverse of the boost: zeros and poles change places.
struct BandDesign {
    BandType type;
    /// Zeros of the boost after the bilinear transform.
    BilinearQuadratic (*bilinearZeros)(const BandTerms&);
    /// Poles of the cut, where another form than that of the boost's zeros sets the last bits; otherwise null.
    BilinearQuadratic (*bilinearCutPoles)(const BandTerms&);
    /// Zeros of the boost's analog prototype, for the matched z-transform.
    AnalogQuadratic (*matchedZeros)(const BandTerms&);
};

/// \param code as records hold it
/// \return null for a code that is no BandType
[[nodiscard]] const BandDesign* bandDesign(std::uint8_t code);

}  // namespace tessavo
