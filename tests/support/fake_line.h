#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "comm/line.h"
#include "support/transcript.h"
#include "support/virtual_clock.h"

namespace tessavo::test {

using Bytes = std::vector<std::uint8_t>;

/// What one read comes to. Fewer bytes than asked for with `success` stand for a line that gives less.
struct ReadOutcome {
    std::uint32_t result = serial_result::success;
    Bytes bytes;
};

/// A line that notes every operation and answers reads from a list.
///
/// Reads with a time-out of 1 ms take `stale`; all others take `answers`. An empty list times out, in virtual
/// time.
class FakeLine : public ILine {
 public:
    FakeLine(Transcript& transcript, VirtualClock& clock) : transcript_(transcript), clock_(clock) {}

    std::uint32_t open() override;
    std::uint32_t setUp(const LineSettings& settings) override;
    LineRead read(std::span<std::uint8_t> bytes, Milliseconds timeout) override;
    std::uint32_t write(std::span<const std::uint8_t> bytes, Milliseconds timeout) override;
    void close() override;
    void cancel() override;

    /// Makes every exchange use this line, which notes the name of the port.
    [[nodiscard]] LineMaker maker();

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
    std::string portName_;
};

}  // namespace tessavo::test
