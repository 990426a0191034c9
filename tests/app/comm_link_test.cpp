#include "app/comm_link.h"

#include <QElapsedTimer>
#include <QTest>
#include <atomic>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "pages/output/clip_poller.h"
#include "support/harness.h"
#include "target/in_process_line.h"

// Who uses the line, and in which turn.

namespace tessavo::test {
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
        bool editWaits;
        bool liveTransfer;
        bool command;
        friend bool operator==(const Moment&, const Moment&) = default;
    };
    static constexpr Moment nobody{.editWaits = false, .liveTransfer = false, .command = false};
    static constexpr Moment liveTransfer{.editWaits = false, .liveTransfer = true, .command = false};
    static constexpr Moment command{.editWaits = false, .liveTransfer = false, .command = true};
    /// Port opened, request byte sent, what it was asked for, disconnected, port closed.
    static constexpr std::size_t linesOfAnExchange = 5;

    [[nodiscard]] Moment now() {
        return {tuning.liveTransferEnabled() && tuning.updatePending(), link.liveTransferRuns(),
                link.foreground().running()};
    }
    /// Takes a turn for a poll if it can be had at once, and asks.
    bool pollMayBegin() {
        int looks = 0;
        const bool mine = link.takeTurnForPoll([&] { return looks++ == 0; });
        return mine && link.background().ReadClipState().has_value();
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
    std::atomic<bool> spoken = false;
    InProcessTarget target{"inside", TargetMemory::holding(factoryImage()), TargetDevice::Options{},
                           [this](TargetLogKind, std::string_view) {
                               if (whenTheTargetSpeaks) {
                                   whenTheTargetSpeaks();
                               }
                           }};
    CommLink link{tuning, boxes, linesTo(target, makeSerialPortLine)};

 private:
    std::mutex mutex_;
    std::vector<Moment> moments_;
};

/// A target at the end of a line of 115200 bit/s in both directions, asked once a second and edited.
class PacedLine : public ::testing::Test {
 protected:
    /// What the target said, and when an edit was made.
    enum class Event { edit, image, answer };

    /// The line's pace for what the program sends; the target paces its own.
    class PacedOutput final : public InProcessLine {
     public:
        using InProcessLine::InProcessLine;
        std::uint32_t write(std::span<const std::uint8_t> bytes, Milliseconds timeout) override {
            std::this_thread::sleep_for(byteTime(115200) * static_cast<TargetTime::rep>(bytes.size()));
            return InProcessLine::write(bytes, timeout);
        }
    };

    PacedLine() {
        tuning.start();
        link.setPortName(target.portName());
    }
    ~PacedLine() override {
        poller.reset();
        link.shutDown();
    }
    void note(Event event) {
        const std::lock_guard guard(mutex_);
        events_.push_back(event);
    }
    [[nodiscard]] std::vector<Event> events() {
        const std::lock_guard guard(mutex_);
        return events_;
    }

    RecordingBoxes boxes;
    TuningState tuning{boxes};
    InProcessTarget target{"inside", TargetMemory::holding(factoryImage()),
                           TargetDevice::Options{.timePerByte = byteTime(115200)},
                           [this](TargetLogKind, std::string_view text) {
                               if (text == "took a live image") {
                                   note(Event::image);
                               } else if (text == "sent the clip state") {
                                   note(Event::answer);
                               }
                           }};
    CommLink link{tuning, boxes,
                  [this](const std::string& /*portName*/) { return std::make_unique<PacedOutput>(target); }};
    std::unique_ptr<ClipPoller> poller;

 private:
    std::mutex mutex_;
    std::vector<Event> events_;
};

TEST_F(PacedLine, ThirtyEditsStarveNoQuestionAndNoQuestionsStarveAnEdit) {
    constexpr int edits = 30;
    std::atomic<int> unanswered = 0;
    poller = std::make_unique<ClipPoller>(ClipPoller::Dependencies{
        [this] { return link.background().ReadClipState(); },
        [this](const LineTurns::Wanted& wanted) { return link.takeTurnForPoll(wanted); },
        [&](const std::optional<ClipState>& state) { unanswered += state ? 0 : 1; }});
    poller->setOn(true);
    ASSERT_TRUE(link.startWorker());
    tuning.setLiveMode(true);
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < edits; ++i) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return clock.elapsed() >= 700 * i; }));
        tuning.setVolume(-static_cast<float>(i), true);
        note(Event::edit);
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return !tuning.updatePending() && !link.liveTransferRuns(); }, 60000));
    poller->setOn(false);
    const std::vector<Event> seen = events();
    int images = 0;
    int answersSinceImage = 0;
    std::optional<int> answersSinceEdit;
    for (const Event event : seen) {
        switch (event) {
            case Event::edit:
                answersSinceEdit = answersSinceEdit.value_or(0);
                break;
            case Event::answer:
                ++answersSinceImage;
                answersSinceEdit = answersSinceEdit ? std::optional(*answersSinceEdit + 1) : std::nullopt;
                break;
            case Event::image:
                if (images > 0) {
                    EXPECT_GE(answersSinceImage, 1) << "between image " << images << " and the next";
                }
                EXPECT_LE(answersSinceEdit.value_or(0), 1) << "in front of image " << images + 1;
                ++images;
                answersSinceImage = 0;
                answersSinceEdit.reset();
                break;
        }
    }
    // A round takes its pauses of 1.25 s, a good half of a second on the line each for image and
    // confirmation, and waits for a question of half a second.
    EXPECT_GE(images, 6);
    EXPECT_LE(images, 14);
    EXPECT_EQ(unanswered, 0);
    EXPECT_TRUE(boxes.shown.empty());
    const auto confirmed = link.confirmedImage();
    ASSERT_TRUE(confirmed.has_value());
    EXPECT_EQ(std::memcmp(&*confirmed, &tuning.image(), sizeof *confirmed), 0);
}

TEST_F(LineInUse, NobodyNeedsItAtTheStart) {
    EXPECT_TRUE(pollMayBegin());
}

TEST_F(LineInUse, AnEditThatWaitsLetsOnePollPassAndNoMore) {
    link.background().ReadClipState();
    tuning.setVolume(-5.0F, true);
    ASSERT_TRUE(tuning.updatePending());
    EXPECT_TRUE(pollMayBegin()) << "with Live Mode off nothing will be sent";
    tuning.setLiveMode(true);
    EXPECT_FALSE(pollMayBegin()) << "one has passed since the last live transfer";
    ASSERT_TRUE(tuning.takeUpdate());
    EXPECT_TRUE(pollMayBegin()) << "Live Mode alone does not need it";
    tuning.setVolume(-4.0F, false);
    EXPECT_TRUE(pollMayBegin()) << "a drag is not sent before it ends";
    tuning.setVolume(-4.0F, true);
    EXPECT_FALSE(pollMayBegin());
    tuning.setLiveMode(false);
    EXPECT_TRUE(pollMayBegin());
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

TEST_F(LineInUse, WhatIsConfirmedIsTheCopyThatWasSent) {
    // A slider is dragged while the image is under way.
    whenTheTargetSpeaks = [this] { spoken = true; };
    std::vector<LiveWorker::State> told;
    QObject::connect(&link, &CommLink::workerState, &link,
                     [&](LiveWorker::State state) { told.push_back(state); });
    ASSERT_TRUE(link.startWorker());
    tuning.setLiveMode(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return spoken.load(); }, 60000));
    tuning.setVolume(-21.0F, false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return told.size() == 2; }, 60000));
    ASSERT_EQ(told.back(), LiveWorker::State::confirmed);
    const auto confirmed = link.confirmedImage();
    ASSERT_TRUE(confirmed.has_value());
    EXPECT_EQ(std::memcmp(&*confirmed, target.memory().live.data(), sizeof *confirmed), 0);
    EXPECT_NE(std::memcmp(&*confirmed, &tuning.image(), sizeof *confirmed), 0) << "the drag is not there";
}

TEST_F(LineInUse, EveryExchangeIsToldWithItsUser) {
    std::vector<std::pair<LineUser, std::string>> told;
    QObject::connect(&link, &CommLink::exchangeBegan, &link,
                     [&](LineUser user) { told.emplace_back(user, "began"); });
    QObject::connect(&link, &CommLink::exchangeEnded, &link, [&](LineUser user, ExchangeEnd end) {
        told.emplace_back(user, "ended " + std::to_string(static_cast<int>(end)));
    });
    QObject::connect(&link, &CommLink::portBoxClosed, &link,
                     [&](LineUser user) { told.emplace_back(user, "box closed"); });
    QObject::connect(&link, &CommLink::blockSent, &link, [&](LineUser user, qulonglong done, qulonglong all) {
        told.emplace_back(user, "block " + std::to_string(done) + " of " + std::to_string(all));
    });
    TargetCommands commands(tuning, link.foreground(), boxes);
    const auto of = [](LineUser user, std::string what) { return std::pair(user, std::move(what)); };
    EXPECT_TRUE(commands.ReadVersions().has_value());
    EXPECT_THAT(std::exchange(told, {}),
                ElementsAre(of(LineUser::command, "began"), of(LineUser::command, "ended 0")));
    EXPECT_TRUE(link.background().ReadClipState().has_value());
    EXPECT_THAT(std::exchange(told, {}),
                ElementsAre(of(LineUser::clipPoll, "began"), of(LineUser::clipPoll, "ended 0")));
    ASSERT_TRUE(link.startWorker());
    tuning.setLiveMode(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return link.confirmedImage().has_value(); }, 60000));
    QCoreApplication::sendPostedEvents();
    EXPECT_THAT(std::exchange(told, {}),
                ElementsAre(of(LineUser::liveMode, "began"), of(LineUser::liveMode, "block 1 of 1"),
                            of(LineUser::liveMode, "ended 0"), of(LineUser::liveMode, "began"),
                            of(LineUser::liveMode, "ended 0")));
    link.setPortName("nowhere");
    EXPECT_FALSE(commands.ReadVersions().has_value());
    EXPECT_THAT(told, ElementsAre(of(LineUser::command, "began"),
                                  of(LineUser::command,
                                     "ended " + std::to_string(static_cast<int>(ExchangeEnd::portNotOpened))),
                                  of(LineUser::command, "box closed")));
}

TEST_F(LineInUse, APollDoesNotNeedItMoreThanAnother) {
    whenTheTargetSpeaks = [this] { note(); };
    EXPECT_TRUE(link.background().ReadClipState().has_value());
    EXPECT_THAT(moments(), SizeIs(linesOfAnExchange));
    EXPECT_THAT(moments(), Each(nobody));
}

TEST(WrongSetBox, HoldsUpNoPollsWhileAnEditWaitsBehindIt) {
    struct AskingBoxes final : RecordingBoxes {
        BoxAnswer show(std::string_view text, BoxIcon icon, BoxButtons buttons) override {
            if (text == wrongSetText) {
                ask();
            }
            return RecordingBoxes::show(text, icon, buttons);
        }
        std::function<void()> ask;
    } boxes;
    TuningState tuning{boxes};
    tuning.start();
    CommLink link{tuning, boxes};
    link.setPortName("nowhere");
    std::vector<bool> had;
    std::atomic<bool> over = false;
    boxes.ask = [&] {
        tuning.raiseUpdatePending();
        for (int poll = 0; poll < 3 && !over; ++poll) {
            int looks = 0;
            had.push_back(link.takeTurnForPoll([&] { return looks++ == 0; }));
            if (had.back()) {
                EXPECT_FALSE(link.background().ReadClipState().has_value());
            }
        }
        over = true;
    };
    ASSERT_TRUE(link.startWorker());
    tuning.setLiveMode(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return over.load(); }, 60000));
    link.shutDown();
    EXPECT_THAT(had, ElementsAre(true, true, true));
}

}  // namespace
}  // namespace tessavo::test
