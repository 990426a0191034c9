#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <vector>

namespace tessavo {

/// Time as the simulated target sees it: since an arbitrary start, never going back.
using TargetTime = std::chrono::nanoseconds;

/// Time that one byte takes on a line with one start and one stop bit; 0 for a line without pace (`baud` 0).
[[nodiscard]] constexpr TargetTime byteTime(std::uint32_t baud) {
    return baud == 0 ? TargetTime{0} : TargetTime{std::chrono::seconds{10}} / baud;
}

/// Bytes on their way along a line: each arrives one byte time after the byte in front of it.
class PacedQueue {
 public:
    explicit PacedQueue(TargetTime timePerByte) : timePerByte_(timePerByte) {}

    /// Sends bytes at `start`, or as soon as those in front of them have passed.
    void push(std::span<const std::uint8_t> bytes, TargetTime start);
    /// Drops what is still on its way.
    void clear();

    /// \return when the next byte arrives; nothing when the line is empty
    [[nodiscard]] std::optional<TargetTime> nextDue() const;
    /// Removes and returns the bytes that have arrived by `now`, at most `limit`.
    [[nodiscard]] std::vector<std::uint8_t> take(TargetTime now, std::size_t limit = SIZE_MAX);
    /// Bytes still on their way.
    [[nodiscard]] std::size_t size() const { return size_; }

 private:
    struct Run {
        std::vector<std::uint8_t> bytes;
        std::size_t consumed = 0;
        TargetTime start{0};
    };
    [[nodiscard]] TargetTime arrival(const Run& run, std::size_t index) const;

    TargetTime timePerByte_;
    TargetTime lineFree_{0};
    std::deque<Run> runs_;
    std::size_t size_ = 0;
};

}  // namespace tessavo
