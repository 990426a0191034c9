#include "comm/clock.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include "support/elapsed.h"

namespace tessavo::test {
namespace {

using namespace std::chrono_literals;

TEST(SystemClock, PausesForItsTimeAndNotMuchLonger) {
    SystemClock clock;
    const Elapsed elapsed;
    const Milliseconds before = clock.now();
    EXPECT_TRUE(clock.sleep(60ms));
    EXPECT_GE(elapsed.get(), 60ms);
    EXPECT_LT(elapsed.get(), generous);
    EXPECT_GE(clock.now() - before, 59ms);
}

TEST(SystemClock, NoTimeAndLessPassAtOnce) {
    SystemClock clock;
    const Elapsed elapsed;
    EXPECT_TRUE(clock.sleep(0ms));
    EXPECT_TRUE(clock.sleep(-5000000ms));
    EXPECT_LT(elapsed.get(), generous);
}

TEST(SystemClock, NeverGoesBack) {
    SystemClock clock;
    Milliseconds last = clock.now();
    for (int i = 0; i < 10000; ++i) {
        const Milliseconds now = clock.now();
        ASSERT_GE(now, last);
        last = now;
    }
}

TEST(SystemClock, InterruptEndsEveryRunningAndLaterPause) {
    SystemClock clock;
    std::vector<int> completed(3, 1);
    {
        std::vector<std::jthread> sleepers;
        sleepers.reserve(completed.size());
        for (int& one : completed) {
            sleepers.emplace_back([&clock, &one] { one = clock.sleep(Milliseconds::max()) ? 1 : 0; });
        }
        clock.interrupt();
    }
    EXPECT_EQ(completed, std::vector<int>({0, 0, 0}));
    const Elapsed elapsed;
    EXPECT_FALSE(clock.sleep(20s));
    EXPECT_FALSE(clock.sleep(0ms));
    EXPECT_LT(elapsed.get(), generous);
}

}  // namespace
}  // namespace tessavo::test
