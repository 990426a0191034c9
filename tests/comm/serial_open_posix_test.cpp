#include <climits>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "comm/open_serial.h"
#include "comm/port_list.h"
#include "support/pty_pair.h"

namespace tessavo::test {
namespace {

TEST(SerialOpen, TheLineIsRawWhateverItWas) {
    const PtyPair line;
    termios cooked = line.settings();
    cooked.c_iflag |= ICRNL | IXON | ISTRIP;
    cooked.c_oflag |= OPOST | ONLCR;
    cooked.c_lflag |= ICANON | ECHO | ISIG;
    cooked.c_cflag |= CRTSCTS;
    line.setSettings(cooked);
    CSerial port;
    ASSERT_EQ(port.Open(line.path(), 0, 0, true), serial_result::success);
    port.SetupReadTimeouts(CSerial::blocking);
    EXPECT_EQ(port.GetHandshaking(), CSerial::handshakeNone);
    ASSERT_TRUE(line.send("\r\x03\x13\xFF\n"));
    EXPECT_EQ(readText(port, 5), "\r\x03\x13\xFF\n");
    ASSERT_EQ(port.WriteString("\n"), serial_result::success);
    EXPECT_EQ(line.receive(2, std::chrono::milliseconds(20)), "\n");
}

TEST(SerialOpen, PortLockedByAnotherProgramIsRefused) {
    const PtyPair line;
    const int other = ::open(line.file().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(other, 0);
    ASSERT_EQ(::flock(other, LOCK_EX | LOCK_NB), 0);
    CSerial port;
    EXPECT_EQ(port.Open(line.path(), 0, 0, true), serial_result::accessDenied);
    ::close(other);
    EXPECT_EQ(port.Open(line.path(), 0, 0, true), serial_result::success);
}

TEST(SerialOpen, ExclusiveModeAndLockEndWithTheClose) {
    const PtyPair line;
    const int other = ::open(line.file().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(other, 0);
    const auto exclusive = [other] {
        int mode = -1;
        EXPECT_EQ(::ioctl(other, TIOCGEXCL, &mode), 0);
        return mode;
    };
    CSerial port;
    ASSERT_EQ(port.Open(line.path(), 0, 0, true), serial_result::success);
    EXPECT_EQ(exclusive(), 1);
    EXPECT_NE(::flock(other, LOCK_EX | LOCK_NB), 0);
    port.Close();
    EXPECT_EQ(exclusive(), 0);
    EXPECT_EQ(::flock(other, LOCK_EX | LOCK_NB), 0);
    ::close(other);
}

TEST(SerialOpen, WhatIsNoTerminalIsRefused) {
    CSerial port;
    EXPECT_EQ(port.Open(L"/dev/null", 0, 0, true), serial_result::badDevice);
    EXPECT_EQ(port.Open(devicePath(""), 0, 0, true), serial_result::badDevice);
    EXPECT_EQ(port.Open(L"/tmp", 0, 0, true), serial_result::badDevice);
    EXPECT_EQ(port.Open(L"/proc/self/exe/x", 0, 0, true), serial_result::fileNotFound);
    EXPECT_EQ(port.GetBaudrate(), -1);
}

TEST(SerialOpen, ImpossibleNamesAreRefused) {
    CSerial port;
    EXPECT_EQ(port.Open(std::wstring(10000, L'x'), 0, 0, true), serial_result::nameTooLong);
    EXPECT_EQ(port.Open(std::wstring(L"/dev/ptmx\0x", 11), 0, 0, true), serial_result::fileNotFound);
    EXPECT_EQ(port.Open(std::wstring(1, static_cast<wchar_t>(0xD800)), 0, 0, true),
              serial_result::fileNotFound);
    EXPECT_EQ(port.Open(L"/dev/t\u00FCr", 0, 0, true), serial_result::fileNotFound);
}

TEST(SerialOpen, NoFreeDescriptorIsAnErrorOfItsOwn) {
    const PtyPair line;
    CSerial port;
    CSerial withoutCancel;
    // The sanitizer looks at an object's type the first time that it is used, and needs a descriptor for that.
    ASSERT_EQ(port.GetBaudrate(), -1);
    ASSERT_EQ(withoutCancel.Open(L"", 0, 0, true), serial_result::fileNotFound);
    rlimit former{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &former), 0);
    const rlimit none{0, former.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    const std::uint32_t opened = port.Open(line.path(), 0, 0, true);
    const std::uint32_t openedWithout = withoutCancel.Open(line.path(), 0, 0, true);
    withoutCancel.Cancel();
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &former), 0);
    EXPECT_EQ(opened, serial_result::tooManyOpenFiles);
    EXPECT_EQ(openedWithout, serial_result::tooManyOpenFiles);
    EXPECT_EQ(port.Open(line.path(), 0, 0, true), serial_result::success);
}

TEST(SerialOpen, FailedOpenAfterAGoodOneStoresItsOwnResult) {
    const PtyPair line;
    CSerial port;
    ASSERT_EQ(port.Open(line.path(), 0, 0, true), serial_result::success);
    port.Close();
    EXPECT_EQ(port.Open(L"/dev/null", 0, 0, true), serial_result::badDevice);
    EXPECT_EQ(port.lastError(), serial_result::badDevice);
    EXPECT_EQ(port.SetMask(1), serial_result::invalidHandle);
}

}  // namespace
}  // namespace tessavo::test
