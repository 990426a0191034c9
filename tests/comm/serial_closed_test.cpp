#include <gtest/gtest.h>

#include "comm/port_list.h"
#include "comm/serial.h"
#include "comm/serial_overlapped.h"

namespace tessavo::test {
namespace {

constexpr std::uint32_t closed = 6;

TEST(SerialClosed, EveryOperationGivesInvalidHandle) {
    CSerial port;
    char byte = 'a';
    std::uint32_t count = 77;
    EXPECT_EQ(port.Setup(115200, 8, 0, 0, 0), closed);
    EXPECT_EQ(port.SetEventChar(10, false), closed);
    EXPECT_EQ(port.SetEventChar(10, true), closed);
    EXPECT_EQ(port.SetMask(serial_event::standard), closed);
    EXPECT_EQ(port.WaitEvent(nullptr, 1), closed);
    EXPECT_EQ(port.SetupHandshaking(CSerial::handshakeNone), closed);
    EXPECT_EQ(port.SetupReadTimeouts(CSerial::blocking), closed);
    EXPECT_EQ(port.Read(&byte, 1, &count, nullptr, 1), closed);
    EXPECT_EQ(count, 0U);
    count = 77;
    EXPECT_EQ(port.Write(&byte, 1, &count, nullptr, 1), closed);
    EXPECT_EQ(count, 0U);
    count = 77;
    EXPECT_EQ(port.WriteString("abc", &count), closed);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(port.lastError(), closed);
}

TEST(SerialClosed, EveryQueryTellsItsFailureValueAndStoresInvalidHandle) {
    CSerial port;
    const auto failed = [&port] {
        const std::uint32_t result = port.lastError();
        EXPECT_EQ(port.Close(), serial_result::success);
        return result;
    };
    EXPECT_EQ(port.GetBaudrate(), -1);
    EXPECT_EQ(failed(), closed);
    EXPECT_EQ(port.GetDataBits(), -1);
    EXPECT_EQ(failed(), closed);
    EXPECT_EQ(port.GetParity(), -1);
    EXPECT_EQ(failed(), closed);
    EXPECT_EQ(port.GetStopBits(), -1);
    EXPECT_EQ(failed(), closed);
    EXPECT_EQ(port.GetHandshaking(), -1);
    EXPECT_EQ(failed(), closed);
    EXPECT_EQ(port.GetEventMask(), 0U);
    EXPECT_EQ(failed(), closed);
    EXPECT_EQ(port.GetEventChar(), 0);
    EXPECT_EQ(failed(), closed);
}

TEST(SerialClosed, OperationsThatTheirCallerCompletesAreRefusedToo) {
    CSerial port;
    SerialOverlapped overlapped;
    char byte = 'a';
    std::uint32_t count = 77;
    EXPECT_EQ(port.Read(&byte, 1, &count, &overlapped), closed);
    EXPECT_EQ(port.Write(&byte, 1, &count, &overlapped), closed);
    EXPECT_EQ(port.WaitEvent(&overlapped, CSerial::infinite), closed);
    count = 77;
    EXPECT_EQ(port.Complete(overlapped, &count, 1), closed);
    EXPECT_EQ(count, 0U);
}

TEST(SerialClosed, CloseSucceeds) {
    CSerial port;
    EXPECT_EQ(port.Close(), serial_result::success);
    EXPECT_EQ(port.Close(), serial_result::success);
    EXPECT_EQ(port.lastError(), serial_result::success);
}

TEST(SerialClosed, AClosedPortComesBeforeACancelledOneAndAnUnknownMode) {
    CSerial port;
    port.Cancel();
    char byte = 0;
    EXPECT_EQ(port.Read(&byte, 1, nullptr, nullptr, 1), closed);
    EXPECT_EQ(port.SetupHandshaking(3), closed);
    EXPECT_EQ(port.SetupReadTimeouts(2), closed);
}

TEST(SerialClosed, NamesWithoutADeviceDoNotOpen) {
    CSerial port;
    EXPECT_EQ(port.Open(devicePath("no-such-port"), 0, 0, true), serial_result::fileNotFound);
    EXPECT_EQ(port.lastError(), serial_result::fileNotFound);
    EXPECT_NE(port.Open(devicePath(""), 0, 0, true), serial_result::success);
    EXPECT_NE(port.Open(L"", 0, 0, true), serial_result::success);
    EXPECT_EQ(port.GetEventMask(), 0U);
    EXPECT_EQ(port.SetMask(1), closed);
}

}  // namespace
}  // namespace tessavo::test
