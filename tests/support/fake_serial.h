#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "comm/serial.h"
#include "support/transcript.h"
#include "support/virtual_clock.h"

namespace tessavo::test {

using Bytes = std::vector<std::uint8_t>;

/// What one read comes to. Fewer bytes than asked for with `success` stand for a driver that gives less.
struct ReadOutcome {
    std::uint32_t result = serial_result::success;
    Bytes bytes;
};

/// A port that notes every operation and answers reads from a list.
///
/// Reads with a time-out of 1 ms take `stale`; all others take `answers`. An empty list times out, in virtual
/// time.
class FakeSerial : public CSerial {
 public:
    FakeSerial(Transcript& transcript, VirtualClock& clock) : transcript_(transcript), clock_(clock) {}

    std::uint32_t Open(const std::wstring& deviceName, std::uint32_t inQueue, std::uint32_t outQueue,
                       bool overlapped) override;
    std::uint32_t Close() override;
    std::uint32_t Setup(std::uint32_t baudRate, std::uint8_t dataBits, int parity, std::uint8_t stopBits,
                        int dtrMode) override;
    std::uint32_t SetupReadTimeouts(int mode) override;
    std::uint32_t Write(const void* data, std::size_t size, std::uint32_t* written,
                        SerialOverlapped* overlapped, std::uint32_t timeoutMs) override;
    std::uint32_t Read(void* data, std::size_t size, std::uint32_t* read, SerialOverlapped* overlapped,
                       std::uint32_t timeoutMs) override;

    /// Adds single-byte answers.
    void answer(std::initializer_list<std::uint8_t> bytes);
    /// Adds one answer of many bytes.
    void answer(Bytes bytes);
    void answerError(std::uint32_t result);

    std::uint32_t openResult = serial_result::success;
    std::uint32_t setupResult = serial_result::success;
    std::uint32_t writeResult = serial_result::success;
    std::deque<ReadOutcome> answers;
    std::deque<std::uint8_t> stale;
    /// A line that never falls silent.
    bool chatters = false;
    /// Runs at the start of every read.
    std::function<void()> onRead;
    std::vector<Bytes> written;

 private:
    Transcript& transcript_;
    VirtualClock& clock_;
};

}  // namespace tessavo::test
