#include <QDialog>
#include <QLineEdit>
#include <QShortcut>
#include <QTest>
#include <QTimer>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "comm/page/foreground_transfers.h"
#include "comm/page/page_bench.h"

// What a person meets while a command's exchange runs.

namespace tessavo::test {
namespace {

/// Exchanges that go on until the test lets them end.
class HeldTransfers : public ITransfers {
 public:
    bool SendToTarget(std::span<const std::uint8_t> /*data*/, MessageType /*type*/) override {
        return hold();
    }
    bool ReceiveFromTarget(std::span<std::uint8_t> reply, std::span<const std::uint8_t> request) override {
        const bool result = hold();
        if (result) {
            reply[0] = request[0];
        }
        return result;
    }
    void release(bool result = true) {
        const std::lock_guard guard(mutex_);
        released_ = true;
        result_ = result;
        changed_.notify_all();
    }
    bool running() {
        const std::lock_guard guard(mutex_);
        return running_;
    }
    std::thread::id thread;
    std::function<void()> onStart;

 private:
    bool hold() {
        thread = std::this_thread::get_id();
        if (onStart) {
            onStart();
        }
        std::unique_lock guard(mutex_);
        running_ = true;
        changed_.wait_for(guard, std::chrono::seconds(30), [this] { return released_; });
        running_ = false;
        released_ = false;
        return result_;
    }
    std::mutex mutex_;
    std::condition_variable changed_;
    bool released_ = false;
    bool running_ = false;
    bool result_ = true;
};

class ExchangeInTheWindow : public ::testing::Test {
 protected:
    ExchangeInTheWindow() : button_(QStringLiteral("Other"), 1, &window_) {
        window_.resize(300, 100);
        edit_.move(0, 50);
        window_.show();
        window_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
        QObject::connect(&button_, &QAbstractButton::clicked, [this] { ++clicks_; });
        auto* shortcut = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_O), &window_);
        QObject::connect(shortcut, &QShortcut::activated, [this] { ++shortcuts_; });
    }

    /// Runs an exchange; `meanwhile` is called on this thread once it runs, then it ends.
    bool exchange(const std::function<void()>& meanwhile, bool result = true) {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            if (held_.running()) {
                timer.stop();
                meanwhile();
                held_.release(result);
            }
        });
        timer.start(1);
        const std::array<std::uint8_t, 1> data{};
        return transfers_.SendToTarget(data, MessageType::blocks128);
    }

    HeldTransfers held_;
    ForegroundTransfers transfers_{held_};
    QWidget window_;
    CxSkinButton button_;
    QLineEdit edit_{&window_};
    int clicks_ = 0;
    int shortcuts_ = 0;
};

TEST_F(ExchangeInTheWindow, RunsOnAnotherThreadAndGivesItsResult) {
    EXPECT_TRUE(exchange([] {}, true));
    EXPECT_NE(held_.thread, std::this_thread::get_id());
    EXPECT_FALSE(exchange([] {}, false));
}

TEST_F(ExchangeInTheWindow, TellsItsStartAndItsEnd) {
    std::vector<std::string> events;
    QObject::connect(&transfers_, &ForegroundTransfers::started, [&](qulonglong blocks) {
        events.push_back("started " + std::to_string(blocks) + (transfers_.running() ? " running" : ""));
    });
    QObject::connect(&transfers_, &ForegroundTransfers::ended, [&](bool success) {
        events.push_back(std::string(success ? "success" : "failure") +
                         (transfers_.running() ? " running" : ""));
    });
    exchange([] {}, false);
    EXPECT_THAT(events, ::testing::ElementsAre("started 1 running", "failure"));
    EXPECT_EQ(transfers_.activity(), ForegroundTransfers::Activity::none);
}

TEST_F(ExchangeInTheWindow, KeepsTheWindowPaintingAndItsTimersRunning) {
    int ticks = 0;
    class Painted : public QWidget {
     public:
        using QWidget::QWidget;
        void paintEvent(QPaintEvent*) override { ++paints; }
        int paints = 0;
    } painted(&window_);
    painted.setGeometry(100, 0, 50, 50);
    painted.show();
    QTimer clock;
    QObject::connect(&clock, &QTimer::timeout, [&] {
        ++ticks;
        painted.update();
    });
    clock.start(1);
    exchange([&] {
        painted.paints = 0;
        ticks = 0;
        EXPECT_TRUE(passEventsUntil([&] { return ticks >= 5 && painted.paints >= 2; }));
    });
}

TEST_F(ExchangeInTheWindow, TakesNoClickNoKeyNoShortcutAndNoneOfThemLater) {
    edit_.setFocus();
    exchange([&] {
        QTest::mouseClick(&button_, Qt::LeftButton);
        QTest::keyClicks(&edit_, QStringLiteral("abc"));
        QTest::keyClick(&window_, Qt::Key_O, Qt::ControlModifier);
        QTest::keyClick(&button_, Qt::Key_Space);
        EXPECT_EQ(clicks_, 0);
        EXPECT_EQ(shortcuts_, 0);
        EXPECT_EQ(edit_.text(), QString());
    });
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks_, 0);
    EXPECT_EQ(edit_.text(), QString());
    QTest::mouseClick(&button_, Qt::LeftButton);
    QTest::keyClicks(&edit_, QStringLiteral("abc"));
    QTest::keyClick(&window_, Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(clicks_, 1) << "afterwards everything works again";
    EXPECT_EQ(shortcuts_, 1);
    EXPECT_EQ(edit_.text(), QStringLiteral("abc"));
}

TEST_F(ExchangeInTheWindow, LetsABoxBeAnswered) {
    bool answered = false;
    exchange([&] {
        QDialog box(&window_);
        CxSkinButton ok(QStringLiteral("OK"), 2, &box);
        QObject::connect(&ok, &QAbstractButton::clicked, &box, &QDialog::accept);
        QTimer::singleShot(0, &box, [&] { QTest::mouseClick(&ok, Qt::LeftButton); });
        answered = box.exec() == QDialog::Accepted;
    });
    EXPECT_TRUE(answered);
}

TEST_F(ExchangeInTheWindow, RefusesASecondOneMeanwhile) {
    exchange([&] {
        const std::array<std::uint8_t, 1> request{5};
        std::array<std::uint8_t, 4> reply{};
        EXPECT_FALSE(transfers_.ReceiveFromTarget(reply, request));
        EXPECT_EQ(reply[0], 0);
        EXPECT_EQ(transfers_.activity(), ForegroundTransfers::Activity::sending) << "the first goes on";
    });
}

TEST_F(ExchangeInTheWindow, ShowsABusyCursorOnlyMeanwhile) {
    exchange([] { EXPECT_NE(QApplication::overrideCursor(), nullptr); });
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(ExchangeInTheWindow, EndsAlsoWhenTheProgramQuitsMeanwhile) {
    QTimer::singleShot(0, &window_, [&] {
        exchange([] { QCoreApplication::quit(); });
        clicks_ = 100;
    });
    QCoreApplication::exec();
    EXPECT_EQ(clicks_, 100) << "the command has returned before the loop did";
}

TEST_F(ExchangeInTheWindow, KnowsWhatItDoes) {
    using Activity = ForegroundTransfers::Activity;
    std::vector<Activity> seen;
    QObject::connect(&transfers_, &ForegroundTransfers::started,
                     [&] { seen.push_back(transfers_.activity()); });
    const std::vector<std::uint8_t> data(3000);
    std::array<std::uint8_t, 8> reply{};
    held_.release();
    transfers_.SendToTarget(data, MessageType::blocks4k);
    held_.release();
    transfers_.SendToTarget(data, MessageType::blocks1kWithCrc);
    held_.release();
    transfers_.ReceiveFromTarget(reply, data);
    EXPECT_THAT(seen,
                ::testing::ElementsAre(Activity::sending, Activity::sendingSoftware, Activity::reading));
}

class CommandInTheWindow : public PageBench {};

TEST_F(CommandInTheWindow, TheLogGrowsWhileTheCommandRuns) {
    // The target waits before its reply: the lines up to there must be on the page by then.
    HeldTransfers held;
    ForegroundTransfers foreground(held);
    std::unique_ptr<CCommunication> other(
        new CCommunication({.tuning = tuning.state,
                            .transfers = foreground,
                            .boxes = boxes,
                            .dialogs = dialogs,
                            .listPorts = [] { return std::vector<std::string>{"COM1"}; },
                            .usePort = [](const std::string&) {},
                            .rememberPort = {},
                            .refreshPages = [] {},
                            .lastPort = {}}));
    other->show();
    auto* lines = other->findChild<LogView*>();
    held.onStart = [&] { other->Log(LogKind::status, QStringLiteral("Connecting to Target")); };
    bool grew = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (held.running() && lines->lineCount() == 1) {
            grew = true;
            held.release(false);
        }
    });
    timer.start(1);
    click(*other->findChild<CxSkinButton*>(QStringLiteral("id%1").arg(comm_id::update)));
    EXPECT_TRUE(grew);
}

}  // namespace
}  // namespace tessavo::test
