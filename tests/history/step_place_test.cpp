#include "history/step_place.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>

// Which values differ between two states, and in which set.

namespace tessavo::test {
namespace {

struct States {
    std::unique_ptr<TuningSnapshot> before = std::make_unique<TuningSnapshot>();
    std::unique_ptr<TuningSnapshot> after = std::make_unique<TuningSnapshot>();
    [[nodiscard]] std::vector<ChangedPlace> places() const { return changedPlaces(*before, *after); }
};

TEST(StepPlace, StatesThatAreTheSameHaveNone) {
    EXPECT_TRUE(States().places().empty());
}

TEST(StepPlace, EveryElementOfEveryFieldIsFoundAlone) {
    for (const Field& field : fieldTable()) {
        forEachElement(field, [&](FieldIndex index) {
            States states;
            states.after->currentSet = states.before->currentSet = 3;
            setStoredValue(states.after->store.sets[3], field, index, 1);
            const auto places = states.places();
            ASSERT_EQ(places.size(), 1U) << field.path;
            EXPECT_EQ(places[0].set, 3U);
            ASSERT_EQ(places[0].field, field.id);
            EXPECT_EQ(places[0].index.outer, index.outer);
            EXPECT_EQ(places[0].index.inner, index.inner);
        });
    }
}

TEST(StepPlace, ChannelAndBandAreThoseOfOutputChannelsOnly) {
    const ChangedPlace gain{0, FieldId::bandGain, {6, 2}};
    EXPECT_EQ(channelOf(gain), RecordChannel{6});
    EXPECT_EQ(bandOf(gain), 2U);
    const ChangedPlace crossover{0, FieldId::crossoverFrequency, {5, 1}};
    EXPECT_EQ(channelOf(crossover), RecordChannel{5});
    EXPECT_EQ(bandOf(crossover), std::nullopt);
    for (const FieldId field : {FieldId::inputBandGain, FieldId::toneGain, FieldId::surroundMode}) {
        const ChangedPlace place{0, field, {1, 0}};
        EXPECT_EQ(channelOf(place), std::nullopt);
        EXPECT_EQ(bandOf(place), std::nullopt);
    }
    EXPECT_EQ(channelOf({0, std::nullopt, {}}), std::nullopt);
}

TEST(StepPlace, TheCurrentSetGoesFirstThenTheFirstThatDiffers) {
    States states;
    states.after->currentSet = 4;
    for (const std::size_t set : {1U, 3U, 4U}) {
        states.after->store.sets[set].suppression = 9;
    }
    EXPECT_EQ(states.places().at(0).set, 4U);
    states.after->currentSet = 0;
    ASSERT_EQ(states.places().size(), 1U) << "of one set only";
    EXPECT_EQ(states.places()[0].set, 1U);
}

TEST(StepPlace, TheNameGoesFirstAndTheRestFollowsInRecordOrder) {
    States states;
    ParameterSet& set = states.after->store.sets[0];
    set.lineOutUse = 1;
    set.channels[2].bands[5].gainDb = 1;
    set.channels[2].bands[4].q = 2;
    set.setName[0] = u'A';
    const auto places = states.places();
    ASSERT_EQ(places.size(), 4U);
    EXPECT_EQ(places[0].field, std::nullopt);
    EXPECT_TRUE(std::is_sorted(places.begin() + 1, places.end(),
                               [](const auto& one, const auto& other) { return *one.field < *other.field; }));
}

TEST(StepPlace, BytesWithoutAFieldAreNoPlaceAndTheBypassBytesAreTheSwitch) {
    States states;
    states.after->store.sets[0].spare1579 = 7;
    EXPECT_TRUE(states.places().empty());
    States bypass;
    bypass.after->image.inputRow1.bypass = 1;
    ASSERT_EQ(bypass.places().size(), 1U);
    EXPECT_EQ(bypass.places()[0].field, FieldId::inputEqOn);
    States image;
    image.after->image.channels[3].delaySamples = 9;
    EXPECT_TRUE(image.places().empty());
}

}  // namespace
}  // namespace tessavo::test
