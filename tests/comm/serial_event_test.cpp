#include <gtest/gtest.h>
#include <thread>

#include "comm/open_serial.h"
#include "support/elapsed.h"

namespace tessavo::test {
namespace {

using namespace std::chrono_literals;

using SerialEvent = OpenSerialTest;

TEST_F(SerialEvent, CancelFromAnotherThreadEndsAWait) {
    std::jthread canceller([this] {
        EXPECT_TRUE(port_.untilWaiting());
        port_.Cancel();
    });
    EXPECT_EQ(port_.WaitEvent(nullptr, CSerial::infinite), serial_result::operationAborted);
}

TEST_F(SerialEvent, ReceivedBytesAreReported) {
    ASSERT_TRUE(line_.send("a"));
    EXPECT_EQ(port_.WaitEvent(nullptr, longWait), serial_result::success);
    EXPECT_EQ(port_.eventType(), serial_event::received);
    char byte = 0;
    EXPECT_EQ(port_.Read(&byte, 1, nullptr, nullptr, longWait), serial_result::success);
    EXPECT_EQ(byte, 'a');
}

TEST_F(SerialEvent, WaitOnAQuietLineTimesOut) {
    const Elapsed elapsed;
    EXPECT_EQ(port_.WaitEvent(nullptr, 60), serial_result::timeout);
    EXPECT_GE(elapsed.get(), 60ms);
    EXPECT_LT(elapsed.get(), generous);
    EXPECT_EQ(port_.eventType(), 0U);
}

TEST_F(SerialEvent, OnlyWhatTheMaskNamesIsReported) {
    ASSERT_EQ(port_.SetMask(serial_event::breakSeen), serial_result::success);
    ASSERT_TRUE(line_.send("a"));
    const Elapsed elapsed;
    EXPECT_EQ(port_.WaitEvent(nullptr, 60), serial_result::timeout);
    EXPECT_GE(elapsed.get(), 60ms);
    ASSERT_EQ(port_.SetMask(serial_event::standard), serial_result::success);
    EXPECT_EQ(port_.WaitEvent(nullptr, longWait), serial_result::success);
}

TEST_F(SerialEvent, IsCompletedLater) {
    ASSERT_EQ(port_.WaitEvent(&overlapped_, 0), serial_result::success);
    ASSERT_TRUE(line_.send("a"));
    EXPECT_EQ(port_.Complete(overlapped_, &count_, longWait), serial_result::success);
    EXPECT_EQ(count_, 0U);
    EXPECT_EQ(port_.eventType(), serial_event::received);
}

TEST_F(SerialEvent, SeenAtTheStartIsToldByTheCompletion) {
    ASSERT_TRUE(line_.send("a"));
    ASSERT_TRUE(port_.untilReceived(1));
    ASSERT_EQ(port_.WaitEvent(&overlapped_, 0), serial_result::success);
    char byte = 0;
    ASSERT_EQ(port_.Read(&byte, 1, nullptr, nullptr, longWait), serial_result::success);
    EXPECT_EQ(port_.Complete(overlapped_, nullptr, longWait), serial_result::success);
    EXPECT_EQ(port_.eventType(), serial_event::received);
}

TEST_F(SerialEvent, WaitOnAPulledCableIsAnErrorEveryTime) {
    line_.hangUp();
    const Elapsed elapsed;
    for (int round = 0; round < 3; ++round) {
        EXPECT_PRED1(tellsOfAVanishedDevice, port_.WaitEvent(nullptr, longWait));
    }
    EXPECT_LT(elapsed.get(), generous);
}

TEST_F(SerialEvent, EndlessWaitNeedsNoOverlappedTransfers) {
    port_.Close();
    ASSERT_EQ(port_.Open(line_.path(), 0, 0, false), serial_result::success);
    ASSERT_TRUE(line_.send("z"));
    EXPECT_EQ(port_.WaitEvent(nullptr, CSerial::infinite), serial_result::success);
    EXPECT_EQ(port_.eventType(), serial_event::received);
}

}  // namespace
}  // namespace tessavo::test
