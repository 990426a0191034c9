#include "dsp/band_types.h"

#include <cmath>

namespace tessavo {

namespace {

constexpr auto designs = std::to_array<BandDesign>({
    {.type = BandType::highShelf,
     .bilinearZeros = [](const BandTerms& t) -> BilinearQuadratic {
         return {t.v + t.rootV * t.w / t.q + t.w2, 2.0 * (t.w2 - t.v), t.v - t.rootV * t.w / t.q + t.w2};
     },
     // The boost's zeros with V divided out: equal in value once c0 is divided out as well.
     .bilinearCutPoles = [](const BandTerms& t) -> BilinearQuadratic {
         const double inverseRoot = std::sqrt(1.0 / t.v);
         return {1.0 + inverseRoot * t.w / t.q + t.w2 / t.v, 2.0 * (t.w2 / t.v - 1.0),
                 1.0 - inverseRoot * t.w / t.q + t.w2 / t.v};
     },
     .matchedZeros = [](const BandTerms& t) -> AnalogQuadratic {
         return {t.w / (t.q * t.rootV), t.w2 / t.v};
     }},
    {.type = BandType::lowShelf,
     .bilinearZeros = [](const BandTerms& t) -> BilinearQuadratic {
         return {1.0 + t.rootV * t.w / t.q + t.v * t.w2, 2.0 * (t.v * t.w2 - 1.0),
                 1.0 - t.rootV * t.w / t.q + t.v * t.w2};
     },
     .bilinearCutPoles = nullptr,
     .matchedZeros = [](const BandTerms& t) -> AnalogQuadratic {
         return {t.rootV * (t.w / t.q), t.v * t.w2};
     }},
    {.type = BandType::peak,
     .bilinearZeros = [](const BandTerms& t) -> BilinearQuadratic {
         return {1.0 + t.v * t.w / t.q + t.w2, 2.0 * (t.w2 - 1.0), 1.0 - t.v * t.w / t.q + t.w2};
     },
     .bilinearCutPoles = nullptr,
     .matchedZeros = [](const BandTerms& t) -> AnalogQuadratic {
         return {t.v * (t.w / t.q), t.w2};
     }},
});

constexpr bool bothTablesStandByCode() {
    if (designs.size() != bandTypeNames.size()) {
        return false;
    }
    for (std::size_t code = 0; code < designs.size(); ++code) {
        const auto type = static_cast<BandType>(code);
        if (designs[code].type != type || bandTypeNames[code].type != type) {
            return false;
        }
    }
    return true;
}

static_assert(bothTablesStandByCode());

}  // namespace

const BandDesign* bandDesign(std::uint8_t code) {
    return code < designs.size() ? &designs[code] : nullptr;
}

}  // namespace tessavo
