#include "comm/live_worker.h"

#include <cstring>

#include "base/md5.h"
#include "support/exchange_fixture.h"

namespace tessavo::test {
namespace {

using State = LiveWorker::State;

Bytes imageBytes(const ParameterImage& image) {
    Bytes bytes(sizeof image);
    std::memcpy(bytes.data(), &image, sizeof image);
    return bytes;
}

Bytes liveFrame(const ParameterImage& image) {
    const Bytes bytes = imageBytes(image);
    Bytes payload = concatenated(bytes, md5(bytes));
    payload.resize(4096, 0x1A);
    return frameOf(5, 1, payload);
}

Bytes confirmFrame() {
    Bytes payload(2048);
    payload[0] = 8;
    return frameOf(3, 1, payload);
}

class LiveWorkerTest : public ExchangeTest {
 protected:
    TuningState tuning{boxes};
    std::vector<State> states;
    LiveWorker worker{tuning, engine, clock, boxes,
                      [this](State state, const ParameterImage&) { states.push_back(state); }};

    void SetUp() override {
        tuning.start();
        tuning.setLiveMode(true);
        transcript.clear();
    }
    void targetTakes() { port.answer({0x43, 0x06, 0x06}); }
    void targetReplies(const Bytes& start) {
        port.answer({0x43, 0x06});
        port.answer(replyFrame(start));
        port.answer({0x06});
    }
    void targetIsSilent() { port.answerError(serial_result::timeout); }
    static Bytes confirmation() { return Bytes(10, 0x11); }

    [[nodiscard]] Lines sent() const {
        return joined({opened("Prepare XModem4k Message"), connected(), blockWritten(4101), blockTaken(),
                       disconnected(), closed()});
    }
    [[nodiscard]] Lines replied() const {
        return joined(
            {opened("Prepare XModem2k Message"),
             connected(),
             requestWritten(),
             requestTaken(),
             {"RX Receiving XModem message", "read 4101 in 10000: 4101 bytes", "RX Message received"},
             disconnected(),
             closed()});
    }
    [[nodiscard]] Lines silent(const std::string& preparation) const {
        return joined({opened(preparation),
                       {"RX Wait for REQ", "read 1 in 2500: time-out", "ERR Can't connect to Target"},
                       closed()});
    }
    static Lines pause() { return {"pause 1000"}; }
    static Lines box() { return {"box: Target received wrong set"}; }

    // One more edit and one more step.
    void stepAgain() {
        transcript.clear();
        states.clear();
        tuning.raiseUpdatePending();
        worker.step();
    }
};

TEST_F(LiveWorkerTest, SendsTheImageWithItsDigestAndAsksForConfirmation) {
    targetTakes();
    targetReplies(confirmation());
    worker.step();
    expectTranscript({sent(), pause(), replied()});
    EXPECT_THAT(port.written,
                testing::ElementsAre(liveFrame(tuning.image()), Bytes{0x04}, confirmFrame(), Bytes{0x04}));
    EXPECT_THAT(states, testing::ElementsAre(State::sending, State::confirmed));
    EXPECT_FALSE(tuning.updatePending());
    EXPECT_EQ(clock.now(), Milliseconds{1 + 200 + 50 + 1000 + 1});
}

TEST_F(LiveWorkerTest, SendsNothingWithoutAnUpdate) {
    ASSERT_TRUE(tuning.takeUpdate());
    worker.step();
    expectTranscript({});
    EXPECT_TRUE(states.empty());
}

TEST_F(LiveWorkerTest, SendsNothingWhileLiveTransferIsOffAndKeepsTheUpdate) {
    tuning.setLiveMode(false);
    tuning.raiseUpdatePending();
    worker.step();
    expectTranscript({});
    EXPECT_TRUE(tuning.updatePending());
}

TEST_F(LiveWorkerTest, SendsNothingWithNeitherFlag) {
    ASSERT_TRUE(tuning.takeUpdate());
    tuning.setLiveMode(false);
    worker.step();
    expectTranscript({});
}

TEST_F(LiveWorkerTest, SendsOnceForEachUpdate) {
    targetTakes();
    targetReplies(confirmation());
    worker.step();
    transcript.clear();
    worker.step();
    expectTranscript({});
}

TEST_F(LiveWorkerTest, SwitchingLiveModeOnSendsAtOnce) {
    ASSERT_TRUE(tuning.takeUpdate());
    tuning.setLiveMode(false);
    tuning.setLiveMode(true);
    targetTakes();
    targetReplies(confirmation());
    worker.step();
    expectTranscript({sent(), pause(), replied()});
}

TEST_F(LiveWorkerTest, AnEditMadeWhileSendingIsSentNext) {
    const ParameterImage before = tuning.image();
    port.onRead = [this] {
        tuning.setVolume(4.5F, true);
        port.onRead = {};
    };
    targetTakes();
    targetReplies(confirmation());
    worker.step();
    const ParameterImage after = tuning.image();
    ASSERT_NE(imageBytes(before), imageBytes(after));
    EXPECT_EQ(port.written.at(0), liveFrame(before));
    EXPECT_TRUE(tuning.updatePending());

    targetTakes();
    targetReplies(confirmation());
    worker.step();
    EXPECT_EQ(port.written.at(4), liveFrame(after));
    EXPECT_FALSE(tuning.updatePending());
}

TEST_F(LiveWorkerTest, TheCopyThatIsToldIsTheOneThatIsSent) {
    std::vector<std::pair<State, Bytes>> told;
    LiveWorker watched(tuning, engine, clock, boxes, [&](State state, const ParameterImage& image) {
        told.emplace_back(state, imageBytes(image));
        // Another set and an edit, as close behind the copy as can be.
        tuning.selectSet(tuning.currentSet() == 2 ? 1 : 2);
        tuning.setGroupGain({0}, static_cast<float>(told.size()));
    });
    const Bytes before = imageBytes(tuning.image());
    targetTakes();
    targetReplies(confirmation());
    watched.step();
    ASSERT_NE(imageBytes(tuning.image()), before);
    EXPECT_EQ(port.written.at(0).size(), 4101U);
    const Bytes sentImage(port.written.at(0).begin() + 3, port.written.at(0).begin() + 3 + 3384);
    EXPECT_EQ(sentImage, before);
    EXPECT_THAT(told, testing::ElementsAre(testing::Pair(State::sending, before),
                                           testing::Pair(State::confirmed, before)));
}

TEST_F(LiveWorkerTest, ARoundIsOverForOthersBeforeItsBox) {
    LineTurns turns({[] { return false; }, [] { return false; }});
    struct AskingBoxes final : IMessageBox {
        explicit AskingBoxes(LineTurns& used) : turns(used) {}
        BoxAnswer show(std::string_view, BoxIcon, BoxButtons) override {
            int looks = 0;
            free = turns.takeQuestion([&] { return looks++ == 0; });
            turns.endQuestion();
            return BoxAnswer::ok;
        }
        LineTurns& turns;
        bool free = false;
    } asking(turns);
    std::vector<bool> freeDuring;
    LiveWorker taking(
        tuning, engine, clock, asking,
        [&](State, const ParameterImage&) {
            int looks = 0;
            freeDuring.push_back(turns.takeQuestion([&] { return looks++ == 0; }));
        },
        &turns);
    targetTakes();
    targetReplies(Bytes(10, 0x22));
    taking.step();
    EXPECT_THAT(freeDuring, testing::ElementsAre(false, false)) << "up to its result";
    EXPECT_TRUE(asking.free);
}

TEST_F(LiveWorkerTest, AnUpdateRaisedAtAnyReadOfATransferIsNotLost) {
    // Nine reads: request, flush, answer and disconnect of the one exchange; the reply makes five of the
    // other.
    for (int at = 0; at < 9; ++at) {
        tuning.raiseUpdatePending();
        int reads = 0;
        port.onRead = [&] {
            if (reads++ == at) {
                tuning.raiseUpdatePending();
            }
        };
        targetTakes();
        targetReplies(confirmation());
        worker.step();
        EXPECT_EQ(reads, 9);
        EXPECT_TRUE(tuning.updatePending()) << "raised at read " << at;
    }
}

TEST_F(LiveWorkerTest, EveryOneOfTheTenBytesMustConfirm) {
    for (std::size_t wrong = 0; wrong < 10; ++wrong) {
        Bytes reply = confirmation();
        reply[wrong] = 0x10;
        targetTakes();
        targetReplies(reply);
        stepAgain();
        expectTranscript({sent(), pause(), replied(), box()});
        EXPECT_THAT(states, testing::ElementsAre(State::sending, State::wrongSet)) << "byte " << wrong;
    }
}

TEST_F(LiveWorkerTest, TheRestOfTheReplyIsNotLookedAt) {
    Bytes reply = randomBytes(4096, 20);
    std::fill_n(reply.begin(), 10, std::uint8_t{0x11});
    reply[10] = 0x00;
    targetTakes();
    targetReplies(reply);
    worker.step();
    EXPECT_THAT(states, testing::ElementsAre(State::sending, State::confirmed));
}

TEST_F(LiveWorkerTest, AFailedSendIsFollowedByTheWaitAndTheReceive) {
    targetIsSilent();
    targetReplies(confirmation());
    worker.step();
    expectTranscript({silent("Prepare XModem4k Message"), pause(), replied()});
    EXPECT_THAT(states, testing::ElementsAre(State::sending, State::failed));
}

TEST_F(LiveWorkerTest, BeforeAFirstReplyAFailedReceiveReadsAsAWrongSet) {
    targetTakes();
    targetIsSilent();
    worker.step();
    expectTranscript({sent(), pause(), silent("Prepare XModem2k Message"), box()});
    EXPECT_THAT(states, testing::ElementsAre(State::sending, State::failed));
    EXPECT_FALSE(tuning.updatePending());
}

TEST_F(LiveWorkerTest, AFailedReceiveReadsTheReplyBefore) {
    targetTakes();
    targetReplies(confirmation());
    stepAgain();

    // A confirmation stays one ...
    targetIsSilent();
    targetIsSilent();
    stepAgain();
    expectTranscript({silent("Prepare XModem4k Message"), pause(), silent("Prepare XModem2k Message")});
    EXPECT_THAT(states, testing::ElementsAre(State::sending, State::failed));

    // ... until another reply takes its place, which then stays too.
    targetTakes();
    targetReplies(Bytes(10, 0x22));
    stepAgain();
    expectTranscript({sent(), pause(), replied(), box()});
    targetTakes();
    targetIsSilent();
    stepAgain();
    expectTranscript({sent(), pause(), silent("Prepare XModem2k Message"), box()});
}

TEST_F(LiveWorkerTest, ADamagedReplyLeavesTheReplyBefore) {
    targetTakes();
    targetReplies(confirmation());
    stepAgain();
    Bytes damaged = replyFrame(Bytes(10, 0x22));
    damaged[2] = 0x00;
    targetTakes();
    port.answer({0x43, 0x06});
    port.answer(damaged);
    stepAgain();
    EXPECT_THAT(states, testing::ElementsAre(State::sending, State::failed));
    EXPECT_THAT(transcript.lines(), testing::Not(testing::Contains(box()[0])));
}

TEST_F(LiveWorkerTest, AReplyCountsThoughTheDisconnectFails) {
    targetTakes();
    port.answer({0x43, 0x06});
    port.answer(replyFrame(confirmation()));
    targetIsSilent();
    stepAgain();
    EXPECT_THAT(states, testing::ElementsAre(State::sending, State::failed));
    EXPECT_THAT(transcript.lines(), testing::Not(testing::Contains(box()[0])));
}

TEST_F(LiveWorkerTest, APortThatCannotBeOpenedIsToldForBothExchanges) {
    port.openResult = serial_result::accessDenied;
    worker.step();
    Lines boxLines;
    for (const std::string& line : transcript.lines()) {
        if (line.starts_with("box") || line.starts_with("pause")) {
            boxLines.push_back(line);
        }
    }
    EXPECT_THAT(boxLines,
                testing::ElementsAre("box: Cannot open COM port!", "pause 1000", "box: Cannot open COM port!",
                                     "box: Target received wrong set"));
}

TEST_F(LiveWorkerTest, ALockHeldElsewhereCountsAsFailed) {
    lock.available = false;
    worker.step();
    expectTranscript({{"lock 5000: time-out", "pause 1000", "lock 5000: time-out"}, box()});
    EXPECT_THAT(states, testing::ElementsAre(State::sending, State::failed));
}

TEST_F(LiveWorkerTest, AProgramThatEndsInAnyPauseIsShownNoBox) {
    // 200 and 50 ms of the send, then the 1000 ms in front of the confirmation.
    for (std::size_t pauses = 0; pauses < 3; ++pauses) {
        VirtualClock ending(transcript);
        ending.interruptAfter(pauses);
        TransferEngine cut({port.maker(), ending, log, boxes, lock, [this] { return portName; }, {}});
        LiveWorker ended(tuning, cut, ending, boxes,
                         [this](State state, const ParameterImage&) { states.push_back(state); });
        port.answers.clear();
        targetTakes();
        transcript.clear();
        states.clear();
        tuning.raiseUpdatePending();
        ended.step();
        EXPECT_THAT(transcript.lines(), testing::Not(testing::Contains(testing::StartsWith("box"))));
        EXPECT_THAT(transcript.lines(), testing::Not(testing::Contains("ST Prepare XModem2k Message")));
        EXPECT_THAT(states, testing::ElementsAre(State::sending));
    }
}

TEST_F(LiveWorkerTest, AProgramThatEndsInTheReceiveIsShownNoBox) {
    targetTakes();
    port.answer({0x43, 0x06});
    port.answerError(serial_result::operationAborted);
    int reads = 0;
    port.onRead = [&] {
        if (++reads == 8) {
            clock.interrupt();
        }
    };
    worker.step();
    EXPECT_EQ(reads, 8);
    EXPECT_THAT(transcript.lines(), testing::Not(testing::Contains(testing::StartsWith("box"))));
    EXPECT_THAT(states, testing::ElementsAre(State::sending));
}

TEST_F(LiveWorkerTest, WorksWithoutAnObserver) {
    LiveWorker plain(tuning, engine, clock, boxes);
    targetTakes();
    targetReplies(confirmation());
    plain.step();
    expectTranscript({sent(), pause(), replied()});
}

TEST_F(LiveWorkerTest, TheThreadLooksEvery250Milliseconds) {
    targetTakes();
    targetReplies(confirmation());
    // Pauses: 250, then 200, 50 and 1000 of the transfer, then 250 and 250.
    clock.interruptAfter(5);
    ASSERT_TRUE(worker.start());
    const Lines look{"pause 250"};
    const Lines expected = joined({look, sent(), pause(), replied(), look, look});
    EXPECT_TRUE(eventually([&] { return transcript.lines().size() >= expected.size(); }));
    worker.stop();
    expectTranscript({expected});
    EXPECT_THAT(states, testing::ElementsAre(State::sending, State::confirmed));
}

TEST_F(LiveWorkerTest, CanBeStoppedWithoutAStartAndTwice) {
    worker.stop();
    clock.interrupt();
    ASSERT_TRUE(worker.start());
    worker.stop();
    worker.stop();
    EXPECT_THAT(transcript.lines(), testing::SizeIs(testing::Le(1U)));
}

TEST_F(LiveWorkerTest, CanBeStartedAgain) {
    tuning.setLiveMode(false);
    for (int round = 0; round < 2; ++round) {
        transcript.clear();
        ASSERT_TRUE(worker.start());
        ASSERT_TRUE(worker.start());
        EXPECT_TRUE(eventually([&] { return transcript.lines().size() > 2; }));
        worker.stop();
        EXPECT_THAT(transcript.lines(), testing::Each("pause 250"));
    }
}

TEST_F(LiveWorkerTest, TheOutcomeTellsEachStep) {
    Bytes reply(4101);
    const auto outcome = [&] { return sendLiveImage(engine, clock, tuning.image(), reply); };
    targetTakes();
    targetReplies(confirmation());
    LiveOutcome good = outcome();
    EXPECT_TRUE(good.sent && good.answered && good.confirmed);

    targetTakes();
    targetReplies(Bytes(10, 0x12));
    LiveOutcome wrong = outcome();
    EXPECT_TRUE(wrong.sent && wrong.answered);
    EXPECT_FALSE(wrong.confirmed);

    targetIsSilent();
    targetReplies(confirmation());
    LiveOutcome unsent = outcome();
    EXPECT_FALSE(unsent.sent);
    EXPECT_TRUE(unsent.answered && unsent.confirmed);

    reply.assign(4101, 0);
    targetTakes();
    targetIsSilent();
    LiveOutcome unanswered = outcome();
    EXPECT_TRUE(unanswered.sent);
    EXPECT_FALSE(unanswered.answered || unanswered.confirmed);
}

}  // namespace
}  // namespace tessavo::test
