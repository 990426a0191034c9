#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "comm/open_serial.h"
#include "comm/port_list.h"

namespace tessavo::test {
namespace {

TEST(SerialOpen, SecondOpenIsRefusedAndKeepsThePort) {
    const SerialLine line;
    const SerialLine other;
    CSerial port;
    ASSERT_EQ(port.Open(line.path(), 0, 0, true), serial_result::success);
    port.SetupReadTimeouts(CSerial::blocking);
    EXPECT_EQ(port.Open(line.path(), 0, 0, true), 1247U);
    EXPECT_EQ(port.Open(other.path(), 0, 0, false), 1247U);
    EXPECT_EQ(port.lastError(), serial_result::alreadyInitialised);
    ASSERT_TRUE(line.send("a"));
    EXPECT_EQ(readText(port, 1), "a");
}

TEST(SerialOpen, BytesThatArriveRightAfterTheOpenAreKept) {
    const SerialLine line;
    for (int round = 0; round < 50; ++round) {
        CSerial port;
        ASSERT_EQ(port.Open(line.path(), 0, 0, true), serial_result::success);
        ASSERT_TRUE(line.send("C"));
        ASSERT_EQ(port.Setup(115200, 8, serial_frame::parityNone, serial_frame::stopBitsOne, 0),
                  serial_result::success);
        ASSERT_EQ(port.SetupReadTimeouts(CSerial::blocking), serial_result::success);
        ASSERT_EQ(readText(port, 1), "C");
    }
}

// A target that notices the open before the program has gone on.
TEST(SerialOpen, BytesThatArrivedBeforeTheOpenAreKept) {
    const SerialLine line;
    ASSERT_TRUE(line.send("C"));
    CSerial port;
    ASSERT_EQ(port.Open(line.path(), 0, 0, true), serial_result::success);
    ASSERT_EQ(port.Setup(115200, 8, serial_frame::parityNone, serial_frame::stopBitsOne, 0),
              serial_result::success);
    port.SetupReadTimeouts(CSerial::blocking);
    EXPECT_EQ(readText(port, 1), "C");
}

TEST(SerialOpen, FreshPortReadsWithoutBlockingAndHasTheStandardMask) {
    const SerialLine line;
    CSerial port;
    ASSERT_EQ(port.Open(line.path(), 0, 0, true), serial_result::success);
    EXPECT_EQ(port.GetEventMask(), 0xC1U);
    char byte = 0;
    std::uint32_t count = 77;
    EXPECT_EQ(port.Read(&byte, 1, &count), serial_result::success);
    EXPECT_EQ(count, 0U);
}

// A driver may keep its own, so that is all that a line can show.
TEST(SerialOpen, QueueSizesHinderNeitherTheOpenNorTheBytes) {
    const SerialLine line;
    for (const auto& [in, out] : {std::pair{4096U, 4096U}, {1U, 0U}, {0U, 1U}, {1U << 20U, 1U << 20U}}) {
        CSerial port;
        ASSERT_EQ(port.Open(line.path(), in, out, true), serial_result::success) << in << ' ' << out;
        port.SetupReadTimeouts(CSerial::blocking);
        ASSERT_TRUE(line.send("abc"));
        EXPECT_EQ(readText(port, 3), "abc") << in << ' ' << out;
        EXPECT_EQ(port.WriteString("xyz", nullptr, nullptr, longWait), serial_result::success);
        EXPECT_EQ(line.receive(3), "xyz") << in << ' ' << out;
    }
}

TEST(SerialOpen, BusyPortIsRefusedUntilItIsClosed) {
    const SerialLine line;
    CSerial first;
    CSerial second;
    ASSERT_EQ(first.Open(line.path(), 0, 0, true), serial_result::success);
    EXPECT_EQ(second.Open(line.path(), 0, 0, true), 5U);
    first.SetupReadTimeouts(CSerial::blocking);
    ASSERT_TRUE(line.send("a"));
    EXPECT_EQ(readText(first, 1), "a");
    first.Close();
    EXPECT_EQ(second.Open(line.path(), 0, 0, true), serial_result::success);
    EXPECT_EQ(first.Open(line.path(), 0, 0, true), serial_result::accessDenied);
}

TEST(SerialOpen, CloseEndsTheMaskAndMayBeRepeated) {
    const SerialLine line;
    CSerial port;
    ASSERT_EQ(port.Open(line.path(), 0, 0, true), serial_result::success);
    EXPECT_EQ(port.Close(), serial_result::success);
    EXPECT_EQ(port.Close(), serial_result::success);
    EXPECT_EQ(port.GetEventMask(), 0U);
    EXPECT_EQ(port.GetBaudrate(), -1);
    EXPECT_EQ(port.lastError(), serial_result::invalidHandle);
}

TEST(SerialOpen, EndOfTheObjectClosesThePort) {
    const SerialLine line;
    {
        CSerial port;
        ASSERT_EQ(port.Open(line.path(), 0, 0, true), serial_result::success);
    }
    CSerial next;
    EXPECT_EQ(next.Open(line.path(), 0, 0, true), serial_result::success);
}

TEST(SerialOpen, WithoutOverlappedTransfersTimeLimitsAreRefused) {
    const SerialLine line;
    CSerial port;
    ASSERT_EQ(port.Open(line.path(), 0, 0, false), serial_result::success);
    char byte = 'a';
    std::uint32_t count = 77;
    EXPECT_EQ(port.Read(&byte, 1, &count, nullptr, 100), 1U);
    EXPECT_EQ(count, 0U);
    count = 77;
    EXPECT_EQ(port.Write(&byte, 1, &count, nullptr, 100), 1U);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(port.WriteString("a", nullptr, nullptr, 0), 1U);
    EXPECT_EQ(port.WaitEvent(nullptr, 100), 1U);
    EXPECT_EQ(port.lastError(), serial_result::invalidFunction);
}

TEST(SerialOpen, WithoutOverlappedTransfersEndlessOnesWork) {
    const SerialLine line;
    CSerial port;
    ASSERT_EQ(port.Open(line.path(), 0, 0, false), serial_result::success);
    port.SetupReadTimeouts(CSerial::blocking);
    char byte = 'a';
    EXPECT_EQ(port.Write(&byte, 1), serial_result::success);
    EXPECT_EQ(line.receive(1), "a");
    ASSERT_TRUE(line.send("z"));
    EXPECT_EQ(port.Read(&byte, 1), serial_result::success);
    EXPECT_EQ(byte, 'z');
}

}  // namespace
}  // namespace tessavo::test
