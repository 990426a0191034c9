#include "comm/serial_port_line.h"

#include <algorithm>
#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "comm/port_list.h"
#include "support/exchange_fixture.h"

// Which operations of the serial port a line is made of, with what, and in which order.

namespace tessavo::test {
namespace {

using testing::_;
using testing::ElementsAreArray;
using testing::InSequence;
using testing::Return;
using testing::StrictMock;

constexpr LineSettings settings{.baudRate = 57600,
                                .dataBits = 7,
                                .parity = serial_frame::parityEven,
                                .stopBits = serial_frame::stopBitsTwo};

/// Every operation that a serial port has: one that a test does not expect fails it.
class MockSerial : public CSerial {
 public:
    MOCK_METHOD(std::uint32_t, Open, (const std::wstring&, std::uint32_t, std::uint32_t, bool), (override));
    MOCK_METHOD(std::uint32_t, Close, (), (override));
    MOCK_METHOD(std::uint32_t, Setup, (std::uint32_t, std::uint8_t, int, std::uint8_t, int), (override));
    MOCK_METHOD(std::uint32_t, SetEventChar, (std::uint8_t, bool), (override));
    MOCK_METHOD(std::uint32_t, SetMask, (std::uint32_t), (override));
    MOCK_METHOD(std::uint32_t, WaitEvent, (SerialOverlapped*, std::uint32_t), (override));
    MOCK_METHOD(std::uint32_t, SetupHandshaking, (int), (override));
    MOCK_METHOD(std::uint32_t, SetupReadTimeouts, (int), (override));
    MOCK_METHOD(int, GetBaudrate, (), (override));
    MOCK_METHOD(int, GetDataBits, (), (override));
    MOCK_METHOD(int, GetParity, (), (override));
    MOCK_METHOD(int, GetStopBits, (), (override));
    MOCK_METHOD(int, GetHandshaking, (), (override));
    MOCK_METHOD(std::uint32_t, GetEventMask, (), (override));
    MOCK_METHOD(std::uint8_t, GetEventChar, (), (override));
    MOCK_METHOD(std::uint32_t, WriteString, (const char*, std::uint32_t*, SerialOverlapped*, std::uint32_t),
                (override));
    MOCK_METHOD(std::uint32_t, Write,
                (const void*, std::size_t, std::uint32_t*, SerialOverlapped*, std::uint32_t), (override));
    MOCK_METHOD(std::uint32_t, Read, (void*, std::size_t, std::uint32_t*, SerialOverlapped*, std::uint32_t),
                (override));
    MOCK_METHOD(void, Cancel, (), (override));
    MOCK_METHOD(std::uint32_t, Complete, (SerialOverlapped&, std::uint32_t*, std::uint32_t), (override));
};

class SerialPortLineTest : public testing::Test {
 protected:
    explicit SerialPortLineTest(const std::string& portName = "COM3")
        : owned(std::make_unique<StrictMock<MockSerial>>()),
          serial(*owned),
          line(portName, std::move(owned)) {}

    std::unique_ptr<StrictMock<MockSerial>> owned;
    StrictMock<MockSerial>& serial;
    SerialPortLine line;
};

TEST_F(SerialPortLineTest, OpensTheDevicesPathForOverlappedUseWithTheDriversOwnQueues) {
    EXPECT_CALL(serial, Open(devicePath("COM3"), 0, 0, true)).WillOnce(Return(serial_result::success));
    EXPECT_EQ(line.open(), serial_result::success);
}

TEST_F(SerialPortLineTest, WithoutAPortNameTheBarePrefixIsOpened) {
    auto made = std::make_unique<StrictMock<MockSerial>>();
    EXPECT_CALL(*made, Open(devicePath(""), 0, 0, true)).WillOnce(Return(serial_result::fileNotFound));
    SerialPortLine nameless("", std::move(made));
    EXPECT_EQ(nameless.open(), serial_result::fileNotFound);
}

TEST_F(SerialPortLineTest, SetsUpRateAndFramingLeavesDtrAloneAndMakesReadsWait) {
    const InSequence inThisOrder;
    EXPECT_CALL(serial, Open).WillOnce(Return(serial_result::success));
    EXPECT_CALL(serial, Setup(57600, 7, serial_frame::parityEven, serial_frame::stopBitsTwo, 0))
        .WillOnce(Return(serial_result::success));
    EXPECT_CALL(serial, SetupReadTimeouts(CSerial::blocking)).WillOnce(Return(serial_result::success));
    EXPECT_EQ(line.open(), serial_result::success);
    EXPECT_EQ(line.setUp(settings), serial_result::success);
}

TEST_F(SerialPortLineTest, APortThatIsOpenAlreadyIsUsedWithoutSetup) {
    const InSequence inThisOrder;
    EXPECT_CALL(serial, Open).WillOnce(Return(serial_result::alreadyInitialised));
    EXPECT_CALL(serial, SetupReadTimeouts(CSerial::blocking)).WillOnce(Return(serial_result::success));
    EXPECT_EQ(line.open(), serial_result::success);
    EXPECT_EQ(line.setUp(settings), serial_result::success);
}

TEST_F(SerialPortLineTest, TellsWhyThePortCannotBeOpenedOrSetUp) {
    for (const std::uint32_t result : {serial_result::fileNotFound, serial_result::accessDenied,
                                       serial_result::invalidParameter, serial_result::timeout}) {
        EXPECT_CALL(serial, Open).WillOnce(Return(result));
        EXPECT_EQ(line.open(), result);
        EXPECT_CALL(serial, Open).WillOnce(Return(serial_result::success));
        EXPECT_CALL(serial, Setup).WillOnce(Return(result));
        EXPECT_EQ(line.open(), serial_result::success);
        EXPECT_EQ(line.setUp(settings), result) << "and the read time-outs stay as they are";
    }
}

TEST_F(SerialPortLineTest, ReadsTellResultAndCount) {
    std::array<std::uint8_t, 8> bytes{};
    for (const std::uint32_t result : {serial_result::success, serial_result::timeout,
                                       serial_result::ioDevice, serial_result::operationAborted}) {
        EXPECT_CALL(serial, Read(bytes.data(), 8, _, nullptr, 2500))
            .WillOnce(
                [result](void* data, std::size_t, std::uint32_t* count, SerialOverlapped*, std::uint32_t) {
                    *static_cast<std::uint8_t*>(data) = 0x43;
                    *count = 3;
                    return result;
                });
        const LineRead read = line.read(bytes, Milliseconds{2500});
        EXPECT_EQ(read.result, result);
        EXPECT_EQ(read.count, 3U);
        EXPECT_EQ(bytes[0], 0x43);
    }
}

TEST_F(SerialPortLineTest, WritesCloseAndCancelPassStraightOn) {
    const std::array<std::uint8_t, 3> bytes{1, 2, 3};
    EXPECT_CALL(serial, Write(bytes.data(), 3, nullptr, nullptr, 800))
        .WillOnce(Return(serial_result::timeout));
    EXPECT_EQ(line.write(bytes, Milliseconds{800}), serial_result::timeout);
    EXPECT_CALL(serial, Close).WillOnce(Return(serial_result::success));
    line.close();
    EXPECT_CALL(serial, Cancel);
    line.cancel();
}

/// An engine that works with a serial port which must not be told anything but what the tests expect.
class ExchangeOverSerial : public ExchangeTest {
 protected:
    /// One byte arrives.
    static auto gives(std::uint8_t byte) {
        return [byte](void* data, std::size_t, std::uint32_t* count, SerialOverlapped*, std::uint32_t) {
            *static_cast<std::uint8_t*>(data) = byte;
            *count = 1;
            return serial_result::success;
        };
    }
    static constexpr auto nothing = [](void*, std::size_t, std::uint32_t* count, SerialOverlapped*,
                                       std::uint32_t) {
        *count = 0;
        return serial_result::timeout;
    };
    void expectReadOf(std::uint8_t byte) {
        EXPECT_CALL(*serial, Read(_, 1, _, nullptr, 2500)).WillOnce(gives(byte));
    }
    void expectOpening() {
        EXPECT_CALL(*serial, Open(devicePath("COM3"), 0, 0, true)).WillOnce(Return(serial_result::success));
        EXPECT_CALL(*serial, Setup(115200, 8, serial_frame::parityNone, serial_frame::stopBitsOne, 0))
            .WillOnce(Return(serial_result::success));
        EXPECT_CALL(*serial, SetupReadTimeouts(CSerial::blocking)).WillOnce(Return(serial_result::success));
        expectReadOf(0x43);
    }
    void expectFlushAndWriteOf(std::size_t frameSize) {
        EXPECT_CALL(*serial, Read(_, 1, _, nullptr, 1)).WillOnce(nothing);
        EXPECT_CALL(*serial, Write(_, frameSize, nullptr, nullptr, 800))
            .WillOnce(Return(serial_result::success));
        expectReadOf(0x06);
    }
    void expectDisconnect() {
        EXPECT_CALL(*serial, Write(_, 1, nullptr, nullptr, 800)).WillOnce(Return(serial_result::success));
        expectReadOf(0x06);
        EXPECT_CALL(*serial, Close).WillOnce(Return(serial_result::success));
    }

    std::unique_ptr<StrictMock<MockSerial>> serial = std::make_unique<StrictMock<MockSerial>>();
    TransferEngine overSerial{{[this](const std::string& name) {
                                   return std::make_unique<SerialPortLine>(name, std::move(serial));
                               },
                               clock,
                               log,
                               boxes,
                               lock,
                               [] { return std::string("COM3"); },
                               {}}};
};

TEST_F(ExchangeOverSerial, AMessageMakesTheseCallsOfTheSerialPortAndNoOthers) {
    const InSequence inThisOrder;
    expectOpening();
    expectFlushAndWriteOf(4101);
    expectDisconnect();
    EXPECT_TRUE(overSerial.SendToTarget(Bytes(3400), MessageType::blocks4k));
}

TEST_F(ExchangeOverSerial, ARequestMakesTheseCallsOfTheSerialPortAndNoOthers) {
    const Bytes frame = replyFrame(Bytes{7, 8, 9});
    const InSequence inThisOrder;
    expectOpening();
    expectFlushAndWriteOf(2053);
    EXPECT_CALL(*serial, Read(_, 4101, _, nullptr, 10000))
        .WillOnce([&](void* data, std::size_t size, std::uint32_t* count, SerialOverlapped*, std::uint32_t) {
            std::copy_n(frame.begin(), size, static_cast<std::uint8_t*>(data));
            *count = static_cast<std::uint32_t>(size);
            return serial_result::success;
        });
    expectDisconnect();
    Bytes reply(3);
    EXPECT_TRUE(overSerial.ReceiveFromTarget(reply, Bytes{8}));
    EXPECT_EQ(reply, (Bytes{7, 8, 9}));
}

}  // namespace
}  // namespace tessavo::test
