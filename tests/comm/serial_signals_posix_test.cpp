#include <csignal>
#include <gtest/gtest.h>
#include <sys/time.h>

#include "comm/serial.h"
#include "support/elapsed.h"
#include "support/pty_pair.h"

namespace tessavo::test {
namespace {

using namespace std::chrono_literals;

// Signals that interrupt every system call for as long as it lives.
class Interruptions {
 public:
    Interruptions() {
        struct sigaction action {};
        action.sa_handler = [](int) {};
        ::sigaction(SIGALRM, &action, &former_);
        const itimerval every{{0, 2000}, {0, 2000}};
        ::setitimer(ITIMER_REAL, &every, nullptr);
    }
    ~Interruptions() {
        const itimerval never{};
        ::setitimer(ITIMER_REAL, &never, nullptr);
        ::sigaction(SIGALRM, &former_, nullptr);
    }
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;

 private:
    struct sigaction former_ {};
};

TEST(SerialSignals, NeitherEndNorStretchAWait) {
    const PtyPair line;
    CSerial port;
    ASSERT_EQ(port.Open(line.path(), 0, 0, true), serial_result::success);
    ASSERT_EQ(port.SetupReadTimeouts(CSerial::blocking), serial_result::success);
    char byte = 0;
    const Interruptions interruptions;
    const Elapsed elapsed;
    EXPECT_EQ(port.Read(&byte, 1, nullptr, nullptr, 200), serial_result::timeout);
    EXPECT_GE(elapsed.get(), 200ms);
    EXPECT_LT(elapsed.get(), generous);
    ASSERT_TRUE(line.send("a"));
    EXPECT_EQ(port.Read(&byte, 1, nullptr, nullptr, 20000), serial_result::success);
}

}  // namespace
}  // namespace tessavo::test
