#include "target/port_router.h"

#include <gtest/gtest.h>

#include "comm/port_list.h"
#include "support/device_port.h"
#include "target/in_process_port.h"

namespace tessavo::test {
namespace {

constexpr std::uint32_t waitMs = 5000;

struct RoutedLine {
    InProcessTarget target{"demo", TargetMemory::holding(imageOf(0)), {}};
    PortRouter port{target.deviceName(), std::make_unique<InProcessPort>(target)};
};

TEST(PortRouter, TheSpecialNameLeadsToTheTarget) {
    RoutedLine line;
    ASSERT_EQ(line.port.Open(devicePath("demo"), 0, 0, true), serial_result::success);
    EXPECT_EQ(line.port.Setup(115200, 8, serial_frame::parityNone, serial_frame::stopBitsOne, 0),
              serial_result::success);
    EXPECT_EQ(line.port.GetBaudrate(), 115200);
    EXPECT_EQ(line.port.GetDataBits(), 8);
    EXPECT_EQ(line.port.GetParity(), serial_frame::parityNone);
    EXPECT_EQ(line.port.GetStopBits(), serial_frame::stopBitsOne);
    EXPECT_EQ(line.port.SetupHandshaking(CSerial::handshakeNone), serial_result::success);
    EXPECT_EQ(line.port.GetHandshaking(), CSerial::handshakeNone);
    EXPECT_EQ(line.port.SetEventChar('x', false), serial_result::success);
    EXPECT_EQ(line.port.GetEventChar(), 'x');
    EXPECT_EQ(line.port.GetEventMask(), serial_event::standard);
    EXPECT_EQ(line.port.SetupReadTimeouts(CSerial::blocking), serial_result::success);
    ASSERT_EQ(line.port.WaitEvent(nullptr, waitMs), serial_result::success);
    EXPECT_EQ(line.port.eventType(), serial_event::received);
    std::uint8_t byte = 0;
    std::uint32_t count = 0;
    EXPECT_EQ(line.port.Read(&byte, 1, &count, nullptr, waitMs), serial_result::success);
    EXPECT_EQ(byte, control_byte::request);
    EXPECT_EQ(line.port.Write(disconnect.data(), 1, &count, nullptr, waitMs), serial_result::success);
    EXPECT_EQ(line.port.Read(&byte, 1, &count, nullptr, waitMs), serial_result::success);
    EXPECT_EQ(byte, control_byte::positive);
    EXPECT_EQ(line.port.Read(&byte, 1, &count, nullptr, 0), serial_result::timeout);
    EXPECT_EQ(line.port.lastError(), serial_result::timeout);
}

TEST(PortRouter, OtherNamesGoToTheSystem) {
    RoutedLine line;
    const std::uint32_t expected = CSerial().Open(devicePath("no-such-port"), 0, 0, true);
    EXPECT_NE(expected, serial_result::success);
    EXPECT_EQ(line.port.Open(devicePath("no-such-port"), 0, 0, true), expected);
    EXPECT_EQ(line.port.lastError(), expected);
    EXPECT_EQ(line.port.GetBaudrate(), -1);
    EXPECT_EQ(line.port.Open(devicePath("demo"), 0, 0, true), serial_result::success);
}

TEST(PortRouter, AnOpenPortStaysWhatItIs) {
    RoutedLine line;
    ASSERT_EQ(line.port.Open(devicePath("demo"), 0, 0, true), serial_result::success);
    EXPECT_EQ(line.port.Open(devicePath("no-such-port"), 0, 0, true), serial_result::alreadyInitialised);
    EXPECT_EQ(line.port.Open(devicePath("demo"), 0, 0, true), serial_result::alreadyInitialised);
    EXPECT_EQ(line.port.GetDataBits(), 8);
    EXPECT_EQ(line.port.Close(), serial_result::success);
    EXPECT_NE(line.port.Open(devicePath("no-such-port"), 0, 0, true), serial_result::success);
}

TEST(PortRouter, CancelReachesWhicheverPortIsOpened) {
    RoutedLine line;
    line.port.Cancel();
    ASSERT_EQ(line.port.Open(devicePath("demo"), 0, 0, true), serial_result::success);
    line.port.SetupReadTimeouts(CSerial::blocking);
    std::uint8_t byte = 0;
    EXPECT_EQ(line.port.Read(&byte, 1, nullptr, nullptr, waitMs), serial_result::operationAborted);
    line.port.ClearCancel();
    EXPECT_EQ(line.port.Read(&byte, 1, nullptr, nullptr, waitMs), serial_result::success);
}

}  // namespace
}  // namespace tessavo::test
