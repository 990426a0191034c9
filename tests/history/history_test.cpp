#include "history/history.h"

#include <cstring>
#include <gtest/gtest.h>

#include "history/session.h"
#include "params/set_text.h"

namespace tessavo::test {
namespace {

using Texts = std::vector<std::string>;

TEST(History, BeginsWithoutSteps) {
    Session session;
    EXPECT_TRUE(session.history.steps().empty());
    EXPECT_EQ(session.history.position(), 0U);
    EXPECT_EQ(session.history.dropped(), 0U);
    EXPECT_EQ(session.history.memory(), 0U);
    EXPECT_FALSE(session.history.canUndo());
    EXPECT_FALSE(session.history.canRedo());
    EXPECT_EQ(session.history.undoText(), "");
    EXPECT_EQ(session.history.redoText(), "");
    const Bytes before = session.row();
    EXPECT_FALSE(session.history.undo());
    EXPECT_FALSE(session.history.redo());
    EXPECT_FALSE(session.history.goTo(0));
    EXPECT_FALSE(session.history.goTo(1));
    EXPECT_FALSE(session.commit());
    EXPECT_SAME_BYTES(session.row(), before);
    EXPECT_TRUE(session.events.empty());
    EXPECT_EQ(session.refreshes, 0);
}

TEST(History, GivesTheListenerBackWhenItEnds) {
    Tuning tuning;
    { const History history(tuning.state); }
    tuning.state.setVolume(3, true);  // would call into an object that is gone
    EXPECT_EQ(tuning.state.currentParameterSet().channels[7].volumeDb, 3.0F);
}

/// One of every change that a person can make, in the words of its step.
struct Change {
    const char* text;
    std::function<void(Session&)> make;
};

std::vector<Change> everyChange() {
    return {
        {"Channel 1, delay 1.5 ms", [](Session& s) { s.state.setDelay(1.5F, true); }},
        {"Channel 1, volume 3.5 dB", [](Session& s) { s.state.setVolume(3.5F, true); }},
        {"Channel 1, invert phase on", [](Session& s) { s.state.setInvertPhase(true, 1); }},
        {"Channel 1, phase of what plays off", [](Session& s) { s.state.setInvertPhase(false, 0); }},
        {"Channel 1, Filter 2 frequency 555 Hz", [](Session& s) { s.state.setBandFrequency(1, 555, true); }},
        {"Channel 1, Filter 2 type High Shelf", [](Session& s) { s.state.setBandType(1, 0); }},
        {"Channel 1, Filter 2 gain 4.0 dB",
         [](Session& s) { s.state.setBandGainOrQ(1, BandValue::gain, 4, true); }},
        {"Channel 1, Filter 2 Q 4.0", [](Session& s) { s.state.setBandGainOrQ(1, BandValue::q, 4, true); }},
        {"Channel 1, Filter 2 on", [](Session& s) { s.state.setBandOff(1, 0); }},
        {"Channel 1, Crossover Filter 1 on, kind LP, order 4",
         [](Session& s) { s.state.setCrossover(0, 1, 4, 1); }},
        {"Channel 1, Crossover Filter 1 frequency 444 Hz",
         [](Session& s) { s.state.setCrossoverFrequency(0, 444, true); }},
        {"Channel 1, Limiter gain \u22122.2 dB",
         [](Session& s) { s.state.setLimiter(LimiterField::gain, -22, true); }},
        {"Output Group, Channel 2, gain 2.0 dB", [](Session& s) { s.state.setGroupGain({4}, 2); }},
        {"Output Group, Channel 2, delay 2.0 ms", [](Session& s) { s.state.setGroupDelay({4}, 2); }},
        {"Output Group, Channel 2, gain group D", [](Session& s) { s.state.setGainGroup({4}, 3); }},
        {"Output Group, Channel 2, delay group D", [](Session& s) { s.state.setDelayGroup({4}, 3); }},
        {"Channel flag 2 on", [](Session& s) { s.state.setChannelFlag({4}, 1); }},
        {"Channel 4, source RearLeftTotal", [](Session& s) { s.state.setRouterSource({4}, 12); }},
        {"Input, 600 Hz gain 9.0 dB", [](Session& s) { s.state.setInputBandGain(3, 9, true); }},
        {"Input EQ off", [](Session& s) { s.state.setInputEqOn(false); }},
        {"PONE \u22123.3 dB", [](Session& s) { s.state.edit(FieldId::pone, {}, -33, true); }},
        {"Set 1 named \u201Cabc\u201D", [](Session& s) { s.state.setName(u"abc"); }},
        {"Opened car.eqs",
         [](Session& s) {
             std::mt19937_64 random(1);
             s.state.replaceStore(recordOf<ParameterStore>(randomStore(random)));
             s.history.commit("Opened car.eqs");
         }},
        {"Read set",
         [](Session& s) {
             std::mt19937_64 random(2);
             Tuning other;
             other.load(randomStore(random), 2);
             s.receive(other.image());
         }},
        {"Disable All",
         [](Session& s) {
             s.history.beginGesture(Gesture::press);
             s.state.setSelectionMask(0xFF);
             for (std::size_t band = 0; band < bandCount; ++band) {
                 s.state.setBandOff(band, 1);
             }
             s.history.commit("Disable All");
             s.history.endGesture();
             s.state.setSelectionMask(0x80);
         }},
    };
}

TEST(History, EveryChangeIsAStepThatLeadsBackAndForthByteByByte) {
    Session session;
    session.state.setBandOff(0, 0);
    session.commit();
    std::vector<Bytes> rows{session.row()};
    for (const Change& change : everyChange()) {
        const std::size_t before = session.history.position();
        change.make(session);
        session.commit();
        EXPECT_EQ(session.history.position(), before + 1) << change.text;
        EXPECT_EQ(session.history.undoText(), change.text);
        rows.push_back(session.row());
        EXPECT_NE(rows.back(), rows[rows.size() - 2]) << change.text;
        // One at a time ...
        EXPECT_TRUE(session.history.undo());
        EXPECT_SAME_BYTES(session.row(), rows[rows.size() - 2]) << change.text;
        EXPECT_EQ(session.history.redoText(), change.text);
        EXPECT_TRUE(session.history.redo());
        EXPECT_SAME_BYTES(session.row(), rows.back()) << change.text;
    }
    // ... and all of them.
    for (std::size_t i = rows.size() - 1; i > 0; --i) {
        EXPECT_TRUE(session.history.undo());
        EXPECT_SAME_BYTES(session.row(), rows[i - 1]);
    }
    for (std::size_t i = 1; i < rows.size(); ++i) {
        EXPECT_TRUE(session.history.redo());
        EXPECT_SAME_BYTES(session.row(), rows[i]);
    }
    EXPECT_FALSE(session.history.redo());
}

TEST(History, AStepKnowsItsTimeAndItsSet) {
    Session session;
    session.stepTo(1);
    session.state.selectSet(3);
    session.stepTo(2);
    const auto& steps = session.history.steps();
    ASSERT_EQ(steps.size(), 2U);
    EXPECT_EQ(steps[0]->set, 0U);
    EXPECT_EQ(steps[1]->set, 3U);
    EXPECT_LT(steps[0]->time, steps[1]->time);
    EXPECT_EQ(steps[1]->time, session.now);
    Tuning tuning;
    History history(tuning.state);
    const auto start = std::chrono::system_clock::now();
    tuning.state.setVolume(3, true);
    ASSERT_TRUE(history.commit());
    EXPECT_GE(history.steps()[0]->time, start) << "the system's clock when none is given";
    EXPECT_LE(history.steps()[0]->time, std::chrono::system_clock::now());
}

TEST(History, AValueThatStaysIsNoStep) {
    Session session;
    session.stepTo(3);
    session.history.undo();
    session.state.setVolume(0, true);
    EXPECT_TRUE(session.history.canUndo()) << "it may be one";
    EXPECT_FALSE(session.history.canRedo());
    EXPECT_FALSE(session.commit());
    EXPECT_FALSE(session.history.canUndo());
    EXPECT_TRUE(session.history.canRedo()) << "what was undone is still there";
    EXPECT_TRUE(session.history.redo());
    EXPECT_EQ(session.state.currentParameterSet().channels[7].volumeDb, 3.0F);
}

TEST(History, AStepDropsWhatWasUndone) {
    Session session;
    for (const float volume : {1.0F, 2.0F, 3.0F, 4.0F}) {
        session.stepTo(volume);
    }
    ASSERT_TRUE(session.history.goTo(1));
    const std::size_t memory = session.history.memory();
    session.stepTo(9);
    EXPECT_EQ(session.texts(), (Texts{"Channel 1, volume 1.0 dB", "Channel 1, volume 9.0 dB"}));
    EXPECT_EQ(session.history.position(), 2U);
    EXPECT_FALSE(session.history.canRedo());
    EXPECT_LT(session.history.memory(), memory);
}

TEST(History, UndoEndsTheStepInTheMakingAndUndoesIt) {
    Session session;
    session.stepTo(1);
    const Bytes one = session.row();
    session.state.setVolume(2, false);
    EXPECT_EQ(session.history.undoText(), "Channel 1, volume 1.0 dB")
        << "a step in the making does not count";
    EXPECT_TRUE(session.history.undo());
    EXPECT_SAME_BYTES(session.row(), one);
    EXPECT_EQ(session.history.redoText(), "Channel 1, volume 2.0 dB");
    session.state.setVolume(3, true);
    EXPECT_FALSE(session.history.redo()) << "that is a step, and nothing is left to redo";
    EXPECT_EQ(session.history.position(), 2U);
    session.state.setVolume(4, true);
    EXPECT_TRUE(session.history.goTo(0));
    EXPECT_EQ(session.history.steps().size(), 3U);
    session.state.setVolume(5, true);
    EXPECT_FALSE(session.history.goTo(3)) << "what was undone is gone by then";
    EXPECT_EQ(session.texts(), Texts{"Channel 1, volume 5.0 dB"});
}

TEST(History, GoesToAnyPositionAtOnce) {
    Session session;
    std::vector<Bytes> rows{session.row()};
    for (int i = 1; i <= 12; ++i) {
        session.stepTo(static_cast<float>(i));
        rows.push_back(session.row());
    }
    session.refreshes = 0;
    int moves = 0;
    for (const std::size_t to : {0U, 12U, 3U, 4U, 2U, 11U, 11U, 0U, 13U, 1U}) {
        const bool moves_there = to <= 12 && to != session.history.position();
        EXPECT_EQ(session.history.goTo(to), moves_there) << to;
        moves += moves_there ? 1 : 0;
        if (moves_there) {
            EXPECT_EQ(session.history.position(), to);
        }
        EXPECT_SAME_BYTES(session.row(), rows[session.history.position()]);
    }
    EXPECT_EQ(session.refreshes, moves) << "the pages once each time";
}

// --- choosing a set

TEST(HistoryOfSets, ChoosingASetIsNoStep) {
    Session session;
    for (const std::uint32_t set : {1U, 4U, 4U, 0U}) {
        session.state.selectSet(set);
    }
    EXPECT_FALSE(session.commit());
    EXPECT_FALSE(session.history.canUndo());
    EXPECT_TRUE(session.chosen.empty());
}

TEST(HistoryOfSets, ChoosingASetEndsTheStepInTheMaking) {
    Session session;
    session.history.beginGesture(Gesture::press);
    session.state.setVolume(1, false);
    session.state.selectSet(1);
    session.state.setVolume(2, false);
    session.history.endGesture();
    EXPECT_EQ(session.texts(), (Texts{"Channel 1, volume 1.0 dB", "Channel 1, volume 2.0 dB"}));
    EXPECT_EQ(session.history.steps()[0]->set, 0U);
    EXPECT_EQ(session.history.steps()[1]->set, 1U);
    EXPECT_TRUE(session.history.steps()[0]->lead.empty());
    EXPECT_FALSE(session.history.steps()[1]->lead.empty());
}

TEST(HistoryOfSets, UndoInAnotherSetChoosesThatSetFirst) {
    Session session;
    session.state.setInputEqOn(false);
    session.commit();
    const Bytes inFirst = session.row();
    session.state.setVolume(1, true);
    session.commit();
    const Bytes afterFirst = session.row();
    session.state.selectSet(2);
    const Bytes inThird = session.row();
    session.state.setVolume(2, true);
    session.commit();
    const Bytes afterThird = session.row();
    session.state.selectSet(4);

    EXPECT_TRUE(session.history.undo());
    EXPECT_EQ(session.chosen, std::vector<std::uint32_t>{2});
    EXPECT_SAME_BYTES(session.row(), inThird);
    EXPECT_TRUE(session.history.undo());
    EXPECT_EQ(session.chosen, (std::vector<std::uint32_t>{2, 0}));
    EXPECT_SAME_BYTES(session.row(), inFirst);
    session.state.selectSet(3);
    EXPECT_TRUE(session.history.canRedo()) << "choosing a set drops nothing";
    EXPECT_TRUE(session.history.redo());
    EXPECT_EQ(session.chosen, (std::vector<std::uint32_t>{2, 0, 0}));
    EXPECT_SAME_BYTES(session.row(), afterFirst);
    EXPECT_TRUE(session.history.redo());
    EXPECT_EQ(session.chosen, (std::vector<std::uint32_t>{2, 0, 0, 2}));
    EXPECT_SAME_BYTES(session.row(), afterThird);
}

TEST(HistoryOfSets, WorksWithoutAWindow) {
    Tuning tuning;
    History history(tuning.state);
    tuning.state.setVolume(1, true);
    history.commit();
    tuning.state.selectSet(2);
    EXPECT_TRUE(history.undo());
    EXPECT_EQ(tuning.state.currentSet(), 0U);
    EXPECT_EQ(tuning.state.currentParameterSet().channels[7].volumeDb, 0.0F);
}

TEST(HistoryOfSets, AStepBehindAnUndoneOneInAnotherSetLeadsBackAsWell) {
    Session session;
    session.stepTo(1);
    session.state.selectSet(1);
    const Bytes start = session.row();
    session.stepTo(2);
    ASSERT_TRUE(session.history.undo());
    session.state.selectSet(3);
    const Bytes elsewhere = session.row();
    session.stepTo(3);
    const Bytes end = session.row();
    EXPECT_EQ(session.history.position(), 2U);
    EXPECT_TRUE(session.history.undo());
    EXPECT_SAME_BYTES(session.row(), elsewhere);
    EXPECT_TRUE(session.history.undo());
    EXPECT_EQ(session.state.currentSet(), 0U);
    EXPECT_TRUE(session.history.goTo(2));
    EXPECT_SAME_BYTES(session.row(), end);
    EXPECT_NE(start, elsewhere);
}

TEST(HistoryOfSets, KeepsTabSelectionAndMethod) {
    Session session;
    session.state.setSelectionMask(0x11);
    session.stepTo(1);
    session.state.setSelectionMask(0x42);
    session.state.setFilterMode(2);
    const EditedBand last = session.state.lastEditedBand();
    session.history.undo();
    EXPECT_EQ(session.state.selectionMask(), 0x42);
    EXPECT_EQ(session.state.filterMode(), 2U);
    EXPECT_EQ(session.state.lastEditedBand(), last);
    session.history.redo();
    EXPECT_EQ(session.state.selectionMask(), 0x42);
    EXPECT_EQ(session.state.filterMode(), 2U);
}

TEST(HistoryOfSets, BringsBackCoefficientsOfAnotherMethod) {
    Session session;
    session.state.setSelectionMask(0xFF);
    session.state.setBandGainOrQ(3, BandValue::gain, 6, true);
    session.commit();
    const Bytes byFirst = session.row();
    session.state.setFilterMode(1);
    session.state.setBandGainOrQ(3, BandValue::q, 2, true);
    session.commit();
    const Bytes bySecond = session.row();
    session.state.setFilterMode(2);
    EXPECT_FALSE(session.commit()) << "a method is no change of the sets";
    session.state.selectSet(1);
    session.state.setName(u"x");
    session.commit();
    session.history.goTo(1);
    EXPECT_SAME_BYTES(session.row(), byFirst);
    session.history.goTo(2);
    EXPECT_SAME_BYTES(session.row(), bySecond);
}

// --- received sets

TEST(HistoryOfReceivedSets, BringsBackTheImageThatASetWasReceivedWith) {
    Session session;
    std::mt19937_64 random(5);
    Tuning other;
    other.load(randomStore(random), 0);
    other.state.setInputEqOn(false);
    Bytes received = other.image();
    received[20] = 0x5A;
    const Bytes before = session.row();
    session.receive(received);
    const Bytes after = session.row();
    EXPECT_SAME_BYTES(session.image(), received);
    session.stepTo(3);
    EXPECT_EQ(snapshotOf(session.state)->received[0].isPresent, 0U) << "an edit makes the set forget it";
    session.history.undo();
    EXPECT_EQ(snapshotOf(session.state)->received[0].isPresent, 1U);
    EXPECT_SAME_BYTES(session.row(), after);
    // And it is used: another set, and back.
    session.state.selectSet(1);
    session.state.selectSet(0);
    EXPECT_SAME_BYTES(session.image(), received);
    session.history.undo();
    EXPECT_SAME_BYTES(session.row(), before);
    session.history.redo();
    EXPECT_SAME_BYTES(session.row(), after);
}

// A read set whose digest is wrong replaces the image, not the set.
TEST(HistoryOfReceivedSets, BringsBackTheImageThatADamagedOneReplaced) {
    Session session;
    const Bytes before = session.row();
    ParameterImage damaged = session.state.image();
    damaged.channels[3].bands[2].gainDb = 12;
    session.state.replaceImage(damaged);
    EXPECT_TRUE(session.commit());
    EXPECT_EQ(session.history.undoText(), "2 bytes of what plays");
    const Bytes after = session.row();
    session.history.undo();
    EXPECT_SAME_BYTES(session.row(), before);
    session.history.redo();
    EXPECT_SAME_BYTES(session.row(), after);
}

TEST(History, TheSetsOfAnyStepAreToldWithoutAnyMove) {
    Session session;
    std::vector<ParameterStore> stores{session.state.store()};
    const auto step = [&](float volume) {
        session.stepTo(volume);
        stores.push_back(session.state.store());
    };
    step(1);
    session.state.selectSet(2);
    step(2);
    step(3);
    session.state.selectSet(0);
    step(4);
    for (const std::size_t position : {4U, 2U, 0U, 3U}) {
        session.history.goTo(position);
        const Bytes before = session.row();
        const std::size_t events = session.events.size();
        for (std::size_t at = 0; at < stores.size(); ++at) {
            const auto sets = session.history.setsAt(at);
            ASSERT_NE(sets, nullptr);
            EXPECT_EQ(std::memcmp(sets.get(), &stores[at], sizeof stores[at]), 0)
                << at << " from " << position;
        }
        EXPECT_EQ(session.history.setsAt(5), nullptr);
        EXPECT_EQ(session.row(), before);
        EXPECT_EQ(session.events.size(), events);
    }
    // What is no step yet does not count.
    session.state.setVolume(-9, false);
    EXPECT_EQ(std::memcmp(session.history.setsAt(3).get(), &stores[3], sizeof stores[3]), 0);
}

}  // namespace
}  // namespace tessavo::test
