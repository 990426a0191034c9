#include "comm/live_record.h"

#include <atomic>
#include <cstring>
#include <set>

#include "comm/live_bench.h"
#include "support/exchange_fixture.h"

namespace tessavo::test {
namespace {

using State = LiveWorker::State;

ParameterImage imageOf(std::uint8_t byte) {
    ParameterImage image;
    const Bytes bytes(sizeof image, byte);
    std::memcpy(&image, bytes.data(), sizeof image);
    return image;
}

Bytes bytesOf(const ParameterImage& image) {
    Bytes bytes(sizeof image);
    std::memcpy(bytes.data(), &image, sizeof image);
    return bytes;
}

TEST(LiveRecord, HoldsWhatWasSentOnceItIsConfirmed) {
    LiveRecord record;
    EXPECT_FALSE(record.confirmed().has_value());
    record.note(State::sending, imageOf(1));
    EXPECT_FALSE(record.confirmed().has_value());
    record.note(State::confirmed, imageOf(1));
    ASSERT_TRUE(record.confirmed().has_value());
    EXPECT_EQ(bytesOf(*record.confirmed()), bytesOf(imageOf(1)));
    record.note(State::sending, imageOf(2));
    EXPECT_FALSE(record.confirmed().has_value()) << "the target may hold either";
    for (const State result : {State::wrongSet, State::failed}) {
        record.note(State::confirmed, imageOf(2));
        record.note(result, imageOf(2));
        EXPECT_FALSE(record.confirmed().has_value());
    }
}

TEST(LiveRecord, EveryFailureEndsAConfirmationAndABusyLineDoesNot) {
    for (const ExchangeEnd end : {ExchangeEnd::noAnswer, ExchangeEnd::refused, ExchangeEnd::damagedAnswer,
                                  ExchangeEnd::notDisconnected, ExchangeEnd::portNotOpened}) {
        LiveRecord record;
        record.note(State::sending, imageOf(1));
        record.noteEnd(end);
        record.note(State::confirmed, imageOf(1));
        EXPECT_TRUE(record.confirmed().has_value()) << "it was asked for after that";
        record.noteEnd(ExchangeEnd::answered);
        record.noteEnd(ExchangeEnd::lineBusy);
        EXPECT_TRUE(record.confirmed().has_value());
        record.noteEnd(end);
        EXPECT_FALSE(record.confirmed().has_value()) << static_cast<int>(end);
    }
}

TEST(LiveRecord, AnImageForgottenOnItsWayIsNotConfirmed) {
    LiveRecord record;
    record.note(State::sending, imageOf(1));
    record.forget();
    record.note(State::confirmed, imageOf(1));
    EXPECT_FALSE(record.confirmed().has_value());
}

using LiveRecordThreads = LiveBench;

TEST_F(LiveRecordThreads, NoFalseConfirmationWhileSetsAreSwitchedWithoutPause) {
    constexpr int transfers = 200;
    for (std::uint32_t set = 0; set < 5; ++set) {
        tuning.selectSet(set);
        tuning.setVolume(-static_cast<float>(set), true);
    }
    tuning.setLiveMode(true);
    LiveRecord record;
    std::atomic<int> confirmed = 0;
    std::atomic<int> falseOnes = 0;
    std::atomic<int> switches = 0;
    std::atomic<bool> switching = true;
    TransferEngine engine({.makeLine = borrowing(line),
                           .clock = clock,
                           .log = log,
                           .boxes = boxes,
                           .lock = lock,
                           .portName = [] { return std::string("COM1"); },
                           .progress = {},
                           .ended = [&](ExchangeEnd end) { record.noteEnd(end); }});
    LiveWorker worker(tuning, engine, clock, boxes, [&](State state, const ParameterImage& image) {
        record.note(state, image);
        if (state == State::sending) {
            // Whatever copies again from here on copies another set.
            const int seen = switches;
            EXPECT_TRUE(eventually([&] { return switches >= seen + 2 || !switching; }));
        }
        if (state == State::confirmed) {
            // What arrived last is what plays.
            const Bytes frame = line.frames(4101).back();
            const Bytes plays(frame.begin() + 3, frame.begin() + 3 + sizeof(ParameterImage));
            const auto known = record.confirmed();
            falseOnes += known && bytesOf(*known) == plays ? 0 : 1;
            ++confirmed;
        }
    });
    ASSERT_TRUE(worker.start());
    std::uint32_t set = 0;
    std::set<Bytes> different;
    EXPECT_TRUE(eventually([&] {
        tuning.selectSet(++set % 5);
        tuning.raiseUpdatePending();
        ++switches;
        return confirmed >= transfers;
    }));
    // The transfer that has begun by now would wait for sets that nobody switches any more.
    switching = false;
    clock.interrupt();
    worker.stop();
    EXPECT_EQ(falseOnes, 0);
    for (const Bytes& frame : line.frames(4101)) {
        different.insert(frame);
    }
    EXPECT_GT(different.size(), 1U) << "the switching did not reach the worker";
    EXPECT_EQ(line.clashes, 0);
}

}  // namespace
}  // namespace tessavo::test
