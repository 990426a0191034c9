#include "dsp/icoefficient_generator.h"

#include "dsp/fixed_point.h"

namespace tessavo {

bool IcoefficientGenerator::computeCrossover(std::int32_t kindWord, std::int32_t /*spare*/,
                                             BiquadWords& out) {
    return convert(crossoverSection(kindWord), out);
}

bool IcoefficientGenerator::computeBand(std::int32_t kindWord, float gainDb, float q, std::int32_t /*spare*/,
                                        BiquadWords& out) {
    if (const auto section = bandSection(kindWord, gainDb, q)) {
        return convert(*section, out);
    }
    out = {unityNumeratorWord, 0, 0, 0, 0};
    return false;
}

Section IcoefficientGenerator::crossoverSection(std::int32_t kindWord) const {
    return designCrossover(CrossoverRequest::unpack(kindWord));
}

std::optional<Section> IcoefficientGenerator::bandSection(std::int32_t kindWord, float gainDb,
                                                          float q) const {
    return designBand(BandRequest::unpack(kindWord, gainDb, q));
}

bool IcoefficientGenerator::convert(const Section& section, BiquadWords& out) {
    if (coefficientsToFixed(section.scaled(), out)) {
        return true;
    }
    if (warnUnstable_) {
        warnUnstable_ = false;
        if (warn_) {
            warn_(unstableFilterText);
        }
    }
    return false;
}

}  // namespace tessavo
