#include "response/channel_model.h"

#include <gtest/gtest.h>

#include "dsp/fixed_point.h"
#include "response/long_channel.h"

namespace tessavo::test {
namespace {

TEST(PlayedModel, IsWhatTheWordsSay) {
    ChannelImageBlock block = plainBlock();
    block.gainWord = 0x07F17AF4;
    block.delaySamples = 4000000000U;
    block.bands[3].off = 0;
    block.bandWords[3] = {268435456, -134217728, 67108864, -1073741824, 536870912};
    const ChannelModel model = playedModel(block);
    EXPECT_EQ(model.gain, 133266164.0 / 16777216.0);
    EXPECT_EQ(model.delaySamples, 4000000000U);
    ASSERT_EQ(model.sections.size(), 1U);
    EXPECT_EQ(model.sections[0].b0, 1.0);
    EXPECT_EQ(model.sections[0].b1, -0.5);
    EXPECT_EQ(model.sections[0].b2, 0.25);
    EXPECT_EQ(model.sections[0].a1, -1.0);
    EXPECT_EQ(model.sections[0].a2, 0.5);
}

TEST(PlayedModel, TakesEachBandThatIsNotOffAndEachCrossoverThatIsEnabled) {
    // The parameters that were not touched must not matter: every section is told apart by its b0.
    for (unsigned inCircuit = 0; inCircuit < 1024; ++inCircuit) {
        ChannelImageBlock block = plainBlock();
        std::vector<double> expected;
        for (unsigned b = 0; b < 8; ++b) {
            block.bands.at(b).off = (inCircuit >> b & 1U) != 0 ? 0 : 255;
            block.bandWords.at(b).b0 = static_cast<std::int32_t>(b + 1) << 24;
            if (block.bands.at(b).off == 0) {
                expected.push_back((b + 1) / 16.0);
            }
        }
        for (unsigned k = 0; k < 2; ++k) {
            CrossoverParams& crossover = block.crossovers.at(k);
            crossover.enabled = (inCircuit >> (8 + k) & 1U) != 0 ? 7 : 0;
            crossover.order = k == 0 ? 4 : 2;
            block.crossoverWords.at(k).b0 = static_cast<std::int32_t>(k + 9) << 24;
            if (crossover.enabled != 0) {
                expected.insert(expected.end(), k == 0 ? 2 : 1, (k + 9) / 16.0);
            }
        }
        std::vector<double> found;
        for (const Section& section : playedModel(block).sections) {
            found.push_back(section.b0);
        }
        ASSERT_EQ(found, expected) << inCircuit;
    }
}

TEST(PlayedModel, InvertsForAnyByteButZero) {
    ChannelImageBlock block = plainBlock();
    EXPECT_EQ(playedModel(block).gain, 1.0);
    for (const int invert : {1, 2, 255}) {
        block.invertPhase = static_cast<std::uint8_t>(invert);
        EXPECT_EQ(playedModel(block).gain, -1.0) << invert;
    }
}

class IdealModel : public testing::TestWithParam<std::size_t> {};

TEST_P(IdealModel, BecomesTheWordsWhenItIsConverted) {
    const FilterMethods methods = makeFilterMethods();
    IcoefficientGenerator& method = *methods.at(GetParam());
    std::mt19937 random(static_cast<std::uint32_t>(GetParam()));
    int compared = 0;
    for (int round = 0; round < 300; ++round) {
        const ChannelImageBlock block = randomBlock(random, method);
        const ChannelModel ideal = idealModel(block, method);
        const ChannelModel played = playedModel(block);
        EXPECT_EQ(ideal.gain, played.gain);
        EXPECT_EQ(ideal.delaySamples, played.delaySamples);
        ASSERT_EQ(ideal.sections.size(), played.sections.size());
        for (std::size_t i = 0; i < ideal.sections.size(); ++i) {
            BiquadWords words;
            if (!coefficientsToFixed(ideal.sections[i].scaled(), words)) {
                continue;  // A boost beyond what the words can hold.
            }
            ++compared;
            const Section& section = played.sections[i];
            EXPECT_EQ(std::ldexp(section.b0, 28), words.b0);
            EXPECT_EQ(std::ldexp(section.b1, 28), words.b1);
            EXPECT_EQ(std::ldexp(section.b2, 28), words.b2);
            EXPECT_EQ(std::ldexp(section.a1, 30), words.a1);
            EXPECT_EQ(std::ldexp(section.a2, 30), words.a2);
        }
    }
    EXPECT_GT(compared, 1500);
}

INSTANTIATE_TEST_SUITE_P(Methods, IdealModel, testing::Values(0, 1, 2));

TEST(IdealModelOfAnUnknownType, PassesEverythingThroughAndWarnsNobody) {
    bool warned = false;
    const FilterMethods methods = makeFilterMethods([&](std::string_view) { warned = true; });
    ChannelImageBlock block = plainBlock();
    block.bands[0] = {.type = 9, .frequencyHz = 500, .gainDb = 18, .q = 5, .off = 0};
    block.bands[1] = {.type = 0, .frequencyHz = 20000, .gainDb = 40, .q = 1, .off = 0};
    for (const auto& method : methods) {
        const ChannelModel ideal = idealModel(block, *method);
        ASSERT_EQ(ideal.sections.size(), 2U);
        EXPECT_EQ(ideal.sections[0].b0, 1.0);
        EXPECT_EQ(ideal.sections[0].b1, 0.0);
        EXPECT_EQ(ideal.sections[0].a2, 0.0);
        EXPECT_TRUE(method->warnUnstable());
    }
    EXPECT_FALSE(warned);
}

}  // namespace
}  // namespace tessavo::test
