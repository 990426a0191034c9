#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <iterator>

#include "comm/serial.h"
#include "comm/tty_device_posix.h"
#include "comm/tty_settings_posix.h"

namespace tessavo::test {

using namespace tty;

namespace {

bool same(const termios& left, const termios& right) {
    return left.c_iflag == right.c_iflag && left.c_oflag == right.c_oflag && left.c_cflag == right.c_cflag &&
           left.c_lflag == right.c_lflag && cfgetispeed(&left) == cfgetispeed(&right) &&
           cfgetospeed(&left) == cfgetospeed(&right) &&
           std::equal(std::begin(left.c_cc), std::end(left.c_cc), std::begin(right.c_cc));
}

TEST(TtySettings, EveryFramingThatADeviceCanHaveComesBack) {
    for (std::uint8_t bits = 5; bits <= 8; ++bits) {
        for (int parity = serial_frame::parityNone; parity <= serial_frame::paritySpace; ++parity) {
            const std::uint8_t longStop =
                bits == 5 ? serial_frame::stopBitsOneAndHalf : serial_frame::stopBitsTwo;
            for (const std::uint8_t stop : {serial_frame::stopBitsOne, longStop}) {
                termios settings{};
                const Framing framing{19200, bits, parity, stop};
                ASSERT_TRUE(setFraming(settings, framing));
                EXPECT_EQ(framingOf(settings), framing) << int{bits} << ' ' << parity << ' ' << int{stop};
            }
        }
    }
}

TEST(TtySettings, ANewFramingLeavesNothingOfTheFormerOne) {
    termios settings{};
    ASSERT_TRUE(setFraming(settings, {9600, 5, serial_frame::parityMark, serial_frame::stopBitsOneAndHalf}));
    const Framing plain{115200, 8, serial_frame::parityNone, serial_frame::stopBitsOne};
    ASSERT_TRUE(setFraming(settings, plain));
    EXPECT_EQ(framingOf(settings), plain);
    termios fresh{};
    ASSERT_TRUE(setFraming(fresh, plain));
    EXPECT_TRUE(same(settings, fresh));
}

TEST(TtySettings, ParityIsCheckedExactlyWhenThereIsOne) {
    termios settings{};
    ASSERT_TRUE(setFraming(settings, {9600, 7, serial_frame::parityEven, serial_frame::stopBitsOne}));
    EXPECT_NE(settings.c_iflag & INPCK, 0U);
    settings.c_iflag &= ~static_cast<tcflag_t>(INPCK);
    EXPECT_EQ(framingOf(settings).parity, serial_frame::parityNone);
    ASSERT_TRUE(setFraming(settings, {9600, 7, serial_frame::parityNone, serial_frame::stopBitsOne}));
    EXPECT_EQ(settings.c_iflag & INPCK, 0U);
}

TEST(TtySettings, ImpossibleFramingsChangeNothing) {
    termios settings{};
    makeRaw(settings);
    const termios before = settings;
    EXPECT_FALSE(setFraming(settings, {12345, 8, 0, 0}));
    EXPECT_FALSE(setFraming(settings, {9600, 4, 0, 0}));
    EXPECT_FALSE(setFraming(settings, {9600, 255, 0, 0}));
    EXPECT_FALSE(setFraming(settings, {9600, 8, 5, 0}));
    EXPECT_FALSE(setFraming(settings, {9600, 8, 0, serial_frame::stopBitsOneAndHalf}));
    EXPECT_FALSE(setFraming(settings, {9600, 5, 0, serial_frame::stopBitsTwo}));
    EXPECT_TRUE(same(settings, before));
}

TEST(TtySettings, ARateWithoutANameIsZero) {
    termios settings{};
    ASSERT_TRUE(setFraming(settings, {9600, 8, 0, 0}));
    settings.c_cflag = (settings.c_cflag & ~static_cast<tcflag_t>(CBAUD)) | CBAUDEX;
    EXPECT_EQ(framingOf(settings).baudRate, 0U);
}

TEST(TtySettings, HandshakingComesBackAndStandsAlone) {
    termios settings{};
    for (const int mode : {CSerial::handshakeSoftware, CSerial::handshakeHardware, CSerial::handshakeNone}) {
        setHandshaking(settings, mode);
        EXPECT_EQ(handshakingOf(settings), mode);
    }
    EXPECT_EQ(settings.c_iflag & (IXON | IXOFF), 0U);
    EXPECT_EQ(settings.c_cflag & CRTSCTS, 0U);
}

TEST(TtySettings, SoftwareHandshakingCountsOnlyBothWays) {
    termios settings{};
    settings.c_iflag = IXON;
    EXPECT_EQ(handshakingOf(settings), CSerial::handshakeNone);
    settings.c_iflag = IXOFF;
    EXPECT_EQ(handshakingOf(settings), CSerial::handshakeNone);
    setHandshaking(settings, CSerial::handshakeSoftware);
    EXPECT_EQ(settings.c_cc[VSTART], 0x11);
    EXPECT_EQ(settings.c_cc[VSTOP], 0x13);
}

TEST(TtySettings, RawKeepsRateAndFraming) {
    termios settings{};
    const Framing framing{57600, 7, serial_frame::parityNone, serial_frame::stopBitsTwo};
    ASSERT_TRUE(setFraming(settings, framing));
    settings.c_lflag |= ICANON | ECHO;
    makeRaw(settings);
    EXPECT_EQ(framingOf(settings), framing);
    EXPECT_EQ(settings.c_lflag & (ICANON | ECHO | ISIG | IEXTEN), 0U);
    EXPECT_NE(settings.c_cflag & CLOCAL, 0U);
}

TEST(TtyErrors, SystemErrorsBecomeResults) {
    EXPECT_EQ(resultOf(0), 0U);
    EXPECT_EQ(resultOf(ENOENT), 2U);
    EXPECT_EQ(resultOf(EMFILE), 4U);
    EXPECT_EQ(resultOf(ENFILE), 4U);
    EXPECT_EQ(resultOf(EACCES), 5U);
    EXPECT_EQ(resultOf(EPERM), 5U);
    EXPECT_EQ(resultOf(EBUSY), 5U);
    EXPECT_EQ(resultOf(EBADF), 6U);
    EXPECT_EQ(resultOf(ENOMEM), 8U);
    EXPECT_EQ(resultOf(EINVAL), 87U);
    EXPECT_EQ(resultOf(ENAMETOOLONG), 206U);
    EXPECT_EQ(resultOf(EIO), 1117U);
    EXPECT_EQ(resultOf(ENXIO), 1117U);
    EXPECT_EQ(resultOf(ENODEV), 1117U);
    EXPECT_EQ(resultOf(ENOTTY), 1200U);
    EXPECT_EQ(resultOf(ETIMEDOUT), 1460U);
    EXPECT_EQ(resultOf(EXDEV), 31U);
}

}  // namespace
}  // namespace tessavo::test
