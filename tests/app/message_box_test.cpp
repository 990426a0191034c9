#include <QApplication>
#include <QTest>
#include <QThread>
#include <atomic>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

#include "app/ui_message_box.h"
#include "support/synthetic_events.h"
#include "support/waiting.h"

// Boxes asked for by other threads.

namespace tessavo::test {
namespace {

TEST(UiBoxes, OfThisThreadAppearAtOnce) {
    QString text;
    UiMessageBox boxes([&](const QString& shown, BoxIcon icon, BoxButtons buttons) {
        text = shown;
        EXPECT_EQ(icon, BoxIcon::error);
        EXPECT_EQ(buttons, BoxButtons::okCancel);
        return BoxAnswer::cancel;
    });
    EXPECT_EQ(boxes.show("a\r\nü", BoxIcon::error, BoxButtons::okCancel), BoxAnswer::cancel);
    EXPECT_EQ(text, QString::fromUtf8("a\r\nü"));
}

TEST(UiBoxes, OfAnotherThreadAppearOnThisOneAndTheOtherWaits) {
    std::atomic<bool> returned = false;
    std::atomic<bool> asking = false;
    bool returnedWhileShown = true;
    const QThread* shownOn = nullptr;
    UiMessageBox boxes([&](const QString&, BoxIcon, BoxButtons) {
        shownOn = QThread::currentThread();
        // The window lives on while the box is open.
        EXPECT_TRUE(letLoopRun());
        returnedWhileShown = returned;
        return BoxAnswer::no;
    });
    BoxAnswer answer = BoxAnswer::ok;
    std::thread worker([&] {
        asking = true;
        answer = boxes.show("x", BoxIcon::error, BoxButtons::yesNoCancel);
        returned = true;
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return returned.load(); }, 10000));
    if (!returned) {
        boxes.stopAnswering();
    }
    worker.join();
    EXPECT_TRUE(asking);
    EXPECT_EQ(shownOn, QThread::currentThread());
    EXPECT_FALSE(returnedWhileShown);
    EXPECT_EQ(answer, BoxAnswer::no);
}

TEST(UiBoxes, OfManyThreadsEachGetTheirOwnAnswer) {
    UiMessageBox boxes([](const QString& text, BoxIcon, BoxButtons) {
        return text == QStringLiteral("yes") ? BoxAnswer::yes : BoxAnswer::no;
    });
    std::atomic<int> wrong = 0;
    std::atomic<int> done = 0;
    std::vector<std::thread> workers;
    for (int i = 0; i < 6; ++i) {
        workers.emplace_back([&, i] {
            for (int k = 0; k < 20; ++k) {
                const bool yes = (i + k) % 2 == 0;
                const BoxAnswer answer =
                    boxes.show(yes ? "yes" : "no", BoxIcon::none, BoxButtons::yesNoCancel);
                wrong += answer == (yes ? BoxAnswer::yes : BoxAnswer::no) ? 0 : 1;
            }
            ++done;
        });
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return done == 6; }, 30000));
    boxes.stopAnswering();
    for (std::thread& worker : workers) {
        worker.join();
    }
    EXPECT_EQ(wrong, 0);
}

TEST(UiBoxes, AThreadThatWaitsIsLetGoAtTheEnd) {
    int shown = 0;
    UiMessageBox boxes([&](const QString&, BoxIcon, BoxButtons) {
        ++shown;
        return BoxAnswer::yes;
    });
    std::atomic<bool> asking = false;
    std::array<BoxAnswer, 3> answers{BoxAnswer::yes, BoxAnswer::yes, BoxAnswer::yes};
    std::thread worker([&] {
        asking = true;
        answers[0] = boxes.show("waits", BoxIcon::error, BoxButtons::ok);
        answers[1] = boxes.show("comes later", BoxIcon::error, BoxButtons::okCancel);
        answers[2] = boxes.show("comes last", BoxIcon::error, BoxButtons::yesNoCancel);
    });
    EXPECT_TRUE(eventually([&] { return asking.load(); }));
    // This thread runs no event loop now, as at the end of the program.
    boxes.stopAnswering();
    worker.join();
    EXPECT_EQ(answers, (std::array<BoxAnswer, 3>{BoxAnswer::ok, BoxAnswer::cancel, BoxAnswer::cancel}));
    EXPECT_TRUE(letLoopRun());
    EXPECT_EQ(shown, 0) << "no box after the end";
}

TEST(UiBoxes, AClosedBoxIsOkOrCancel) {
    EXPECT_EQ(answerWhenClosed(BoxButtons::ok), BoxAnswer::ok);
    EXPECT_EQ(answerWhenClosed(BoxButtons::okCancel), BoxAnswer::cancel);
    EXPECT_EQ(answerWhenClosed(BoxButtons::yesNo), BoxAnswer::cancel);
    EXPECT_EQ(answerWhenClosed(BoxButtons::yesNoCancel), BoxAnswer::cancel);
}

}  // namespace
}  // namespace tessavo::test
