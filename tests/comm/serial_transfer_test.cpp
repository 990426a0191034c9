#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <thread>

#include "comm/open_serial.h"
#include "support/elapsed.h"

namespace tessavo::test {
namespace {

using namespace std::chrono_literals;

class SerialTransfer : public OpenSerialTest {
 protected:
    // Reads up to `size` bytes into text_.
    std::uint32_t read(std::size_t size, std::uint32_t timeoutMs) {
        text_.assign(size, '\0');
        const std::uint32_t result = port_.Read(text_.data(), size, &count_, nullptr, timeoutMs);
        text_.resize(std::min<std::size_t>(size, count_));
        return result;
    }

    // More than the line holds while nobody receives.
    static constexpr std::size_t flood = 1U << 20U;

    std::string text_;
};

TEST_F(SerialTransfer, ReadOfAQuietLineTimesOutAfterOneMillisecondWithNothing) {
    const Elapsed elapsed;
    EXPECT_EQ(read(1, 1), 1460U);
    EXPECT_EQ(count_, 0U);
    EXPECT_EQ(port_.lastError(), serial_result::timeout);
    EXPECT_GE(elapsed.get(), 1ms);
    EXPECT_LT(elapsed.get(), generous);
}

TEST_F(SerialTransfer, ReadWaitsOutItsTimeOutAndNotMuchMore) {
    const Elapsed elapsed;
    EXPECT_EQ(read(1, 150), serial_result::timeout);
    EXPECT_GE(elapsed.get(), 150ms);
    EXPECT_LT(elapsed.get(), generous);
}

TEST_F(SerialTransfer, ReadWithoutTimeTakesWhatIsThere) {
    ASSERT_TRUE(line_.send("ab"));
    ASSERT_TRUE(port_.untilReceived(2));
    EXPECT_EQ(read(1, 0), serial_result::success);
    EXPECT_EQ(text_, "a");
}

TEST_F(SerialTransfer, ReadWithoutTimeOnAQuietLineTimesOutAtOnce) {
    const Elapsed elapsed;
    EXPECT_EQ(read(1, 0), serial_result::timeout);
    EXPECT_LT(elapsed.get(), generous);
}

TEST_F(SerialTransfer, BlockingReadWaitsForTheFullCount) {
    ASSERT_TRUE(line_.send("abc"));
    std::jthread sender([this] {
        EXPECT_TRUE(port_.untilWaiting());
        EXPECT_TRUE(line_.send("def"));
    });
    EXPECT_EQ(read(6, longWait), serial_result::success);
    EXPECT_EQ(text_, "abcdef");
}

TEST_F(SerialTransfer, BlockingReadWithoutTimeLimitWaitsForTheFullCount) {
    std::jthread sender([this] {
        EXPECT_TRUE(port_.untilWaiting());
        EXPECT_TRUE(line_.send("xyz"));
    });
    EXPECT_EQ(read(3, CSerial::infinite), serial_result::success);
    EXPECT_EQ(text_, "xyz");
}

TEST_F(SerialTransfer, TimedOutReadKeepsTheBytesThatCame) {
    ASSERT_TRUE(line_.send("abc"));
    const Elapsed elapsed;
    EXPECT_EQ(read(10, 100), serial_result::timeout);
    EXPECT_EQ(text_, "abc");
    EXPECT_GE(elapsed.get(), 100ms);
}

TEST_F(SerialTransfer, ReadTakesNoMoreThanItsCount) {
    ASSERT_TRUE(line_.send("abcdef"));
    EXPECT_EQ(read(2, longWait), serial_result::success);
    EXPECT_EQ(text_, "ab");
    EXPECT_EQ(read(4, longWait), serial_result::success);
    EXPECT_EQ(text_, "cdef");
}

TEST_F(SerialTransfer, NonBlockingReadReturnsAtOnceWithNothing) {
    ASSERT_EQ(port_.SetupReadTimeouts(CSerial::nonBlocking), serial_result::success);
    EXPECT_EQ(read(5, CSerial::infinite), serial_result::success);
    EXPECT_EQ(count_, 0U);
}

TEST_F(SerialTransfer, NonBlockingReadTakesWhatIsThere) {
    ASSERT_EQ(port_.SetupReadTimeouts(CSerial::nonBlocking), serial_result::success);
    ASSERT_TRUE(line_.send("ab"));
    ASSERT_TRUE(port_.untilReceived(2));
    EXPECT_EQ(read(5, CSerial::infinite), serial_result::success);
    EXPECT_EQ(text_, "ab");
}

TEST_F(SerialTransfer, ReadOfNothingSucceedsAtOnce) {
    EXPECT_EQ(read(0, CSerial::infinite), serial_result::success);
    EXPECT_EQ(count_, 0U);
    EXPECT_EQ(port_.Write(nullptr, 0, &count_, nullptr, CSerial::infinite), serial_result::success);
    EXPECT_EQ(count_, 0U);
}

TEST_F(SerialTransfer, MissingBufferOrImpossibleSizeIsRefused) {
    char byte = 0;
    EXPECT_EQ(port_.Read(nullptr, 1, &count_, nullptr, 10), serial_result::invalidArgument);
    EXPECT_EQ(count_, 0U);
    EXPECT_EQ(port_.Write(nullptr, 1, nullptr, nullptr, 10), serial_result::invalidArgument);
    EXPECT_EQ(port_.Read(&byte, SIZE_MAX, nullptr, nullptr, 10), serial_result::invalidArgument);
    EXPECT_EQ(port_.Write(&byte, SIZE_MAX, nullptr, nullptr, 10), serial_result::invalidArgument);
}

TEST_F(SerialTransfer, EveryByteValuePassesUnchangedBothWays) {
    std::string all;
    for (int value = 0; value < 256; ++value) {
        all.push_back(static_cast<char>(value));
    }
    ASSERT_TRUE(line_.send(all));
    EXPECT_EQ(read(all.size(), longWait), serial_result::success);
    EXPECT_EQ(text_, all);
    EXPECT_EQ(port_.Write(all.data(), all.size(), &count_, nullptr, longWait), serial_result::success);
    EXPECT_EQ(count_, 256U);
    EXPECT_EQ(line_.receive(all.size()), all);
}

TEST_F(SerialTransfer, WriteStringSendsUpToTheZero) {
    EXPECT_EQ(port_.WriteString("hello", &count_, nullptr, longWait), serial_result::success);
    EXPECT_EQ(count_, 5U);
    EXPECT_EQ(line_.receive(5), "hello");
    EXPECT_EQ(port_.WriteString("", &count_), serial_result::success);
    EXPECT_EQ(count_, 0U);
}

TEST_F(SerialTransfer, CountsAreOptional) {
    ASSERT_TRUE(line_.send("a"));
    char byte = 0;
    EXPECT_EQ(port_.Read(&byte, 1), serial_result::success);
    EXPECT_EQ(byte, 'a');
    EXPECT_EQ(port_.Write("b", 1), serial_result::success);
    EXPECT_EQ(line_.receive(1), "b");
}

TEST_F(SerialTransfer, WriteToAFullLineTimesOutAndTellsHowMuchLeft) {
    const std::string bytes(flood, 'x');
    const Elapsed elapsed;
    EXPECT_EQ(port_.Write(bytes.data(), bytes.size(), &count_, nullptr, 120), serial_result::timeout);
    EXPECT_GE(elapsed.get(), 120ms);
    EXPECT_LT(elapsed.get(), generous);
    EXPECT_GT(count_, 0U);
    EXPECT_LT(count_, flood);
    EXPECT_EQ(line_.receive(count_).size(), count_);
    EXPECT_EQ(line_.receive(1, 20ms), "");
}

TEST_F(SerialTransfer, WriteGoesOnWhenTheLineTakesBytesAgain) {
    std::string bytes(flood, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(i * 31 % 251);
    }
    std::string received;
    std::jthread receiver([&] { received = line_.receive(bytes.size()); });
    EXPECT_EQ(port_.Write(bytes.data(), bytes.size(), &count_, nullptr, longWait), serial_result::success);
    EXPECT_EQ(count_, flood);
    receiver.join();
    EXPECT_TRUE(received == bytes);
}

TEST_F(SerialTransfer, CloseAfterAWriteThatStuckDoesNotWait) {
    const std::string bytes(flood, 'x');
    ASSERT_EQ(port_.Write(bytes.data(), bytes.size(), nullptr, nullptr, 10), serial_result::timeout);
    const Elapsed elapsed;
    EXPECT_EQ(port_.Close(), serial_result::success);
    EXPECT_LT(elapsed.get(), generous);
}

TEST_F(SerialTransfer, CancelFromAnotherThreadEndsARead) {
    ASSERT_TRUE(line_.send("ab"));
    std::jthread canceller([this] {
        EXPECT_TRUE(port_.untilWaiting());
        port_.Cancel();
    });
    const Elapsed elapsed;
    EXPECT_EQ(read(5, CSerial::infinite), serial_result::operationAborted);
    EXPECT_EQ(text_, "ab");
    EXPECT_LT(elapsed.get(), generous);
}

TEST_F(SerialTransfer, CancelFromAnotherThreadEndsAWrite) {
    const std::string bytes(flood, 'x');
    std::jthread canceller([this] {
        EXPECT_TRUE(port_.untilWaiting());
        port_.Cancel();
    });
    EXPECT_EQ(port_.Write(bytes.data(), bytes.size(), &count_), serial_result::operationAborted);
    EXPECT_LT(count_, flood);
}

TEST_F(SerialTransfer, CancelHolds) {
    ASSERT_TRUE(line_.send("ab"));
    ASSERT_TRUE(port_.untilReceived(2));
    port_.Cancel();
    port_.Cancel();
    EXPECT_EQ(read(1, 50), serial_result::operationAborted);
    EXPECT_EQ(count_, 0U);
    EXPECT_EQ(port_.Write("x", 1, &count_, nullptr, 50), serial_result::operationAborted);
    EXPECT_EQ(count_, 0U);
    EXPECT_EQ(port_.WaitEvent(nullptr, 50), serial_result::operationAborted);
    EXPECT_EQ(line_.receive(1, 20ms), "");
}

TEST_F(SerialTransfer, CancelOutlivesCloseAndOpen) {
    port_.Cancel();
    port_.Close();
    ASSERT_EQ(port_.Open(line_.path(), 0, 0, true), serial_result::success);
    EXPECT_EQ(read(1, longWait), serial_result::operationAborted);
}

TEST_F(SerialTransfer, CablePulledDuringAReadIsAnError) {
    std::jthread puller([this] {
        EXPECT_TRUE(port_.untilWaiting());
        line_.hangUp();
    });
    const Elapsed elapsed;
    EXPECT_PRED1(tellsOfAVanishedDevice, read(5, CSerial::infinite));
    EXPECT_LT(elapsed.get(), generous);
}

TEST_F(SerialTransfer, CablePulledDuringAWriteIsAnErrorAndNoSignal) {
    const std::string bytes(flood, 'x');
    std::jthread puller([this] {
        EXPECT_TRUE(port_.untilWaiting());
        line_.hangUp();
    });
    const Elapsed elapsed;
    EXPECT_PRED1(tellsOfAVanishedDevice, port_.Write(bytes.data(), bytes.size(), &count_));
    EXPECT_LT(elapsed.get(), generous);
    EXPECT_LT(count_, flood);
}

TEST_F(SerialTransfer, EveryOperationOnAPulledCableFailsAtOnce) {
    line_.hangUp();
    const Elapsed elapsed;
    for (int round = 0; round < 3; ++round) {
        EXPECT_PRED1(tellsOfAVanishedDevice, read(1, longWait));
        EXPECT_PRED1(tellsOfAVanishedDevice, port_.Write("x", 1, nullptr, nullptr, longWait));
        EXPECT_NE(port_.Setup(115200, 8, 0, 0, 0), serial_result::success);
        EXPECT_NE(port_.SetupHandshaking(CSerial::handshakeNone), serial_result::success);
        EXPECT_EQ(port_.GetBaudrate(), -1);
        EXPECT_NE(port_.lastError(), serial_result::success);
        EXPECT_EQ(port_.GetDataBits(), -1);
        EXPECT_EQ(port_.GetParity(), -1);
        EXPECT_EQ(port_.GetStopBits(), -1);
        EXPECT_EQ(port_.GetHandshaking(), -1);
    }
    ASSERT_EQ(port_.SetupReadTimeouts(CSerial::nonBlocking), serial_result::success);
    EXPECT_PRED1(tellsOfAVanishedDevice, read(1, longWait));
    EXPECT_LT(elapsed.get(), generous);
    EXPECT_EQ(port_.Close(), serial_result::success);
}

}  // namespace
}  // namespace tessavo::test
