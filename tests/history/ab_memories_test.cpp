#include "history/ab_memories.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "history/session.h"

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;

/// A session that compares. Every channel has a source.
struct Comparison : Session {
    Comparison() {
        for (std::uint8_t c = 0; c < channelCount; ++c) {
            state.setRouterSource({c}, 1);
        }
        commit();
    }
    AbMemories::Switch switchSides() {
        return memories.switchSides([this](const TuningSnapshot& to) { state.restore(to); });
    }
    [[nodiscard]] std::string lastText() const { return std::string(history.undoText()); }
    [[nodiscard]] std::size_t steps() const { return history.steps().size(); }

    AbMemories memories{state, history};
};

TEST(AbMemories, AIsHeardAtFirstInEverySetAndNeitherHoldsAnything) {
    Comparison session;
    for (std::uint32_t set = 0; set < setCount; ++set) {
        session.state.selectSet(set);
        EXPECT_EQ(session.memories.heard(), AbSide::a);
        EXPECT_FALSE(session.memories.has(AbSide::a) || session.memories.has(AbSide::b));
        EXPECT_FALSE(session.memories.isChanged());
    }
}

TEST(AbMemories, TheFirstSwitchCopiesTheSetIntoBothAndIsAStep) {
    Comparison session;
    const Bytes before = session.row();
    const std::size_t steps = session.steps();
    const AbMemories::Switch done = session.switchSides();
    EXPECT_TRUE(done.to == AbSide::b && done.isCopy && !done.hadChanges);
    EXPECT_SAME_BYTES(session.row(), before);
    EXPECT_EQ(session.steps(), steps + 1);
    EXPECT_EQ(session.lastText(), "Switched to B");
    EXPECT_EQ(session.memories.heard(), AbSide::b);
    EXPECT_TRUE(session.memories.has(AbSide::a) && session.memories.has(AbSide::b));
    EXPECT_TRUE(session.history.undo());
    EXPECT_EQ(session.memories.heard(), AbSide::a);
    EXPECT_SAME_BYTES(session.row(), before);
    EXPECT_TRUE(session.history.redo());
    EXPECT_EQ(session.memories.heard(), AbSide::b);
}

// F8 alone writes over what F8 has stored.
TEST(AbMemories, TheFirstSwitchTakesWhatHasChangedSinceIntoTheOtherSideAlone) {
    Comparison session;
    session.memories.store();
    const Bytes stored = session.row();
    session.stepTo(5);
    const Bytes edited = session.row();
    const AbMemories::Switch done = session.switchSides();
    EXPECT_TRUE(done.isCopy && done.hadChanges);
    EXPECT_SAME_BYTES(session.row(), edited) << "B";
    EXPECT_FALSE(session.memories.isChanged());
    session.switchSides();
    EXPECT_SAME_BYTES(session.row(), stored) << "A";
    EXPECT_FALSE(session.memories.isChanged());
    session.switchSides();
    EXPECT_SAME_BYTES(session.row(), edited) << "B";
}

TEST(AbMemories, SwitchesBetweenThemToTheByteAndUndoBringsEverythingBack) {
    Comparison session;
    session.stepTo(3);
    session.state.setName(u"first");
    session.commit();
    session.receive(session.image());  // its sources go into all sets
    session.memories.store();
    const Bytes a = session.row();
    session.switchSides();
    session.stepTo(9);
    // Words of each kind, which belong to what the pages draw.
    session.state.setBandGainOrQ(2, BandValue::gain, 4.5F, true);
    session.state.setCrossoverFrequency(0, 140, true);
    session.state.setInputBandGain(3, -6.0F, true);
    session.commit();
    Bytes image = session.image();
    image[3041] = 77;  // nobody knows this byte
    session.receive(image);
    session.memories.store();
    const Bytes b = session.row();
    ASSERT_NE(a, b);
    std::vector<std::pair<Bytes, AbSide>> way{{b, AbSide::b}};
    const std::size_t start = session.steps();
    for (int round = 0; round < 5; ++round) {
        const AbMemories::Switch done = session.switchSides();
        EXPECT_FALSE(done.isCopy || done.hadChanges);
        EXPECT_EQ(done.to, round % 2 == 0 ? AbSide::a : AbSide::b);
        EXPECT_SAME_BYTES(session.row(), round % 2 == 0 ? a : b);
        EXPECT_EQ(session.lastText(), round % 2 == 0 ? "Switched to A" : "Switched to B");
        way.emplace_back(session.row(), done.to);
    }
    EXPECT_EQ(session.steps(), start + 5);
    for (std::size_t i = way.size() - 1; i-- > 0;) {
        ASSERT_TRUE(session.history.undo());
        EXPECT_SAME_BYTES(session.row(), way[i].first);
        EXPECT_EQ(session.memories.heard(), way[i].second);
    }
    for (std::size_t i = 1; i < way.size(); ++i) {
        ASSERT_TRUE(session.history.redo());
        EXPECT_SAME_BYTES(session.row(), way[i].first);
        EXPECT_EQ(session.memories.heard(), way[i].second);
    }
}

TEST(AbMemories, TheOtherSetsAndTheirReceivedImagesStay) {
    Comparison session;
    session.memories.store();
    session.switchSides();
    session.stepTo(4);
    session.memories.store();
    session.state.selectSet(3);
    session.state.setVolume(11, true);
    session.receive(session.image());
    session.state.selectSet(0);
    session.state.setRouterSource({2}, 0);
    session.commit();
    const auto before = snapshotOf(session.state);
    session.switchSides();
    const auto after = snapshotOf(session.state);
    for (std::size_t set = 1; set < setCount; ++set) {
        EXPECT_SAME_BYTES(bytesOf(after->store.sets[set]), bytesOf(before->store.sets[set])) << set;
        EXPECT_SAME_BYTES(bytesOf(after->received[set]), bytesOf(before->received[set])) << set;
    }
    EXPECT_NE(bytesOf(after->store.sets[0]), bytesOf(before->store.sets[0]));
    EXPECT_EQ(after->currentSet, 0U);
}

TEST(AbMemories, WhatWasNotStoredIsLeftOutAndComesBackByUndo) {
    Comparison session;
    session.switchSides();
    session.switchSides();
    EXPECT_EQ(session.memories.heard(), AbSide::a);
    EXPECT_FALSE(session.memories.isChanged());
    session.stepTo(6);
    EXPECT_TRUE(session.memories.isChanged());
    const Bytes edited = session.row();
    AbMemories::Switch done = session.switchSides();
    EXPECT_TRUE(done.hadChanges && !done.isCopy);
    done = session.switchSides();
    EXPECT_FALSE(done.hadChanges);
    EXPECT_NE(session.row(), edited) << "A is what was stored";
    session.history.undo();
    session.history.undo();
    EXPECT_SAME_BYTES(session.row(), edited);
    EXPECT_EQ(session.memories.heard(), AbSide::a);
    EXPECT_TRUE(session.memories.isChanged());
    session.memories.store();
    EXPECT_FALSE(session.memories.isChanged());
}

TEST(AbMemories, AStepInTheMakingEndsBeforeTheSwitch) {
    Comparison session;
    session.switchSides();
    session.history.beginGesture(Gesture::run);
    session.state.setVolume(8, true);
    const AbMemories::Switch done = session.switchSides();
    EXPECT_TRUE(done.hadChanges);
    const auto texts = session.texts();
    EXPECT_THAT(std::vector(texts.end() - 2, texts.end()),
                ElementsAre("Channel 1, volume 8.0 dB", "Switched to A"));
    EXPECT_EQ(session.history.gesture(), Gesture::none);
}

TEST(AbMemories, AnEditInThePlaceOfAnUndoneSwitchForgetsIt) {
    Comparison session;
    session.switchSides();
    ASSERT_EQ(session.memories.heard(), AbSide::b);
    session.history.undo();
    ASSERT_EQ(session.memories.heard(), AbSide::a);
    session.stepTo(2);
    EXPECT_EQ(session.memories.heard(), AbSide::a) << "the same number, another step";
    session.history.undo();
    session.history.redo();
    EXPECT_EQ(session.memories.heard(), AbSide::a);
}

TEST(AbMemories, EverySetHasItsOwnSideAndMemories) {
    Comparison session;
    session.stepTo(1);
    session.switchSides();
    session.state.selectSet(4);
    EXPECT_EQ(session.memories.heard(), AbSide::a);
    EXPECT_FALSE(session.memories.has(AbSide::b));
    session.stepTo(2);
    session.memories.store();
    session.switchSides();
    session.switchSides();
    EXPECT_EQ(session.memories.heard(), AbSide::a);
    session.state.selectSet(0);
    EXPECT_EQ(session.memories.heard(), AbSide::b);
    EXPECT_FALSE(session.memories.isChanged());
    // Back over the switches of the other set, and then over its own.
    while (session.history.undoText() != "Channel 1, volume 1.0 dB") {
        ASSERT_TRUE(session.history.undo());
    }
    EXPECT_EQ(session.state.currentSet(), 0U);
    EXPECT_EQ(session.memories.heard(), AbSide::a);
}

TEST(AbMemories, ASwitchThatIsTooOldToBeUndoneStillCounts) {
    Comparison session;
    session.switchSides();
    const std::uint64_t number = session.history.dropped() + session.history.position();
    ParameterStore store = session.state.store();
    while (session.history.dropped() < number) {
        for (auto& set : store.sets) {
            for (auto& channel : set.channels) {
                channel.bands.fill({.frequencyHz = static_cast<std::uint16_t>(session.steps()), .gainDb = 1});
            }
        }
        session.state.replaceStore(store);
        session.commit();
        ASSERT_EQ(session.memories.heard(), AbSide::b);
    }
    while (session.history.undo()) {
    }
    EXPECT_EQ(session.memories.heard(), AbSide::b);
}

TEST(AbMemories, TheLouderSideIsToBeLowered) {
    Comparison session;
    session.state.setSelectionMask(0xFF);
    session.stepTo(3);
    EXPECT_EQ(session.memories.levelMatch(AbSide::a), LevelMatch{}) << "nothing to compare with";
    session.memories.store();
    EXPECT_EQ(session.memories.levelMatch(AbSide::a), LevelMatch{});
    session.switchSides();
    session.stepTo(5.5F);
    EXPECT_EQ(session.memories.levelMatch(AbSide::b), LevelMatch{}) << "not stored yet";
    session.memories.store();
    EXPECT_EQ(session.memories.levelMatch(AbSide::b), LevelMatch{.loweredSteps = 5});
    EXPECT_EQ(session.memories.levelMatch(AbSide::a), LevelMatch{});
}

}  // namespace
}  // namespace tessavo::test
