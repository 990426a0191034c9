#include <gtest/gtest.h>

#include "comm/serial.h"
#include "support/pty_pair.h"

namespace tessavo::test {
namespace {

// A pseudo-terminal has no parity bit and no short characters, and drops the wish without a word.
TEST(SerialDriver, WhatItLeavesOutIsRefusedAndTheDeviceStays) {
    const PtyPair line;
    CSerial port;
    ASSERT_EQ(port.Open(line.path(), 0, 0, true), serial_result::success);
    ASSERT_EQ(port.Setup(9600, 8, 0, serial_frame::stopBitsTwo, 0), 0U);
    const std::string before = settingsText(line);
    EXPECT_EQ(port.Setup(115200, 8, serial_frame::parityEven, serial_frame::stopBitsOne, 0), 87U);
    EXPECT_EQ(port.Setup(115200, 7, serial_frame::parityNone, serial_frame::stopBitsOne, 0), 87U);
    EXPECT_EQ(settingsText(line), before);
    EXPECT_EQ(port.GetBaudrate(), 9600);
    EXPECT_EQ(port.GetParity(), serial_frame::parityNone);
}

TEST(SerialDriver, RatesWithoutANameAreRefusedAndTheDeviceStays) {
    const PtyPair line;
    CSerial port;
    ASSERT_EQ(port.Open(line.path(), 0, 0, true), serial_result::success);
    const std::string before = settingsText(line);
    EXPECT_EQ(port.Setup(115201, 8, 0, 0, 0), serial_result::invalidParameter);
    EXPECT_EQ(settingsText(line), before);
}

}  // namespace
}  // namespace tessavo::test
