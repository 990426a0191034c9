#include <algorithm>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "comm/live_worker.h"
#include "history/random_session.h"
#include "support/device_line.h"
#include "target/exchange_host.h"

// A session in Live Mode with the simulated target at the other end of the line, in virtual time.

namespace tessavo::test {
namespace {

class LiveSession : public Session {
 public:
    explicit LiveSession(const std::vector<std::string>& faults = {})
        : device({.faults = faultsOf(faults), .timePerByte = byteTime(115200)}) {
        state.setLiveMode(true);
        worker.step();
    }

    [[nodiscard]] Bytes held() const {
        const ImageBytes& live = device.device.memory().live;
        return {live.begin(), live.end()};
    }
    /// The worker's next look.
    void send() { worker.step(); }

    std::vector<LiveWorker::State> told;
    DeviceHost device;
    VirtualClock clock;
    ExchangeHost host{[this](const std::string& /*portName*/) {
                          return std::make_unique<DeviceLine>(device.device, clock);
                      },
                      "device", clock};
    LiveWorker worker{state, host.engine, clock, host.boxes,
                      [this](LiveWorker::State outcome, const ParameterImage& image) {
                          told.push_back(outcome);
                          if (outcome == LiveWorker::State::sending && whileSending) {
                              std::exchange(whileSending, {})();
                          }
                          if (outcome == LiveWorker::State::confirmed) {
                              history.markConfirmed(image, "confirmed");
                          }
                      }};
    std::function<void()> whileSending;
};

TEST(HistoryInLiveMode, TheTargetHoldsTheImageAfterEveryUndoAndRedo) {
    LiveSession session;
    ASSERT_SAME_BYTES(session.held(), session.image());
    session.stepTo(3);
    session.state.selectSet(2);
    session.stepTo(4);
    session.state.setName(u"abc");
    session.commit();
    session.state.selectSet(1);
    for (const bool forth : {false, true, false}) {
        while (forth ? session.history.redo() : session.history.undo()) {
            session.send();
            EXPECT_SAME_BYTES(session.held(), session.image());
        }
    }
    EXPECT_EQ(session.host.boxes.last, "");
}

TEST(HistoryInLiveMode, TheTargetHoldsTheImageAfterRandomWaysBackAndForth) {
    const SessionFiles files(77);
    std::mt19937_64 random(78);
    LiveSession session;
    session.state.setSelectionMask(0x3C);
    int sent = 0;
    for (int round = 0; round < 150; ++round) {
        for (std::uint64_t steps = random() % 4; steps > 0; --steps) {
            if (random() % 4 == 0) {
                session.state.selectSet(static_cast<std::uint32_t>(random() % setCount));
            }
            changeAnything(session.state, files, random);
            session.commit();
            if (random() % 2 == 0) {
                session.send();
            }
        }
        bool moved = false;
        for (std::uint64_t moves = 1 + random() % 5; moves > 0; --moves) {
            moved = random() % 3 == 0 ? session.history.redo() : session.history.undo();
        }
        if (random() % 4 == 0) {
            moved = session.history.goTo(random() % (session.history.steps().size() + 1)) || moved;
        }
        const Bytes before = session.held();
        session.send();
        sent += session.held() != before ? 1 : 0;
        if (moved) {
            ASSERT_SAME_BYTES(session.held(), session.image()) << round;
        }
    }
    EXPECT_GT(sent, 75) << "the moves did reach the target";
    EXPECT_EQ(session.host.boxes.last, "");
    EXPECT_EQ(session.host.log.lastError, "");
}

// The exchange carries the image as it was; what undo brings goes with the next one.
TEST(HistoryInLiveMode, UndoDuringAnExchangeIsSentByTheNextOne) {
    LiveSession session;
    const Bytes start = session.image();
    session.stepTo(3);
    const Bytes edited = session.image();
    session.whileSending = [&] { EXPECT_TRUE(session.history.undo()); };
    session.send();
    EXPECT_SAME_BYTES(session.held(), edited);
    EXPECT_SAME_BYTES(session.image(), start);
    session.send();
    EXPECT_SAME_BYTES(session.held(), start);
    EXPECT_TRUE(session.history.redo()) << "and nothing is lost";
    session.send();
    EXPECT_SAME_BYTES(session.held(), edited);
}

TEST(HistoryInLiveMode, ConfirmationsMarkTheStepsThatTheyAreAbout) {
    LiveSession session;
    session.stepTo(1);
    session.send();
    session.stepTo(2);
    session.stepTo(3);
    session.send();
    std::vector<std::uint64_t> marked;
    for (const HistoryMark& mark : session.history.marks()) {
        marked.push_back(mark.number);
    }
    EXPECT_THAT(marked, testing::ElementsAre(0, 1, 3));
    session.history.goTo(1);
    session.send();
    ASSERT_EQ(session.history.marks().size(), 3U) << "again the same step's";
    EXPECT_EQ(session.history.marks()[1].number, 1U);
}

// Keys go on while the target is sent what they have set so far.
TEST(HistoryInLiveMode, ARunThatGoesOnDuringAnExchangeIsPartedWhereTheTargetConfirmed) {
    LiveSession session;
    std::vector<Bytes> sent{session.row()};
    session.history.beginGesture(Gesture::run);
    int volume = 0;
    const auto repeat = [&] { session.state.setVolume(static_cast<float>(++volume), true); };
    for (int round = 0; round < 4; ++round) {
        repeat();
        repeat();
        sent.push_back(session.row());
        session.whileSending = [&] {
            repeat();
            repeat();
            repeat();
        };
        session.send();
    }
    repeat();
    const Bytes last = session.row();
    session.history.endGesture();
    ASSERT_EQ(session.history.steps().size(), 5U);
    std::vector<std::uint64_t> marked;
    for (const HistoryMark& mark : session.history.marks()) {
        marked.push_back(mark.number);
    }
    EXPECT_THAT(marked, testing::ElementsAre(0, 1, 2, 3, 4));
    EXPECT_SAME_BYTES(session.row(), last);
    for (std::size_t position = 5; position-- > 0;) {
        ASSERT_TRUE(session.history.undo());
        EXPECT_SAME_BYTES(session.row(), sent[position]) << position;
    }
}

TEST(HistoryInLiveMode, RandomRunsNeverMergeAcrossWhatTheTargetConfirmed) {
    std::mt19937_64 random(79);
    LiveSession session;
    std::vector<Bytes> confirmed;
    session.history.beginGesture(Gesture::run);
    const auto change = [&] {
        session.state.setDelay(static_cast<float>(random() % 8), true);
        if (random() % 3 == 0) {
            session.state.setVolume(static_cast<float>(random() % 8), true);
        }
    };
    for (int round = 0; round < 200; ++round) {
        change();
        if (random() % 7 == 0) {
            session.history.beginGesture(Gesture::run);
        }
        session.whileSending = [&] {
            for (std::uint64_t more = random() % 4; more > 0; --more) {
                change();
            }
        };
        session.send();
        confirmed.push_back(session.held());
    }
    session.history.endGesture();
    std::vector<Bytes> reached;
    for (std::size_t position = 0; position <= session.history.steps().size(); ++position) {
        session.history.goTo(position);
        reached.push_back(session.image());
    }
    for (std::size_t i = 0; i < confirmed.size(); ++i) {
        EXPECT_TRUE(std::ranges::find(reached, confirmed[i]) != reached.end()) << i;
    }
}

TEST(HistoryInLiveMode, ATargetThatConfirmsNothingMarksNothing) {
    LiveSession session({"wrong-confirmation"});
    session.stepTo(1);
    session.send();
    EXPECT_TRUE(session.history.marks().empty());
    EXPECT_EQ(session.told.back(), LiveWorker::State::wrongSet);
    EXPECT_EQ(session.host.boxes.last, wrongSetText);
}

TEST(HistoryInLiveMode, WithoutLiveModeNothingIsSent) {
    LiveSession session;
    session.state.setLiveMode(false);
    session.stepTo(3);
    const Bytes before = session.held();
    session.history.undo();
    session.send();
    session.history.redo();
    session.send();
    EXPECT_SAME_BYTES(session.held(), before);
}

}  // namespace
}  // namespace tessavo::test
