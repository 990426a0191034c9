#include <gtest/gtest.h>

#include "history/long_history.h"

namespace tessavo::test {
namespace {

constexpr std::size_t mebibyte = std::size_t{1024} * 1024;

std::size_t memoryOfSteps(const History& history) {
    std::size_t bytes = 0;
    for (const auto& step : history.steps()) {
        bytes +=
            sizeof(Step) + step->text.capacity() + step->lead.bytes().size() + step->change.bytes().size();
    }
    return bytes;
}

TEST(HistoryMemory, HoldsTenThousandUsualStepsInLessThanThirtyMebibytes) {
    const SessionFiles files(1);
    std::mt19937_64 random(2);
    Session session;
    int made = 0;
    for (int step = 0; made < 10000; ++step) {
        makeUsualStep(session.state, files, random, step);
        made += session.commit() ? 1 : 0;
        session.events.clear();
    }
    EXPECT_EQ(session.history.steps().size(), 10000U);
    EXPECT_EQ(session.history.dropped(), 0U);
    EXPECT_LT(session.history.memory(), 30 * mebibyte);
    EXPECT_GE(session.history.memory(), memoryOfSteps(session.history));
    RecordProperty("bytes", std::to_string(session.history.memory()));
    // All of them lead back.
    const Bytes end = session.row();
    EXPECT_TRUE(session.history.goTo(0));
    EXPECT_SAME_BYTES(session.row(), Session().row());
    EXPECT_TRUE(session.history.goTo(10000));
    EXPECT_SAME_BYTES(session.row(), end);
}

TEST(HistoryMemory, TakesLessThanAThousandBytesForAStepOfASlider) {
    Session session;
    session.state.setSelectionMask(0x80);
    std::size_t before = 0;
    for (const auto& edit : std::vector<std::function<void()>>{
             [&] { session.state.setBandGainOrQ(2, BandValue::gain, -4.5F, true); },
             [&] { session.state.setBandFrequency(2, 800, true); },
             [&] { session.state.setCrossoverFrequency(0, 444, true); },
             [&] { session.state.setVolume(3, true); },
             [&] { session.state.setInputBandGain(2, 3, true); },
         }) {
        edit();
        ASSERT_TRUE(session.commit());
        EXPECT_LT(session.history.memory() - before, 1000U) << session.history.undoText();
        before = session.history.memory();
    }
    std::mt19937_64 random(3);
    session.state.replaceStore(recordOf<ParameterStore>(randomStore(random)));
    session.commit();
    EXPECT_LT(session.history.memory() - before, 45000U);
}

TEST(HistoryMemory, DropsTheOldestStepsBeyondItsLimit) {
    std::mt19937_64 random(4);
    const std::array stores{recordOf<ParameterStore>(randomStore(random)),
                            recordOf<ParameterStore>(randomStore(random))};
    Session session;
    std::vector<Bytes> rows{session.row()};
    session.history.markNotice("at the start");
    std::size_t made = 0;
    while (session.history.dropped() < 30) {
        session.state.replaceStore(stores.at(made % 2));
        ASSERT_TRUE(session.history.commit(std::to_string(++made)));
        rows.push_back(session.row());
        session.history.markSaved(std::to_string(made));
        EXPECT_LE(session.history.memory(), History::memoryLimit);
        EXPECT_EQ(session.history.position(), session.history.steps().size());
        EXPECT_EQ(session.history.dropped() + session.history.steps().size(), made);
        ASSERT_LT(made, 10000U);
    }
    EXPECT_EQ(session.history.steps()[0]->text, "31") << "steps()[i] has number dropped() + i + 1";
    EXPECT_EQ(session.history.marks().front().number, 30U) << "the mark behind the last one that is gone";
    EXPECT_EQ(session.history.marks().back().number, made);
    const std::size_t oldest = session.history.steps().size();
    for (std::size_t i = 0; i < oldest; ++i) {
        EXPECT_TRUE(session.history.undo());
    }
    EXPECT_FALSE(session.history.undo());
    EXPECT_SAME_BYTES(session.row(), rows[30]);
    EXPECT_TRUE(session.history.goTo(oldest));
    EXPECT_SAME_BYTES(session.row(), rows.back());
    // A step behind many undone ones makes room again.
    session.history.goTo(1);
    session.stepTo(1.5F);
    EXPECT_EQ(session.history.steps().size(), 2U);
    EXPECT_LT(session.history.memory(), 100000U);
    EXPECT_GE(session.history.memory(), memoryOfSteps(session.history));
}

}  // namespace
}  // namespace tessavo::test
