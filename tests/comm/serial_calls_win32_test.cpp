#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "comm/fake_system_win32.h"

namespace tessavo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

// Of DTR and of RTS alike: disabled, enabled, left to the handshake.
constexpr std::array<DWORD, 3> everyControl{0, 1, 2};
static_assert(DTR_CONTROL_DISABLE == 0 && DTR_CONTROL_ENABLE == 1 && DTR_CONTROL_HANDSHAKE == 2);
static_assert(RTS_CONTROL_DISABLE == 0 && RTS_CONTROL_ENABLE == 1 && RTS_CONTROL_HANDSHAKE == 2);

class SerialCalls : public testing::Test {
 protected:
    void open() {
        ASSERT_EQ(port_.Open(L"fake", 0, 0, true), serial_result::success);
        system_.written.clear();
    }

    FakeSystem system_;
    FakePort port_{system_};
};

TEST_F(SerialCalls, DtrModeOneEnablesDtrAndDisablesRts) {
    open();
    for (const DWORD dtr : everyControl) {
        for (const DWORD rts : everyControl) {
            system_.control.fDtrControl = dtr & 3U;
            system_.control.fRtsControl = rts & 3U;
            ASSERT_EQ(port_.Setup(115200, 8, 0, 0, 1), serial_result::success);
            EXPECT_EQ(system_.written.back().fDtrControl, DWORD{DTR_CONTROL_ENABLE}) << dtr << ' ' << rts;
            EXPECT_EQ(system_.written.back().fRtsControl, DWORD{RTS_CONTROL_DISABLE}) << dtr << ' ' << rts;
        }
    }
}

TEST_F(SerialCalls, OtherDtrModesLeaveBothLines) {
    open();
    for (const int mode : {0, 2, -1}) {
        for (const DWORD dtr : everyControl) {
            for (const DWORD rts : everyControl) {
                system_.control.fDtrControl = dtr & 3U;
                system_.control.fRtsControl = rts & 3U;
                ASSERT_EQ(port_.Setup(115200, 8, 0, 0, mode), serial_result::success);
                EXPECT_EQ(system_.written.back().fDtrControl, dtr) << mode;
                EXPECT_EQ(system_.written.back().fRtsControl, rts) << mode;
            }
        }
    }
}

TEST_F(SerialCalls, ParityIsCheckedExactlyWhenThereIsOne) {
    open();
    for (int parity = serial_frame::parityNone; parity <= serial_frame::paritySpace; ++parity) {
        ASSERT_EQ(port_.Setup(9600, 7, parity, serial_frame::stopBitsTwo, 0), serial_result::success);
        const DCB& control = system_.written.back();
        EXPECT_EQ(control.BaudRate, 9600U);
        EXPECT_EQ(control.ByteSize, 7);
        EXPECT_EQ(control.Parity, parity);
        EXPECT_EQ(control.StopBits, serial_frame::stopBitsTwo);
        EXPECT_EQ(control.fParity, parity == serial_frame::parityNone ? 0U : 1U);
        EXPECT_EQ(port_.GetParity(), parity);
    }
}

TEST_F(SerialCalls, EveryHandshakeSetsEveryLineAndCharacter) {
    open();
    for (const int mode : {CSerial::handshakeHardware, CSerial::handshakeSoftware, CSerial::handshakeNone,
                           CSerial::handshakeSoftware, CSerial::handshakeHardware, CSerial::handshakeNone}) {
        const bool hardware = mode == CSerial::handshakeHardware;
        const bool software = mode == CSerial::handshakeSoftware;
        ASSERT_EQ(port_.SetupHandshaking(mode), serial_result::success);
        const DCB& control = system_.written.back();
        EXPECT_EQ(control.fOutxCtsFlow, hardware ? 1U : 0U) << mode;
        EXPECT_EQ(control.fOutxDsrFlow, hardware ? 1U : 0U) << mode;
        EXPECT_EQ(control.fDtrControl, hardware ? everyControl[2] : everyControl[0]) << mode;
        EXPECT_EQ(control.fRtsControl, hardware ? everyControl[2] : everyControl[0]) << mode;
        EXPECT_EQ(control.fOutX, software ? 1U : 0U) << mode;
        EXPECT_EQ(control.fInX, software ? 1U : 0U) << mode;
        EXPECT_EQ(port_.GetHandshaking(), mode);
    }
}

TEST_F(SerialCalls, QueueSizesAreHandedToTheSystemUnlessBothAreZero) {
    open();
    EXPECT_THAT(system_.queues, IsEmpty());
    port_.Close();
    for (const auto& [in, out] : {std::pair{4096U, 2048U}, {1U, 0U}, {0U, 1U}}) {
        system_.queues.clear();
        ASSERT_EQ(port_.Open(L"fake", in, out, true), serial_result::success);
        EXPECT_THAT(system_.queues, ElementsAre(Pair(in, out)));
        port_.Close();
    }
}

TEST_F(SerialCalls, RefusedQueueSizesCloseThePort) {
    system_.queueResult = ERROR_INVALID_PARAMETER;
    EXPECT_EQ(port_.Open(L"fake", 1, 1, true), serial_result::invalidParameter);
    EXPECT_EQ(port_.lastError(), serial_result::invalidParameter);
    EXPECT_EQ(port_.GetEventMask(), 0U);
    EXPECT_EQ(port_.SetMask(1), serial_result::invalidHandle);
}

TEST_F(SerialCalls, FreshPortHasTheStandardMaskAndReadsWithoutBlocking) {
    open();
    EXPECT_THAT(system_.masks, ElementsAre(0xC1U));
    EXPECT_EQ(system_.timeouts.ReadIntervalTimeout, MAXDWORD);
    ASSERT_EQ(port_.SetupReadTimeouts(CSerial::blocking), serial_result::success);
    EXPECT_EQ(system_.timeouts.ReadIntervalTimeout, 0U);
    ASSERT_EQ(port_.SetupReadTimeouts(CSerial::nonBlocking), serial_result::success);
    EXPECT_EQ(system_.timeouts.ReadIntervalTimeout, MAXDWORD);
    EXPECT_EQ(system_.timeouts.ReadTotalTimeoutMultiplier, 0U);
    EXPECT_EQ(system_.timeouts.ReadTotalTimeoutConstant, 0U);
    EXPECT_EQ(system_.timeouts.WriteTotalTimeoutMultiplier, 4U);
    EXPECT_EQ(system_.timeouts.WriteTotalTimeoutConstant, 5U);
}

}  // namespace
}  // namespace tessavo::test
