#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "comm/fake_system_win32.h"

namespace tessavo::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::Le;

constexpr std::uint32_t patience = win32::cancelPatienceMs;

class SerialPending : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_EQ(win32::leftBehind(), 0U);
        open();
    }
    void TearDown() override { EXPECT_EQ(win32::leftBehind(), 0U); }

    void open() {
        port_.emplace(system_);
        ASSERT_EQ(port_->Open(L"fake", 0, 0, true), serial_result::success);
        ASSERT_EQ(port_->SetupReadTimeouts(CSerial::blocking), serial_result::success);
    }
    std::uint32_t read(std::uint32_t timeoutMs, SerialOverlapped* overlapped = nullptr) {
        return port_->Read(text_.data(), text_.size(), &count_, overlapped, timeoutMs);
    }

    FakeSystem system_;
    std::optional<FakePort> port_;
    std::string text_ = "......";
    std::uint32_t count_ = 77;
};

TEST_F(SerialPending, ReadThatTheSystemCutsShortIsAnErrorOfTheDevice) {
    system_.start = FakeSystem::Start::succeed;
    system_.atOnce = "abc";
    EXPECT_EQ(read(1000), serial_result::ioDevice);
    EXPECT_EQ(count_, 3U);
    EXPECT_EQ(text_, "abc...");
    EXPECT_EQ(port_->lastError(), serial_result::ioDevice);

    system_.start = FakeSystem::Start::pend;
    system_.aborts = true;
    system_.abortResult = ERROR_SUCCESS;
    system_.abortBytes = "uvwxy";
    EXPECT_EQ(read(1000), serial_result::ioDevice);
    EXPECT_EQ(count_, 5U);
    EXPECT_EQ(text_, "uvwxy.");
}

TEST_F(SerialPending, NothingAtAllFromAVanishedDeviceIsAnError) {
    system_.start = FakeSystem::Start::succeed;
    EXPECT_EQ(read(1000), serial_result::ioDevice);
    EXPECT_EQ(count_, 0U);
    port_->Close();
    ASSERT_EQ(port_->Open(L"fake", 0, 0, false), serial_result::success);
    ASSERT_EQ(port_->SetupReadTimeouts(CSerial::blocking), serial_result::success);
    EXPECT_EQ(read(CSerial::infinite), serial_result::ioDevice);
    EXPECT_EQ(count_, 0U);
}

TEST_F(SerialPending, CompletionOfAReadCutShortIsAnErrorOfTheDevice) {
    SerialOverlapped overlapped;
    ASSERT_EQ(read(CSerial::infinite, &overlapped), serial_result::success);
    system_.end("abc");
    EXPECT_EQ(port_->Complete(overlapped, &count_, 1000), serial_result::ioDevice);
    EXPECT_EQ(count_, 3U);
    EXPECT_EQ(text_, "abc...");
}

TEST_F(SerialPending, NonBlockingReadMayBeShort) {
    ASSERT_EQ(port_->SetupReadTimeouts(CSerial::nonBlocking), serial_result::success);
    system_.start = FakeSystem::Start::succeed;
    system_.atOnce = "abc";
    EXPECT_EQ(read(1000), serial_result::success);
    EXPECT_EQ(count_, 3U);
}

TEST_F(SerialPending, TransferThatNobodyCancelledIsNoCancelledOne) {
    system_.aborts = true;
    EXPECT_EQ(read(1000), serial_result::ioDevice);
    system_.waits.clear();
    EXPECT_EQ(port_->Write("abc", 3, &count_, nullptr, 1000), serial_result::ioDevice);
    system_.start = FakeSystem::Start::fail;
    system_.failure = ERROR_OPERATION_ABORTED;
    EXPECT_EQ(read(1000), serial_result::ioDevice);
    system_.failure = ERROR_DEVICE_NOT_CONNECTED;
    EXPECT_EQ(read(1000), std::uint32_t{ERROR_DEVICE_NOT_CONNECTED});
    EXPECT_EQ(system_.cancels, 0);
}

TEST_F(SerialPending, BytesOfACancelledReadAreKept) {
    system_.beforeCancel = "ab";
    EXPECT_EQ(read(30), serial_result::timeout);
    EXPECT_EQ(count_, 2U);
    EXPECT_EQ(text_, "ab....");
    EXPECT_THAT(system_.waits, ElementsAre(30U, patience));
    EXPECT_EQ(system_.cancels, 1);
}

TEST_F(SerialPending, TransferThatEndsInTheLastMomentSucceeds) {
    system_.beforeCancel = "abcdef";
    system_.cancelResult = ERROR_SUCCESS;
    EXPECT_EQ(read(30), serial_result::success);
    EXPECT_EQ(count_, 6U);
    EXPECT_EQ(text_, "abcdef");
}

TEST_F(SerialPending, NoWaitForACancelledOperationIsEndless) {
    system_.cancelWorks = false;
    EXPECT_EQ(read(30), serial_result::timeout);
    EXPECT_EQ(count_, 0U);
    EXPECT_THAT(system_.waits, ElementsAre(30U, patience));
    system_.end("");

    open();
    system_.waits.clear();
    EXPECT_EQ(port_->Write("abcdef", 6, &count_, nullptr, 40), serial_result::timeout);
    EXPECT_EQ(count_, 0U);
    EXPECT_THAT(system_.waits, ElementsAre(40U, patience));
    system_.endWrite(6);

    open();
    system_.waits.clear();
    EXPECT_EQ(port_->WaitEvent(nullptr, 50), serial_result::timeout);
    EXPECT_THAT(system_.waits, ElementsAre(50U, patience));
    EXPECT_EQ(port_->eventType(), 0U);
    system_.end("");
}

// The driver ends the read long after the caller got its answer, freed its buffer and closed the port.
TEST_F(SerialPending, LateCompletionFindsItsBufferAndStructure) {
    system_.cancelWorks = false;
    EXPECT_EQ(read(30), serial_result::timeout);
    EXPECT_EQ(win32::leftBehind(), 1U);
    port_->Close();
    port_.reset();
    EXPECT_EQ(win32::leftBehind(), 1U);
    system_.end("abcdef");
    EXPECT_EQ(text_, "......");
    EXPECT_EQ(count_, 0U);
    EXPECT_EQ(win32::leftBehind(), 0U);
}

TEST_F(SerialPending, LateCompletionOfAnOperationOfTheCallersFindsThemToo) {
    system_.cancelWorks = false;
    {
        SerialOverlapped overlapped;
        ASSERT_EQ(read(CSerial::infinite, &overlapped), serial_result::success);
        EXPECT_EQ(port_->Complete(overlapped, &count_, 30), serial_result::timeout);
        EXPECT_EQ(count_, 0U);
        EXPECT_THAT(system_.waits, ElementsAre(30U, patience));
    }
    EXPECT_EQ(win32::leftBehind(), 1U);
    system_.end("abcdef");
    EXPECT_EQ(text_, "......");
    EXPECT_EQ(win32::leftBehind(), 0U);
}

TEST_F(SerialPending, LateCompletionOutlivesTheCallersStructure) {
    system_.cancelWorks = false;
    for (const bool closedBefore : {false, true}) {
        open();
        system_.waits.clear();
        {
            SerialOverlapped overlapped;
            ASSERT_EQ(read(CSerial::infinite, &overlapped), serial_result::success);
            if (closedBefore) {
                port_->Close();
            }
        }
        EXPECT_THAT(system_.waits, ElementsAre(patience));
        EXPECT_EQ(win32::leftBehind(), 1U);
        system_.end("abcdef");
        EXPECT_EQ(text_, "......");
        EXPECT_EQ(win32::leftBehind(), 0U);
    }
}

TEST_F(SerialPending, CancelledCompletionIsNotWaitedForEither) {
    system_.cancelWorks = false;
    SerialOverlapped overlapped;
    ASSERT_EQ(read(CSerial::infinite, &overlapped), serial_result::success);
    port_->Cancel();
    EXPECT_EQ(port_->Complete(overlapped, &count_, CSerial::infinite), serial_result::operationAborted);
    EXPECT_THAT(system_.waits, Each(Le(patience)));
    EXPECT_EQ(win32::leftBehind(), 1U);
    system_.end("abcdef");
    EXPECT_EQ(text_, "......");
}

// What runs on could take the bytes that a later read is to have.
TEST_F(SerialPending, AfterAnOperationThatRunsOnThePortIsOfNoUseUntilItIsOpenedAnew) {
    system_.cancelWorks = false;
    EXPECT_EQ(read(30), serial_result::timeout);
    const int starts = system_.starts;
    SerialOverlapped overlapped;
    EXPECT_EQ(read(30), serial_result::ioDevice);
    EXPECT_EQ(read(CSerial::infinite, &overlapped), serial_result::ioDevice);
    EXPECT_EQ(port_->Write("abc", 3, &count_, nullptr, 30), serial_result::ioDevice);
    EXPECT_EQ(port_->WaitEvent(nullptr, 30), serial_result::ioDevice);
    EXPECT_EQ(system_.starts, starts);
    system_.end("abcdef");
    EXPECT_EQ(read(30), serial_result::ioDevice);

    port_->Close();
    ASSERT_EQ(port_->Open(L"fake", 0, 0, true), serial_result::success);
    system_.start = FakeSystem::Start::succeed;
    system_.atOnce = "uvwxyz";
    EXPECT_EQ(win32::leftBehind(), 0U);
    EXPECT_EQ(read(30), serial_result::success);
    EXPECT_EQ(text_, "uvwxyz");
}

// Its event and structure are the late one's: the next operation has its own.
TEST_F(SerialPending, LateCompletionDoesNotEndTheNextOpeningsOperation) {
    system_.cancelWorks = false;
    EXPECT_EQ(read(30), serial_result::timeout);
    OVERLAPPED* const late = system_.io;
    port_->Close();
    ASSERT_EQ(port_->Open(L"fake", 0, 0, true), serial_result::success);
    ASSERT_EQ(port_->SetupReadTimeouts(CSerial::blocking), serial_result::success);
    SerialOverlapped overlapped;
    ASSERT_EQ(read(CSerial::infinite, &overlapped), serial_result::success);
    EXPECT_NE(system_.io, late);
    EXPECT_NE(system_.io->hEvent, late->hEvent);
    SetEvent(late->hEvent);
    system_.cancelWorks = true;
    EXPECT_EQ(port_->Complete(overlapped, &count_, 30), serial_result::timeout);
    EXPECT_EQ(win32::leftBehind(), 0U);
}

}  // namespace
}  // namespace tessavo::test
