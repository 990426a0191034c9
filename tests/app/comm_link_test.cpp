#include "app/comm_link.h"

#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mutex>
#include <vector>

#include "params/harness.h"
#include "target/in_process_port.h"

// Who needs the line, as the polls of the clip state are told.

namespace tessavo::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::SizeIs;

/// A line to a target inside the program. No worker runs unless a test starts it.
class LineInUse : public ::testing::Test {
 protected:
    LineInUse() {
        tuning.start();
        tuning.setLiveMode(true);
        tuning.takeUpdate();
        tuning.setLiveMode(false);
        link.setPortName(target.portName());
    }
    ~LineInUse() override { link.shutDown(); }

    /// What a moment of an exchange looks like.
    struct Moment {
        bool free;
        bool editWaits;
        bool liveTransfer;
        bool command;
        friend bool operator==(const Moment&, const Moment&) = default;
    };
    static constexpr Moment nobody{.free = true, .editWaits = false, .liveTransfer = false, .command = false};
    static constexpr Moment liveTransfer{
        .free = false, .editWaits = false, .liveTransfer = true, .command = false};
    static constexpr Moment command{
        .free = false, .editWaits = false, .liveTransfer = false, .command = true};
    /// Port opened, request byte sent, what it was asked for, disconnected, port closed.
    static constexpr std::size_t linesOfAnExchange = 5;

    [[nodiscard]] Moment now() {
        return {link.isFree(), tuning.liveTransferEnabled() && tuning.updatePending(),
                link.liveTransferRuns(), link.foreground().running()};
    }
    /// Writes the moment down, on any thread.
    void note() {
        const Moment moment = now();
        const std::lock_guard guard(mutex_);
        moments_.push_back(moment);
    }
    [[nodiscard]] std::vector<Moment> moments() {
        const std::lock_guard guard(mutex_);
        return moments_;
    }

    RecordingBoxes boxes;
    TuningState tuning{boxes};
    std::function<void()> whenTheTargetSpeaks;
    InProcessTarget target{"inside", TargetMemory::holding(factoryImage()), TargetDevice::Options{},
                           [this](TargetLogKind, std::string_view) {
                               if (whenTheTargetSpeaks) {
                                   whenTheTargetSpeaks();
                               }
                           }};
    CommLink link{tuning, boxes, std::make_unique<InProcessPort>(target)};

 private:
    std::mutex mutex_;
    std::vector<Moment> moments_;
};

TEST_F(LineInUse, NobodyNeedsItAtTheStart) {
    EXPECT_TRUE(link.isFree());
}

TEST_F(LineInUse, AnEditThatWaitsToBeSentNeedsIt) {
    tuning.setVolume(-5.0F, true);
    ASSERT_TRUE(tuning.updatePending());
    EXPECT_TRUE(link.isFree()) << "with Live Mode off nothing will be sent";
    tuning.setLiveMode(true);
    EXPECT_FALSE(link.isFree());
    ASSERT_TRUE(tuning.takeUpdate());
    EXPECT_TRUE(link.isFree()) << "Live Mode alone does not need it";
    tuning.setVolume(-4.0F, false);
    EXPECT_TRUE(link.isFree()) << "a drag is not sent before it ends";
    tuning.setVolume(-4.0F, true);
    EXPECT_FALSE(link.isFree());
    tuning.setLiveMode(false);
    EXPECT_TRUE(link.isFree());
}

TEST_F(LineInUse, ALiveTransferNeedsItFromItsStartToItsResult) {
    std::vector<LiveWorker::State> told;
    QObject::connect(&link, &CommLink::workerState, &link,
                     [&](LiveWorker::State state) { told.push_back(state); });
    whenTheTargetSpeaks = [this] { note(); };
    ASSERT_TRUE(link.startWorker());
    tuning.setLiveMode(true);
    int looksInThePause = 0;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            // The target says as much about the confirmation as about the image.
            const std::size_t before = moments().size();
            const Moment moment = now();
            if (before == linesOfAnExchange && moments().size() == before) {
                EXPECT_EQ(moment, liveTransfer) << "between the image and its confirmation";
                ++looksInThePause;
            }
            return told.size() == 2;
        },
        60000));
    EXPECT_EQ(now(), nobody);
    EXPECT_THAT(told, ElementsAre(LiveWorker::State::sending, LiveWorker::State::confirmed));
    EXPECT_GT(looksInThePause, 0);
    EXPECT_THAT(moments(), SizeIs(2 * linesOfAnExchange));
    EXPECT_THAT(moments(), Each(liveTransfer));
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(LineInUse, ACommandNeedsItFromItsStartToItsEnd) {
    std::vector<Moment> told;
    QObject::connect(&link.foreground(), &ForegroundTransfers::started, [&] { told.push_back(now()); });
    QObject::connect(&link.foreground(), &ForegroundTransfers::ended, [&] { told.push_back(now()); });
    whenTheTargetSpeaks = [this] { note(); };
    TargetCommands commands(tuning, link.foreground(), boxes);
    EXPECT_TRUE(commands.ReadVersions().has_value());
    EXPECT_THAT(told, ElementsAre(command, nobody));
    EXPECT_THAT(moments(), SizeIs(linesOfAnExchange));
    EXPECT_THAT(moments(), Each(command));
}

TEST_F(LineInUse, APollDoesNotNeedItMoreThanAnother) {
    whenTheTargetSpeaks = [this] { note(); };
    EXPECT_TRUE(link.background().ReadClipState().has_value());
    EXPECT_THAT(moments(), SizeIs(linesOfAnExchange));
    EXPECT_THAT(moments(), Each(nobody));
}

}  // namespace
}  // namespace tessavo::testing
