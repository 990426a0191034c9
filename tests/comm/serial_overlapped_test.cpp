#include "comm/serial_overlapped.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>

#include "comm/open_serial.h"
#include "support/elapsed.h"

namespace tessavo::test {
namespace {

using namespace std::chrono_literals;

class Overlapped : public OpenSerialTest {
 protected:
    std::string text_ = std::string(6, '\0');
};

TEST_F(Overlapped, ReadReturnsAtOnceAndIsCompletedLater) {
    const Elapsed elapsed;
    ASSERT_EQ(port_.Read(text_.data(), 6, nullptr, &overlapped_), serial_result::success);
    EXPECT_LT(elapsed.get(), generous);
    ASSERT_TRUE(line_.send("abcdef"));
    EXPECT_EQ(port_.Complete(overlapped_, &count_, longWait), serial_result::success);
    EXPECT_EQ(count_, 6U);
    EXPECT_EQ(text_, "abcdef");
}

TEST_F(Overlapped, CompletionTellsWhatWasMovedInAll) {
    ASSERT_TRUE(line_.send("abc"));
    ASSERT_TRUE(port_.untilReceived(3));
    ASSERT_EQ(port_.Read(text_.data(), 6, &count_, &overlapped_), serial_result::success);
    EXPECT_LE(count_, 3U);
    ASSERT_TRUE(line_.send("def"));
    EXPECT_EQ(port_.Complete(overlapped_, &count_, longWait), serial_result::success);
    EXPECT_EQ(count_, 6U);
    EXPECT_EQ(text_, "abcdef");
}

TEST_F(Overlapped, WriteOfMoreThanTheLineHoldsIsCompletedLater) {
    const std::string bytes(1U << 19U, 'x');
    ASSERT_EQ(port_.Write(bytes.data(), bytes.size(), &count_, &overlapped_), serial_result::success);
    EXPECT_LT(count_, bytes.size());
    std::string received;
    std::jthread receiver([&] { received = line_.receive(bytes.size()); });
    EXPECT_EQ(port_.Complete(overlapped_, &count_, longWait), serial_result::success);
    EXPECT_EQ(count_, bytes.size());
    receiver.join();
    EXPECT_TRUE(received == bytes);
}

TEST_F(Overlapped, NonBlockingReadIsOverWithWhatWasThere) {
    ASSERT_EQ(port_.SetupReadTimeouts(CSerial::nonBlocking), serial_result::success);
    ASSERT_EQ(port_.Read(text_.data(), 6, nullptr, &overlapped_), serial_result::success);
    ASSERT_TRUE(line_.send("a"));
    EXPECT_EQ(port_.Complete(overlapped_, &count_, longWait), serial_result::success);
    EXPECT_EQ(count_, 0U);
}

TEST_F(Overlapped, TimedOutCompletionEndsTheOperation) {
    ASSERT_TRUE(line_.send("ab"));
    ASSERT_EQ(port_.Read(text_.data(), 6, nullptr, &overlapped_), serial_result::success);
    const Elapsed elapsed;
    EXPECT_EQ(port_.Complete(overlapped_, &count_, 80), serial_result::timeout);
    EXPECT_GE(elapsed.get(), 80ms);
    EXPECT_LT(elapsed.get(), generous);
    EXPECT_EQ(count_, 2U);
    EXPECT_EQ(port_.Complete(overlapped_, &count_, 1), serial_result::invalidArgument);
    EXPECT_EQ(count_, 0U);
}

TEST_F(Overlapped, CancelEndsACompletion) {
    ASSERT_EQ(port_.Read(text_.data(), 6, nullptr, &overlapped_), serial_result::success);
    std::jthread canceller([this] {
        EXPECT_TRUE(port_.untilWaiting());
        port_.Cancel();
    });
    EXPECT_EQ(port_.Complete(overlapped_), serial_result::operationAborted);
    canceller.join();
    EXPECT_EQ(port_.Read(text_.data(), 6, nullptr, &overlapped_), serial_result::operationAborted);
}

TEST_F(Overlapped, CancelBeforeTheCompletionEndsIt) {
    ASSERT_EQ(port_.Read(text_.data(), 6, nullptr, &overlapped_), serial_result::success);
    port_.Cancel();
    EXPECT_EQ(port_.Complete(overlapped_, &count_, longWait), serial_result::operationAborted);
}

TEST_F(Overlapped, CablePulledBeforeTheCompletionIsAnError) {
    ASSERT_EQ(port_.Read(text_.data(), 6, nullptr, &overlapped_), serial_result::success);
    line_.hangUp();
    EXPECT_PRED1(tellsOfAVanishedDevice, port_.Complete(overlapped_, &count_, longWait));
    // Some systems find it out at once, others later.
    std::uint32_t later = port_.Read(text_.data(), 6, nullptr, &overlapped_);
    if (later == serial_result::success) {
        later = port_.Complete(overlapped_, &count_, longWait);
    }
    EXPECT_PRED1(tellsOfAVanishedDevice, later);
    EXPECT_EQ(port_.Complete(overlapped_, &count_, longWait), serial_result::invalidArgument);
}

TEST_F(Overlapped, StructureInUseIsRefused) {
    ASSERT_EQ(port_.Read(text_.data(), 6, nullptr, &overlapped_), serial_result::success);
    EXPECT_EQ(port_.Write("x", 1, &count_, &overlapped_), serial_result::busy);
    EXPECT_EQ(count_, 0U);
    EXPECT_EQ(line_.receive(1, 20ms), "");
    ASSERT_TRUE(line_.send("abcdef"));
    EXPECT_EQ(port_.Complete(overlapped_, &count_, longWait), serial_result::success);
    EXPECT_EQ(port_.Write("x", 1, nullptr, &overlapped_), serial_result::success);
    EXPECT_EQ(port_.Complete(overlapped_, &count_, longWait), serial_result::success);
    EXPECT_EQ(line_.receive(1), "x");
}

TEST_F(Overlapped, StructureWithoutAnOperationOfThisOpeningIsRefused) {
    EXPECT_EQ(port_.Complete(overlapped_, &count_, longWait), serial_result::invalidArgument);
    ASSERT_EQ(port_.Read(text_.data(), 6, nullptr, &overlapped_), serial_result::success);
    const SerialLine otherLine;
    CSerial other;
    ASSERT_EQ(other.Open(otherLine.path(), 0, 0, true), serial_result::success);
    EXPECT_EQ(other.Complete(overlapped_, &count_, longWait), serial_result::invalidArgument);
    port_.Close();
    EXPECT_EQ(port_.Complete(overlapped_, &count_, longWait), serial_result::invalidHandle);
    ASSERT_EQ(port_.Open(line_.path(), 0, 0, true), serial_result::success);
    EXPECT_EQ(port_.Complete(overlapped_, &count_, longWait), serial_result::invalidArgument);
}

TEST_F(Overlapped, AbandonedOperationTakesNoBytes) {
    {
        SerialOverlapped abandoned;
        ASSERT_EQ(port_.Read(text_.data(), 6, nullptr, &abandoned), serial_result::success);
    }
    ASSERT_TRUE(line_.send("abc"));
    std::string read(3, '\0');
    EXPECT_EQ(port_.Read(read.data(), 3, &count_, nullptr, longWait), serial_result::success);
    EXPECT_EQ(read, "abc");
}

TEST_F(Overlapped, PortWithoutOverlappedTransfersRefusesThem) {
    port_.Close();
    ASSERT_EQ(port_.Open(line_.path(), 0, 0, false), serial_result::success);
    EXPECT_EQ(port_.Read(text_.data(), 6, &count_, &overlapped_), 1U);
    EXPECT_EQ(port_.Write("x", 1, &count_, &overlapped_), 1U);
    EXPECT_EQ(port_.WaitEvent(&overlapped_, CSerial::infinite), 1U);
    EXPECT_EQ(count_, 0U);
    EXPECT_EQ(line_.receive(1, 20ms), "");
}

}  // namespace
}  // namespace tessavo::test
