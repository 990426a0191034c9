#include <atomic>
#include <cerrno>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "pages/output/clip_poller.h"
#include "support/stepped_clock.h"

namespace tessavo::test {
namespace {

int priorityOfThisThread() {
    errno = 0;
    const int priority = getpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid)));
    EXPECT_EQ(errno, 0);
    return priority;
}

TEST(PollerThread, AsksAtTheLowestPriorityAndLeavesTheOthersTheirs) {
    constexpr int lowest = 19;
    const int before = priorityOfThisThread();
    ASSERT_LT(before, lowest) << "started at the lowest already: nothing to see";
    SteppedClock clock;
    std::atomic<int> whileAsking = before;
    std::atomic<int> whileDelivering = before;
    {
        ClipPoller poller({[&]() -> std::optional<ClipState> {
                               whileAsking = priorityOfThisThread();
                               return ClipState{};
                           },
                           [](const auto&) { return true; },
                           [&](const auto&) { whileDelivering = priorityOfThisThread(); }},
                          &clock);
        clock.waitForPause();
        poller.setOn(true);
        clock.step();
        clock.end();
    }
    EXPECT_EQ(whileAsking, lowest);
    EXPECT_EQ(whileDelivering, lowest);
    EXPECT_EQ(priorityOfThisThread(), before);
}

}  // namespace
}  // namespace tessavo::test
