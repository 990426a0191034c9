#include <gtest/gtest.h>

#include "comm/serial.h"
#include "comm/serial_line.h"

namespace tessavo::test {
namespace {

class SerialSettings : public testing::Test {
 protected:
    void SetUp() override { ASSERT_EQ(port_.Open(line_.path(), 0, 0, true), serial_result::success); }

    SerialLine line_;
    CSerial port_;
};

TEST_F(SerialSettings, TheTargetsLineIsSetUp) {
    EXPECT_EQ(port_.Setup(115200, 8, serial_frame::parityNone, serial_frame::stopBitsOne, 0), 0U);
    EXPECT_EQ(port_.GetBaudrate(), 115200);
    EXPECT_EQ(port_.GetDataBits(), 8);
    EXPECT_EQ(port_.GetParity(), serial_frame::parityNone);
    EXPECT_EQ(port_.GetStopBits(), serial_frame::stopBitsOne);
    EXPECT_EQ(port_.lastError(), serial_result::success);
}

TEST_F(SerialSettings, RatesAndStopBitsComeBack) {
    for (const std::uint32_t rate : {300U, 9600U, 57600U, 921600U, 4000000U}) {
        EXPECT_EQ(port_.Setup(rate, 8, 0, serial_frame::stopBitsTwo, 0), 0U);
        EXPECT_EQ(port_.GetBaudrate(), static_cast<int>(rate));
        EXPECT_EQ(port_.GetStopBits(), serial_frame::stopBitsTwo);
    }
    EXPECT_EQ(port_.Setup(9600, 8, 0, serial_frame::stopBitsOne, 0), 0U);
    EXPECT_EQ(port_.GetStopBits(), serial_frame::stopBitsOne);
}

TEST_F(SerialSettings, ImpossibleFramingsAreRefusedAndTheDeviceStays) {
    const std::string before = line_.settings();
    EXPECT_EQ(port_.Setup(0, 8, 0, 0, 0), serial_result::invalidParameter);
    EXPECT_EQ(port_.Setup(115200, 4, 0, 0, 0), serial_result::invalidParameter);
    EXPECT_EQ(port_.Setup(115200, 9, 0, 0, 0), serial_result::invalidParameter);
    EXPECT_EQ(port_.Setup(115200, 8, 5, 0, 0), serial_result::invalidParameter);
    EXPECT_EQ(port_.Setup(115200, 8, -1, 0, 0), serial_result::invalidParameter);
    EXPECT_EQ(port_.Setup(115200, 8, 0, 3, 0), serial_result::invalidParameter);
    EXPECT_EQ(port_.Setup(115200, 8, 0, serial_frame::stopBitsOneAndHalf, 0),
              serial_result::invalidParameter);
    EXPECT_EQ(line_.settings(), before);
}

TEST_F(SerialSettings, HardwareHandshakingComesBack) {
    for (const int mode : {CSerial::handshakeHardware, CSerial::handshakeSoftware, CSerial::handshakeHardware,
                           CSerial::handshakeNone}) {
        EXPECT_EQ(port_.SetupHandshaking(mode), serial_result::success);
        EXPECT_EQ(port_.GetHandshaking(), mode);
    }
}

TEST_F(SerialSettings, SoftwareHandshakingComesBack) {
    for (const int mode : {CSerial::handshakeSoftware, CSerial::handshakeNone, CSerial::handshakeSoftware}) {
        EXPECT_EQ(port_.SetupHandshaking(mode), serial_result::success);
        EXPECT_EQ(port_.GetHandshaking(), mode);
    }
}

TEST_F(SerialSettings, UnknownModesAreRefusedAndTheDeviceStays) {
    ASSERT_EQ(port_.SetupHandshaking(CSerial::handshakeSoftware), serial_result::success);
    const std::string before = line_.settings();
    EXPECT_EQ(port_.SetupHandshaking(3), 0x80070057U);
    EXPECT_EQ(port_.SetupHandshaking(-1), 0x80070057U);
    EXPECT_EQ(port_.SetupReadTimeouts(2), 0x80070057U);
    EXPECT_EQ(port_.SetupReadTimeouts(-1), 0x80070057U);
    EXPECT_EQ(port_.lastError(), serial_result::invalidArgument);
    EXPECT_EQ(line_.settings(), before);
    EXPECT_EQ(port_.GetHandshaking(), CSerial::handshakeSoftware);
}

TEST_F(SerialSettings, UnknownReadTimeOutModeKeepsTheFormerOne) {
    ASSERT_EQ(port_.SetupReadTimeouts(CSerial::blocking), serial_result::success);
    ASSERT_EQ(port_.SetupReadTimeouts(7), serial_result::invalidArgument);
    char byte = 0;
    EXPECT_EQ(port_.Read(&byte, 1, nullptr, nullptr, 5), serial_result::timeout);
}

TEST_F(SerialSettings, DtrModeOneEndsHardwareHandshakingAndOthersKeepIt) {
    ASSERT_EQ(port_.SetupHandshaking(CSerial::handshakeHardware), serial_result::success);
    ASSERT_EQ(port_.Setup(115200, 8, 0, 0, 0), serial_result::success);
    EXPECT_EQ(port_.GetHandshaking(), CSerial::handshakeHardware);
    ASSERT_EQ(port_.Setup(115200, 8, 0, 0, 1), serial_result::success);
    EXPECT_EQ(port_.GetHandshaking(), CSerial::handshakeNone);
}

TEST_F(SerialSettings, NoDtrModeEndsSoftwareHandshaking) {
    ASSERT_EQ(port_.SetupHandshaking(CSerial::handshakeSoftware), serial_result::success);
    for (const int mode : {0, 1, 2}) {
        ASSERT_EQ(port_.Setup(115200, 8, 0, 0, mode), serial_result::success);
        EXPECT_EQ(port_.GetHandshaking(), CSerial::handshakeSoftware) << mode;
    }
}

TEST_F(SerialSettings, EventCharacterComesBack) {
    EXPECT_EQ(port_.GetEventChar(), 0);
    EXPECT_EQ(port_.SetEventChar('\n', false), serial_result::success);
    EXPECT_EQ(port_.GetEventChar(), '\n');
    EXPECT_EQ(port_.SetEventChar('x', true), serial_result::success);
    EXPECT_EQ(port_.GetEventChar(), 'x');
}

TEST_F(SerialSettings, EventMaskComesBackAndTakesTheCharacterWhenAsked) {
    EXPECT_EQ(port_.SetEventChar('\n', false), serial_result::success);
    EXPECT_EQ(port_.GetEventMask(), 0xC1U);
    EXPECT_EQ(port_.SetEventChar('x', true), serial_result::success);
    EXPECT_EQ(port_.GetEventMask(), 0xC3U);
    EXPECT_EQ(port_.SetMask(serial_event::breakSeen), serial_result::success);
    EXPECT_EQ(port_.GetEventMask(), 0x40U);
}

TEST_F(SerialSettings, ReopenedPortStartsAnew) {
    ASSERT_EQ(port_.SetEventChar('x', true), serial_result::success);
    ASSERT_EQ(port_.SetupHandshaking(CSerial::handshakeHardware), serial_result::success);
    port_.Close();
    ASSERT_EQ(port_.Open(line_.path(), 0, 0, true), serial_result::success);
    EXPECT_EQ(port_.GetEventChar(), 0);
    EXPECT_EQ(port_.GetEventMask(), 0xC1U);
    EXPECT_EQ(port_.GetHandshaking(), CSerial::handshakeNone);
}

}  // namespace
}  // namespace tessavo::test
