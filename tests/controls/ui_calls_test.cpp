#include "controls/ui_calls.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEventLoop>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace tessavo::test {
namespace {

constexpr int patienceMs = 30000;

/// Runs this on another thread to its end.
template <typename Work>
void elsewhere(Work work) {
    std::thread(std::move(work)).join();
}

TEST(UiCallsOfThisThread, RunAtOnce) {
    UiCalls calls;
    bool ran = false;
    calls.call([&] { ran = true; });
    EXPECT_TRUE(ran);
}

TEST(UiCallsOfOtherThreads, RunOnThisOneWhenItsLoopTurns) {
    UiCalls calls;
    std::thread::id where;
    elsewhere([&] { calls.call([&] { where = std::this_thread::get_id(); }); });
    EXPECT_EQ(where, std::thread::id());
    QCoreApplication::processEvents();
    EXPECT_EQ(where, std::this_thread::get_id());
}

TEST(UiCallsOfOtherThreads, WakeALoopThatWaits) {
    UiCalls calls;
    QEventLoop loop;
    bool ran = false;
    QTimer::singleShot(patienceMs, &loop, &QEventLoop::quit);
    std::thread other;
    // The loop runs by then and has nothing else to do.
    QTimer::singleShot(0, &loop, [&] {
        other = std::thread([&] {
            calls.call([&] {
                ran = true;
                loop.quit();
            });
        });
    });
    loop.exec();
    other.join();
    EXPECT_TRUE(ran);
}

TEST(UiCallsOfOtherThreads, KeepTheOrderOfTheirThreadAndLoseNothing) {
    constexpr int threads = 4;
    constexpr int each = 2000;
    UiCalls calls;
    std::vector<std::vector<std::string>> seen(threads);
    std::vector<std::thread> others;
    others.reserve(threads);
    for (std::size_t number = 0; number < threads; ++number) {
        others.emplace_back([&, number] {
            for (int i = 0; i < each; ++i) {
                calls.call([&seen, number, text = std::to_string(i)] { seen[number].push_back(text); });
            }
        });
    }
    const auto all = [&] {
        return std::ranges::all_of(seen, [](const auto& texts) { return texts.size() == each; });
    };
    EXPECT_TRUE(QTest::qWaitFor(all, patienceMs));
    for (std::thread& other : others) {
        other.join();
    }
    for (const auto& texts : seen) {
        for (int i = 0; i < static_cast<int>(texts.size()); ++i) {
            ASSERT_EQ(texts[static_cast<std::size_t>(i)], std::to_string(i));
        }
    }
}

TEST(UiCallsOfOtherThreads, OfTwoObjectsKeepTheirOrderToo) {
    UiCalls one;
    UiCalls two;
    std::string order;
    elsewhere([&] {
        one.call([&] { order += 'a'; });
        two.call([&] { order += 'b'; });
        one.call([&] { order += 'c'; });
    });
    QCoreApplication::processEvents();
    EXPECT_EQ(order, "abc");
}

TEST(UiCallsOfOtherThreads, GoOnInALoopThatACallRuns) {
    UiCalls calls;
    std::string order;
    elsewhere([&] {
        calls.call([&] {
            order += "(";
            // As the events of a box do that opens here: a loop within a loop may sleep until something new
            // comes.
            QAbstractEventDispatcher::instance()->wakeUp();
            QCoreApplication::processEvents();
            order += ")";
        });
        calls.call([&] { order += "x"; });
    });
    QCoreApplication::processEvents();
    EXPECT_EQ(order, "(x)");
}

TEST(UiCallsOfOtherThreads, AreDroppedWithTheObject) {
    auto calls = std::make_unique<UiCalls>();
    bool ran = false;
    const auto held = std::make_shared<int>(0);
    elsewhere([&] { calls->call([&ran, held] { ran = true; }); });
    EXPECT_EQ(held.use_count(), 2);
    calls.reset();
    EXPECT_EQ(held.use_count(), 1);
    QCoreApplication::processEvents();
    EXPECT_FALSE(ran);
}

}  // namespace
}  // namespace tessavo::test
