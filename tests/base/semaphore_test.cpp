#include "base/semaphore.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include "support/elapsed.h"

namespace tessavo::test {
namespace {

using namespace std::chrono_literals;

TEST(Semaphore, HasOneHolderAtATime) {
    CSemaphore lock;
    EXPECT_TRUE(lock.take(0ms));
    EXPECT_FALSE(lock.take(0ms));
    lock.release();
    EXPECT_TRUE(lock.take(0ms));
}

TEST(Semaphore, WaitsOutItsLimitAndNotMuchMore) {
    CSemaphore lock;
    ASSERT_TRUE(lock.take(0ms));
    const Elapsed elapsed;
    EXPECT_FALSE(lock.take(80ms));
    EXPECT_GE(elapsed.get(), 80ms);
    EXPECT_LT(elapsed.get(), generous);
}

TEST(Semaphore, AnyThreadReleases) {
    CSemaphore lock;
    ASSERT_TRUE(lock.take(0ms));
    std::jthread other([&lock] { lock.release(); });
    EXPECT_TRUE(lock.take(20s));
}

TEST(Semaphore, TheLongestLimitIsNoTimeOut) {
    CSemaphore lock;
    ASSERT_TRUE(lock.take(std::chrono::milliseconds::max()));
    std::jthread other([&lock] { lock.release(); });
    EXPECT_TRUE(lock.take(std::chrono::milliseconds::max()));
}

TEST(Semaphore, ReleaseOfAFreeLockDoesNotLetTwoIn) {
    CSemaphore lock;
    lock.release();
    lock.release();
    EXPECT_TRUE(lock.take(0ms));
    EXPECT_FALSE(lock.take(0ms));
}

TEST(Semaphore, GuardsPlainDataAgainstManyThreads) {
    CSemaphore lock;
    int guarded = 0;
    std::atomic<int> taken = 0;
    {
        std::vector<std::jthread> threads;
        threads.reserve(4);
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&] {
                for (int round = 0; round < 500; ++round) {
                    if (lock.take(20s)) {
                        ++guarded;
                        ++taken;
                        lock.release();
                    }
                }
            });
        }
    }
    EXPECT_EQ(taken, 2000);
    EXPECT_EQ(guarded, 2000);
}

}  // namespace
}  // namespace tessavo::test
