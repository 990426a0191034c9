#include "params/foreign_words.h"

#include "params/section_words.h"

namespace tessavo {

namespace {

template <typename Compute>
unsigned differs(const BiquadWords& words, Compute compute) {
    BiquadWords computed = words;
    return compute(computed) && computed != words ? 1U : 0U;
}

}  // namespace

ForeignWords ForeignWordSearch::find(const TuningState& tuning) {
    IcoefficientGenerator& method = *methods_.at(tuning.filterMode());
    const ParameterSet& set = tuning.currentParameterSet();
    ForeignWords found;
    for (std::uint8_t c = 0; c < channelCount; ++c) {
        const OutputChannelParams& params = set.channels[c];
        const ChannelImageBlock& block = tuning.image().channels[c];
        for (std::size_t b = 0; b < bandCount; ++b) {
            const auto compute = [&](BiquadWords& words) {
                return computeBandWords(method, params.bands[b], words);
            };
            const BiquadWords& drawn = tuning.bandWords({c}, b);
            const unsigned ofDrawn = differs(drawn, compute);
            found.drawn[c].bands |= ofDrawn << b;
            found.playing[c].bands |=
                (block.bandWords[b] == drawn ? ofDrawn : differs(block.bandWords[b], compute)) << b;
        }
        for (std::size_t k = 0; k < crossoverCount; ++k) {
            const auto compute = [&](BiquadWords& words) {
                return computeCrossoverWords(method, params.crossovers[k], words);
            };
            found.drawn[c].crossovers |= differs(tuning.crossoverWords({c}, k), compute) << k;
            found.playing[c].crossovers |= differs(block.crossoverWords[k], compute) << k;
        }
    }
    for (std::size_t i = 0; i < inputSectionCount; ++i) {
        const auto compute = [&](BiquadWords& words) {
            return computeBandWords(method, inputBandOf(set, i), words);
        };
        found.inputDrawn |= differs(tuning.inputWords(i), compute) << i;
    }
    return found;
}

}  // namespace tessavo
