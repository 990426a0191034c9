#include "compare/real_difference.h"

#include <gtest/gtest.h>

#include "compare/sets.h"
#include "params/volume_gain_table.h"

namespace tessavo::test {
namespace {

bool isReal(const ParameterSet& left, const ParameterSet& right, FieldId field, FieldIndex index = {}) {
    const bool forth = RealDifferences(left, right).isReal(fieldOf(field), index);
    EXPECT_EQ(RealDifferences(right, left).isReal(fieldOf(field), index), forth) << "the sides are not alike";
    return forth;
}

struct Pair {
    ParameterSet left = freshSet();
    ParameterSet right = freshSet();
    [[nodiscard]] bool volumeIsReal() const { return isReal(left, right, FieldId::volume, {3, 0}); }
    [[nodiscard]] bool groupGainIsReal() const { return isReal(left, right, FieldId::groupGain, {3, 0}); }
    [[nodiscard]] bool delayIsReal() const { return isReal(left, right, FieldId::delay, {3, 0}); }
    [[nodiscard]] bool groupDelayIsReal() const { return isReal(left, right, FieldId::groupDelay, {3, 0}); }
    void setGains(float leftVolume, float leftGroup, float rightVolume, float rightGroup) {
        left.channels[3].volumeDb = leftVolume;
        left.channels[3].groupGainDb = leftGroup;
        right.channels[3].volumeDb = rightVolume;
        right.channels[3].groupGainDb = rightGroup;
    }
    void setDelays(float leftDelay, float leftGroup, float rightDelay, float rightGroup) {
        left.channels[3].delayMs = leftDelay;
        left.channels[3].groupDelayMs = leftGroup;
        right.channels[3].delayMs = rightDelay;
        right.channels[3].groupDelayMs = rightGroup;
    }
};

TEST(RealDifference, OfASetAndWhatTheTargetMakesOfItIsNoneForEveryElement) {
    std::mt19937_64 random(9);
    for (int round = 0; round < 60; ++round) {
        const ParameterSet set = randomSet(random);
        const ParameterSet back = throughTheTarget(set);
        const ParameterSet twice = throughTheTarget(back);
        const RealDifferences forth(set, back);
        const RealDifferences later(back, twice);
        for (const TableElement& element : tableElements()) {
            EXPECT_FALSE(forth.isReal(*element.field, element.index)) << element.name();
            EXPECT_FALSE(later.isReal(*element.field, element.index)) << element.name();
        }
        EXPECT_EQ(compareSets(set, back).realDifferenceCount(), 0U);
    }
}

// Neighbours that the target can tell apart, of every field; the copies of a delay become that delay again.
TEST(RealDifference, OfAWholeStepIsOneForThatElementAlone) {
    const ParameterSet left = freshSet();
    for (const TableElement& element : tableElements()) {
        ParameterSet right = left;
        setStoredValue(right, *element.field, element.index,
                       anotherValue(left, *element.field, element.index));
        const RealDifferences real(left, right);
        const bool isCopy = element.field->id == FieldId::delaySize1Copies;
        for (const TableElement& each : tableElements()) {
            EXPECT_EQ(real.isReal(*each.field, each.index), each.key() == element.key() && !isCopy)
                << element.name() << ": " << each.name();
        }
    }
}

TEST(RealDifference, OfVolumesIsOneWhereTheGainWordsDiffer) {
    Pair pair;
    for (int left = -60; left <= 180; left += 7) {
        for (int right = -60; right <= 180; ++right) {
            const auto leftDb = static_cast<float>(left) / 10;
            const auto rightDb = static_cast<float>(right) / 10;
            pair.setGains(leftDb, 0, rightDb, 0);
            EXPECT_EQ(pair.volumeIsReal(), gainWordOf(leftDb, 0) != gainWordOf(rightDb, 0))
                << leftDb << " " << rightDb;
        }
    }
}

TEST(RealDifference, OfAVolumeBeyondItsRangeIsNone) {
    Pair pair;
    pair.setGains(20, 0, 18, 0);
    EXPECT_FALSE(pair.volumeIsReal());
    pair.setGains(-10, 0, -6, 0);
    EXPECT_FALSE(pair.volumeIsReal());
    pair.setGains(20, 0, 17.5F, 0);
    EXPECT_TRUE(pair.volumeIsReal());
}

TEST(RealDifference, OfVolumeAndGroupGainIsJudgedByTheirSum) {
    Pair pair;
    // Read back, the volume holds the group gain as well, which stays.
    pair.setGains(-1, 3, 2, 3);
    EXPECT_FALSE(pair.volumeIsReal());
    EXPECT_FALSE(pair.groupGainIsReal());
    // The same sum is no reason to take one group gain for another.
    pair.setGains(-1, 3, 2, 0);
    EXPECT_TRUE(pair.volumeIsReal());
    EXPECT_TRUE(pair.groupGainIsReal());
    // Another group gain does not make steps of the volume real.
    pair.setGains(1, 3, 1.2F, 0);
    EXPECT_FALSE(pair.volumeIsReal());
    EXPECT_TRUE(pair.groupGainIsReal());
    // The least part of a tenth moves the sum over a step.
    pair.setGains(0.96F, 0.04F, 0.96F, 0);
    EXPECT_FALSE(pair.groupGainIsReal());
    pair.setGains(0.96F, 0.05F, 1, 0);
    EXPECT_FALSE(pair.volumeIsReal());
    EXPECT_FALSE(pair.groupGainIsReal());
    pair.setGains(0, 0.1F, 0, 0);
    EXPECT_TRUE(pair.groupGainIsReal());
}

TEST(RealDifference, OfDelaysIsNoneWithinASampleAndAfterARound) {
    Pair pair;
    pair.setDelays(1, 0, delayOfSamples(50), 0);
    EXPECT_FALSE(pair.delayIsReal());
    pair.setDelays(1, 0, 1.005F, 0);
    EXPECT_FALSE(pair.delayIsReal());
    pair.setDelays(1, 0, 1.1F, 0);
    EXPECT_TRUE(pair.delayIsReal());
    // The whole set was read back with its group delay.
    pair.setDelays(1, 0.5F, delayOfSamples(delaySamplesOf(1, 0.5F)), 0.5F);
    EXPECT_FALSE(pair.delayIsReal());
    pair.setDelays(1, 0.5F, delayOfSamples(delaySamplesOf(1, 0.5F)), 0);
    EXPECT_TRUE(pair.delayIsReal());
    EXPECT_TRUE(pair.groupDelayIsReal());
    // Another group delay does not make a round's rounding real.
    pair.setDelays(1, 0, delayOfSamples(50), 0.5F);
    EXPECT_FALSE(pair.delayIsReal());
    EXPECT_TRUE(pair.groupDelayIsReal());
}

TEST(RealDifference, OfGainsOfTheInputIsOneWhereWholeNumbersDiffer) {
    Pair pair;
    pair.left.inputGainDb = 3.9F;
    pair.right.inputGainDb = 3;
    EXPECT_FALSE(isReal(pair.left, pair.right, FieldId::inputGain));
    pair.right.inputGainDb = 4;
    EXPECT_TRUE(isReal(pair.left, pair.right, FieldId::inputGain));
    pair.left.inputToneBands[1].gainDb = -0.9F;
    EXPECT_FALSE(isReal(pair.left, pair.right, FieldId::toneGain, {1, 0}));
    pair.left.inputToneBands[1].gainDb = -1;
    EXPECT_TRUE(isReal(pair.left, pair.right, FieldId::toneGain, {1, 0}));
}

TEST(RealDifference, OfSwitchesAndLettersIsNoneWhereTheTargetKnowsOneForm) {
    Pair pair;
    pair.left.inputEqOn = 1;
    pair.right.inputEqOn = 7;
    pair.left.channels[3].channelFlag = 1;
    pair.right.channels[3].channelFlag = 9;
    pair.left.channels[3].invertPhase = 1;
    pair.right.channels[3].invertPhase = 2;
    pair.left.channels[3].gainGroup = 2;
    pair.right.channels[3].gainGroup = 0x102;
    EXPECT_FALSE(isReal(pair.left, pair.right, FieldId::inputEqOn));
    EXPECT_FALSE(isReal(pair.left, pair.right, FieldId::channelFlag, {3, 0}));
    EXPECT_FALSE(isReal(pair.left, pair.right, FieldId::invertPhase, {3, 0}));
    EXPECT_FALSE(isReal(pair.left, pair.right, FieldId::gainGroup, {3, 0}));
    pair.right.channels[3].invertPhase = 0;
    EXPECT_TRUE(isReal(pair.left, pair.right, FieldId::invertPhase, {3, 0}));
    // Filters go over as they are.
    pair.left.channels[3].bands[0].off = 1;
    pair.right.channels[3].bands[0].off = 3;
    EXPECT_TRUE(isReal(pair.left, pair.right, FieldId::bandOff, {3, 0}));
}

TEST(RealDifference, OfWhatTheTargetDoesNotTakeIsReal) {
    Pair pair;
    pair.right.surroundOff = 1;
    pair.right.inputToneBands[0].frequencyHz = 200;
    EXPECT_TRUE(isReal(pair.left, pair.right, FieldId::surroundOff));
    EXPECT_TRUE(isReal(pair.left, pair.right, FieldId::toneFrequency, {0, 0}));
    pair.left.channels[3].bands[0].gainDb = 0;
    pair.right.channels[3].bands[0].gainDb = -0.0F;
    EXPECT_FALSE(isReal(pair.left, pair.right, FieldId::bandGain, {3, 0}));
}

}  // namespace
}  // namespace tessavo::test
