#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <mutex>
#include <utility>
#include <vector>

#include "comm/line.h"
#include "support/borrowed_line.h"
#include "support/exchange_fixture.h"

namespace tessavo::test {

/// A line whose target takes every frame, answers every request with `reply`, and never falls silent. Notices
/// when two exchanges share it.
class AnsweringLine final : public ILine {
 public:
    explicit AnsweringLine(Bytes reply = replyFrame({})) : reply_(std::move(reply)) {}

    std::uint32_t open() override {
        if (users.fetch_add(1) != 0) {
            ++clashes;
        }
        next_ = 0x43;
        return serial_result::success;
    }
    std::uint32_t setUp(const LineSettings&) override { return serial_result::success; }
    LineRead read(std::span<std::uint8_t> bytes, Milliseconds timeout) override {
        if (timeout == Milliseconds{1}) {
            return {serial_result::timeout, 0};
        }
        if (bytes.size() == 1) {
            bytes[0] = std::exchange(next_, std::uint8_t{0x06});
        } else {
            std::copy(reply_.begin(), reply_.end(), bytes.begin());
        }
        return {serial_result::success, bytes.size()};
    }
    std::uint32_t write(std::span<const std::uint8_t> bytes, Milliseconds) override {
        const std::lock_guard guard(mutex_);
        frames_.emplace_back(bytes.begin(), bytes.end());
        return serial_result::success;
    }
    void close() override { users.fetch_sub(1); }
    void cancel() override {}

    /// Frames of one size written so far.
    [[nodiscard]] std::vector<Bytes> frames(std::size_t size) const {
        const std::lock_guard guard(mutex_);
        std::vector<Bytes> found;
        std::ranges::copy_if(frames_, std::back_inserter(found),
                             [size](const Bytes& frame) { return frame.size() == size; });
        return found;
    }

    std::atomic<int> users = 0;
    std::atomic<int> clashes = 0;

 private:
    Bytes reply_;
    std::uint8_t next_ = 0x43;  // unguarded: the thread sanitizer sees exchanges that overlap
    mutable std::mutex mutex_;
    std::vector<Bytes> frames_;
};

}  // namespace tessavo::test
