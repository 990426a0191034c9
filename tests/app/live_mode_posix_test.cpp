#include <QElapsedTimer>
#include <QTest>
#include <chrono>
#include <cstring>
#include <thread>

#include "app/status_line.h"
#include "support/environment.h"
#include "support/frame_fixture.h"
#include "support/waiting.h"
#include "target/pty_target.h"

// From the button to the target's memory and back to the status bar, over a real line.

namespace tessavo::test {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;

constexpr int patienceMs = 30000;

class LiveLine : public FrameTest {
 protected:
    void startTarget(FaultPlan faults = {}) {
        PtyTarget::Options options;
        options.faults = std::move(faults);
        target_ = std::make_unique<PtyTarget>(TargetMemory{}, std::move(options));
        ASSERT_EQ(target_->start(), "");
        link.setPortName(target_->portName());
        ASSERT_TRUE(link.startWorker());
    }
    ~LiveLine() override {
        boxes.stopAnswering();
        link.shutDown();
    }

    bool statusBecomes(TargetStatus::Light light) {
        return QTest::qWaitFor([&] { return frame->statusLine().target().light == light; }, patienceMs);
    }
    bool targetHoldsTheImage() {
        const ImageBytes live = target_->memory().live;
        return std::memcmp(live.data(), &tuning.image(), live.size()) == 0;
    }

    OwnRunFolder runFolder_;
    std::unique_ptr<PtyTarget> target_;
};

TEST_F(LiveLine, TheTargetConfirmsWhatWasSentAndTheStatusBarTellsIt) {
    startTarget();
    tuning.setVolume(4.0F, true);
    std::vector<QString> lines;
    QObject::connect(&link, &CommLink::lineLogged, frame.get(),
                     [&](LogKind, const QString& text) { lines.push_back(text); });
    EXPECT_FALSE(targetHoldsTheImage());
    QTest::mouseClick(&eqMode(), Qt::LeftButton);
    ASSERT_TRUE(statusBecomes(TargetStatus::Light::confirmed));
    EXPECT_TRUE(targetHoldsTheImage());
    const QString sentence = frame->statusLine().paneText(0);
    const QString port = QString::fromStdString(target_->portName());
    EXPECT_TRUE(sentence.startsWith(port + QStringLiteral(", Live Mode on, confirmed ")))
        << sentence.toStdString();
    EXPECT_FALSE(lines.empty());
    EXPECT_FALSE(tuning.updatePending());
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(LiveLine, AnEditFollowsOnItsOwnAndOffStopsThat) {
    startTarget();
    QTest::mouseClick(&eqMode(), Qt::LeftButton);
    ASSERT_TRUE(statusBecomes(TargetStatus::Light::confirmed));
    QTest::mouseClick(&flag(3), Qt::LeftButton);
    EXPECT_FALSE(targetHoldsTheImage());
    ASSERT_TRUE(QTest::qWaitFor([&] { return targetHoldsTheImage(); }, patienceMs));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !tuning.updatePending(); }, patienceMs));
    ASSERT_TRUE(statusBecomes(TargetStatus::Light::confirmed));
    QTest::mouseClick(&eqMode(), Qt::LeftButton);
    QTest::mouseClick(&flag(4), Qt::LeftButton);
    // Three looks of the worker.
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return timer.elapsed() > 800; }, 5000));
    EXPECT_TRUE(tuning.updatePending());
    EXPECT_FALSE(targetHoldsTheImage());
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(LiveLine, AWrongConfirmationIsToldInABoxOfThisThread) {
    FaultPlan faults;
    faults.wrongConfirmation = true;
    startTarget(std::move(faults));
    QTest::mouseClick(&eqMode(), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !shown.empty(); }, patienceMs));
    EXPECT_EQ(shown[0].text, "Target received wrong set");
    ASSERT_TRUE(statusBecomes(TargetStatus::Light::trouble));
    EXPECT_TRUE(frame->statusLine().paneText(0).contains(QStringLiteral(", Live Mode on, wrong set ")));
}

TEST_F(LiveLine, WithoutAPortTheTroubleIsTold) {
    ASSERT_TRUE(link.startWorker());
    QTest::mouseClick(&eqMode(), Qt::LeftButton);
    ASSERT_TRUE(statusBecomes(TargetStatus::Light::trouble));
    EXPECT_TRUE(frame->statusLine().paneText(0).startsWith(
        QStringLiteral("no port, Live Mode on, port not opened ")));
    EXPECT_THAT(shown, Contains(::testing::Field(&ShownBox::text, "Cannot open COM port!")));
}

TEST_F(LiveLine, ShutDownInTheMiddleOfAnExchangeEndsWithinASecond) {
    FaultPlan faults;
    faults.silentBlocks = {1};
    bool sending = false;
    QObject::connect(&link, &CommLink::lineLogged, &link, [&] { sending = true; });
    startTarget(std::move(faults));
    QTest::mouseClick(&eqMode(), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return sending; }, patienceMs));
    boxes.stopAnswering();
    const auto start = std::chrono::steady_clock::now();
    link.shutDown();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_THAT(shown, IsEmpty()) << "nothing is told of an exchange that the end has cut short";
}

TEST_F(LiveLine, ShutDownWhileABoxWaitsEndsWithinASecond) {
    FaultPlan faults;
    faults.wrongConfirmation = true;
    startTarget(std::move(faults));
    QTest::mouseClick(&eqMode(), Qt::LeftButton);
    // This thread's loop rests, so that the box of the wrong set cannot be answered.
    bool ran = false;
    ASSERT_TRUE(eventually([&] {
        ran = ran || link.liveTransferRuns();
        return ran && !link.liveTransferRuns();
    }));
    boxes.stopAnswering();
    const auto start = std::chrono::steady_clock::now();
    link.shutDown();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST_F(LiveLine, TheWorkerCanBeShutDownTwiceAndNeedNotHaveStarted) {
    link.shutDown();
    link.shutDown();
    EXPECT_FALSE(tuning.liveMode());
}

}  // namespace
}  // namespace tessavo::test
