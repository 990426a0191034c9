#include <gtest/gtest.h>

#include "support/harness.h"

namespace tessavo::test {
namespace {

using Random = std::mt19937_64;

float tenthsBetween(Random& random, int lowest, int highest) {
    return static_cast<float>(lowest +
                              static_cast<int>(random() % static_cast<unsigned>(highest - lowest + 1))) /
           10.0F;
}

/// Gains stay within 12 dB, so that every filter converts: a failed conversion keeps words of the past, which
/// a fresh start cannot know.
void editAtRandom(TuningState& state, Random& random) {
    const bool final = random() % 2 == 0;
    const RecordChannel channel{static_cast<std::uint8_t>(random() % 8)};
    const auto band = static_cast<std::size_t>(random() % 8);
    const auto crossover = static_cast<std::size_t>(random() % 2);
    const auto frequencyHz = static_cast<std::uint16_t>(20 + random() % 19981);
    switch (random() % 22) {
        case 0:
            return state.setDelay(tenthsBetween(random, 0, 20), final);
        case 1:
            return state.setVolume(tenthsBetween(random, -100, 200), final);
        case 2:
            return state.setInvertPhase(true, static_cast<std::uint8_t>(random() % 2));
        case 3:
            return state.setBandFrequency(band, frequencyHz, final);
        case 4:
            return state.setBandType(band, static_cast<std::uint8_t>(random() % 3));
        case 5:
            return state.setBandGainOrQ(band, BandValue::gain, tenthsBetween(random, -120, 120), final);
        case 6:
            return state.setBandGainOrQ(band, BandValue::q, tenthsBetween(random, 1, 200), final);
        case 7:
            return state.setBandOff(band, static_cast<std::uint8_t>(random() % 2));
        case 8:
            return state.setCrossover(crossover, static_cast<std::uint8_t>(random() % 2),
                                      random() % 2 == 0 ? 2 : 4, static_cast<std::uint8_t>(random() % 2));
        case 9:
            return state.setCrossoverFrequency(crossover, frequencyHz, final);
        case 10:
            return state.setLimiter(static_cast<LimiterField>(random() % 7),
                                    -static_cast<std::int32_t>(random() % 400), final);
        case 11:
            return state.setGroupGain(channel, tenthsBetween(random, -240, 240));
        case 12:
            return state.setGroupDelay(channel, tenthsBetween(random, 0, 200));
        case 13:
            return state.setGainGroup(channel, static_cast<std::uint32_t>(random() % 8));
        case 14:
            return state.setDelayGroup(channel, static_cast<std::uint32_t>(random() % 8));
        case 15:
            return state.setChannelFlag(channel, static_cast<std::uint8_t>(random() % 2));
        case 16:
            return state.setRouterSource(channel, static_cast<std::uint8_t>(random() % 14));
        case 17:
            return state.setInputBandGain(static_cast<std::size_t>(random() % 13),
                                          tenthsBetween(random, -120, 120), final);
        case 18:
            return state.setInputEqOn(random() % 2 == 0);
        case 19:
            return state.setSelectionMask(static_cast<std::uint8_t>(random()));
        case 20:
            return state.setName(random() % 2 == 0 ? u"one" : u"another name");
        default: {
            constexpr std::array<FieldId, 12> plain{
                FieldId::inputGain,      FieldId::powerampGain, FieldId::preampGain, FieldId::roomSize,
                FieldId::surroundMode,   FieldId::lineInGain,   FieldId::delaySize1, FieldId::delaySize2,
                FieldId::compressorGain, FieldId::pone,         FieldId::lineOutUse, FieldId::surroundOff};
            state.edit(plain[random() % plain.size()], {}, static_cast<double>(random() % 300) - 150.0,
                       final);
        }
    }
}

void expectSameWords(const TuningState& one, const TuningState& other) {
    for (std::uint8_t c = 0; c < 8; ++c) {
        for (std::size_t band = 0; band < 8; ++band) {
            ASSERT_EQ(one.bandWords({c}, band), other.bandWords({c}, band)) << int{c} << " " << band;
        }
        for (std::size_t k = 0; k < 2; ++k) {
            ASSERT_EQ(one.crossoverWords({c}, k), other.crossoverWords({c}, k)) << int{c} << " " << k;
        }
    }
    for (std::size_t band = 0; band < 13; ++band) {
        ASSERT_EQ(one.inputWords(band), other.inputWords(band)) << band;
    }
}

class WholeSet : public ::testing::TestWithParam<std::uint32_t> {};

INSTANTIATE_TEST_SUITE_P(, WholeSet, ::testing::Values(0U, 1U, 2U));

TEST_P(WholeSet, IsTheSameHoweverItCameAbout) {
    for (std::uint64_t seed = 0; seed < 40; ++seed) {
        Random random(seed);
        Tuning edited;
        edited.state.setFilterMode(GetParam());
        edited.state.setCurveDisplay(nullptr);
        if (seed % 4 == 1) {
            edited.load(randomStore(random), static_cast<std::uint32_t>(random() % 5));
        }
        // A fresh start knows mode 0 alone: the other modes need one change of set to be in step.
        if (GetParam() != 0) {
            edited.state.selectSet(static_cast<std::uint32_t>(random() % 5));
        }
        for (int i = 0; i < 300; ++i) {
            editAtRandom(edited.state, random);
            if (random() % 40 == 0 && seed % 4 > 1) {
                edited.state.selectSet(static_cast<std::uint32_t>(random() % 5));
            }
        }
        Tuning fresh;
        fresh.state.setFilterMode(GetParam());
        fresh.load(edited.store(), edited.state.currentSet());
        // The switch's bytes are its own: no set and no file brings them along.
        Bytes fromFile = fresh.image();
        ASSERT_EQ(fromFile[6], 0);
        ASSERT_EQ(fromFile[22], 0);
        fromFile[6] = fromFile[22] = edited.image()[6];
        ASSERT_SAME_BYTES(fromFile, edited.image()) << "seed " << seed;
        expectSameWords(fresh.state, edited.state);

        Bytes expected(imageSize, 0);
        expected[6] = expected[22] = edited.image()[6];
        mirrorSet(edited.store(), edited.state.currentSet(), GetParam(), expected);
        ASSERT_SAME_BYTES(edited.image(), expected) << "seed " << seed;
    }
}

}  // namespace
}  // namespace tessavo::test
