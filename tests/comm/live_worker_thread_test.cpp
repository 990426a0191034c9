#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <set>

#include "base/md5.h"
#include "comm/live_bench.h"
#include "comm/live_worker.h"
#include "support/exchange_fixture.h"

// The worker's thread: how it ends, and what it reads while edits go on.

namespace tessavo::test {
namespace {

TEST(LiveWorkerEnd, AWaitingWorkerStopsWithTheClock) {
    Transcript transcript;
    NotedBoxes boxes(transcript);
    NotedLog log(transcript);
    NotedLock lock(transcript);
    SystemClock clock;
    AnsweringLine line;
    TuningState tuning(boxes);
    tuning.start();
    transcript.clear();
    TransferEngine engine({borrowing(line), clock, log, boxes, lock, [] { return std::string("COM1"); }, {}});
    LiveWorker worker(tuning, engine, clock, boxes);
    ASSERT_TRUE(worker.start());
    clock.interrupt();
    auto stopped = std::async(std::launch::async, [&] { worker.stop(); });
    EXPECT_EQ(stopped.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    EXPECT_TRUE(transcript.lines().empty());
}

/// A line on which nothing ever comes: reads wait until they are cancelled, whatever their time-out.
class DeadLine final : public ILine {
 public:
    std::uint32_t open() override { return serial_result::success; }
    std::uint32_t setUp(const LineSettings&) override { return serial_result::success; }
    LineRead read(std::span<std::uint8_t>, Milliseconds) override {
        std::unique_lock guard(mutex_);
        waiting_ = true;
        changed_.notify_all();
        changed_.wait(guard, [this] { return cancelled_; });
        return {serial_result::operationAborted, 0};
    }
    std::uint32_t write(std::span<const std::uint8_t>, Milliseconds) override {
        return serial_result::success;
    }
    void close() override {}
    void cancel() override {
        const std::lock_guard guard(mutex_);
        cancelled_ = true;
        changed_.notify_all();
    }
    bool someoneWaits() {
        std::unique_lock guard(mutex_);
        return changed_.wait_for(guard, std::chrono::seconds(60), [this] { return waiting_; });
    }

 private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool waiting_ = false;
    bool cancelled_ = false;
};

TEST(LiveWorkerEnd, AWorkerInTheMiddleOfAReadStopsWithTheEngine) {
    Transcript transcript;
    VirtualClock clock(transcript);
    NotedBoxes boxes(transcript);
    NotedLog log(transcript);
    NotedLock lock(transcript);
    DeadLine line;
    TuningState tuning(boxes);
    tuning.start();
    tuning.setLiveMode(true);
    transcript.clear();
    TransferEngine engine({borrowing(line), clock, log, boxes, lock, [] { return std::string("COM1"); }, {}});
    LiveWorker worker(tuning, engine, clock, boxes);
    ASSERT_TRUE(worker.start());
    ASSERT_TRUE(line.someoneWaits());
    clock.interrupt();
    engine.cancel();
    auto stopped = std::async(std::launch::async, [&] { worker.stop(); });
    EXPECT_EQ(stopped.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    EXPECT_THAT(transcript.lines(), testing::Contains("unlock"));
    EXPECT_THAT(transcript.lines(), testing::Not(testing::Contains(testing::StartsWith("box"))));
}

using LiveWorkerThreads = LiveBench;

TEST_F(LiveWorkerThreads, ImageAndDigestMatchWhileEditsGoOn) {
    tuning.setSelectionMask(0xFF);
    tuning.setLiveMode(true);
    TransferEngine engine({borrowing(line), clock, log, boxes, lock, [] { return std::string("COM1"); }, {}});
    LiveWorker worker(tuning, engine, clock, boxes);
    ASSERT_TRUE(worker.start());

    constexpr std::size_t messages = 60;
    int round = 0;
    EXPECT_TRUE(eventually([&] {
        const auto step = static_cast<float>(round++ % 40);
        tuning.setVolume(step / 4, true);
        tuning.setDelay(step / 4, true);
        tuning.setBandGainOrQ(static_cast<std::size_t>(round) % bandCount, BandValue::gain, step / 10, true);
        tuning.setInputBandGain(static_cast<std::size_t>(round) % inputBandCount, step / 10, true);
        return line.frames(4101).size() >= messages;
    }));
    clock.interrupt();
    worker.stop();

    std::set<Md5Digest> different;
    for (const Bytes& frame : line.frames(4101)) {
        const std::span payload = std::span(frame).subspan(3, 3400);
        const Md5Digest digest = md5(payload.first(3384));
        ASSERT_THAT(payload.subspan(3384), testing::ElementsAreArray(digest));
        different.insert(digest);
    }
    EXPECT_GT(different.size(), 10U) << "the edits did not reach the worker";
    EXPECT_EQ(line.clashes, 0);
}

}  // namespace
}  // namespace tessavo::test
