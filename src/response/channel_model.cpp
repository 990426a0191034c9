#include "response/channel_model.h"

#include "params/section_words.h"
#include "plot/response_terms.h"

namespace tessavo {

namespace {

constexpr double gainUnit = 1.0 / (1 << 24);
constexpr std::uint8_t orderOfTwoSections = 4;

Section sectionOf(const BiquadWords& words) {
    return {words.b0 * numeratorUnit, words.b1 * numeratorUnit, words.b2 * numeratorUnit,
            words.a1 * denominatorUnit, words.a2 * denominatorUnit};
}

// The functions give the section of a band and that of a crossover by their numbers.
template <typename BandSection, typename CrossoverSection>
ChannelModel modelOf(const ChannelImageBlock& block, BandSection bandSection,
                     CrossoverSection crossoverSection) {
    ChannelModel model;
    const double gain = block.gainWord * gainUnit;
    model.gain = block.invertPhase != 0 ? -gain : gain;
    model.delaySamples = block.delaySamples;
    model.sections.reserve(ChannelModel::mostSections);
    for (std::size_t band = 0; band < bandCount; ++band) {
        if (block.bands[band].off == 0) {
            model.sections.push_back(bandSection(band));
        }
    }
    for (std::size_t k = 0; k < crossoverCount; ++k) {
        const CrossoverParams& crossover = block.crossovers[k];
        if (crossover.enabled != 0) {
            model.sections.insert(model.sections.end(), crossover.order == orderOfTwoSections ? 2 : 1,
                                  crossoverSection(k));
        }
    }
    return model;
}

}  // namespace

ChannelModel playedModel(const ChannelImageBlock& block) {
    return modelOf(
        block, [&](std::size_t band) { return sectionOf(block.bandWords[band]); },
        [&](std::size_t k) { return sectionOf(block.crossoverWords[k]); });
}

ChannelModel idealModel(const ChannelImageBlock& block, const IcoefficientGenerator& method) {
    return modelOf(
        block, [&](std::size_t band) { return designedBand(method, block.bands[band]); },
        [&](std::size_t k) { return designedCrossover(method, block.crossovers[k]); });
}

}  // namespace tessavo
