#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "comm/serial.h"
#include "support/exchange_fixture.h"

namespace tessavo::test {

/// A port whose target takes every frame, answers every request with `reply`, and never falls silent. Notices
/// when two exchanges share it.
class AnsweringPort final : public CSerial {
 public:
    explicit AnsweringPort(Bytes reply = replyFrame({})) : reply_(std::move(reply)) {}

    std::uint32_t Open(const std::wstring&, std::uint32_t, std::uint32_t, bool) override {
        if (users.fetch_add(1) != 0) {
            ++clashes;
        }
        next_ = 0x43;
        return serial_result::success;
    }
    std::uint32_t Close() override {
        users.fetch_sub(1);
        return serial_result::success;
    }
    std::uint32_t Setup(std::uint32_t, std::uint8_t, int, std::uint8_t, int) override { return 0; }
    std::uint32_t SetupReadTimeouts(int) override { return 0; }
    std::uint32_t Write(const void* data, std::size_t size, std::uint32_t*, SerialOverlapped*,
                        std::uint32_t) override {
        const auto* first = static_cast<const std::uint8_t*>(data);
        const std::lock_guard guard(mutex_);
        frames_.emplace_back(first, first + size);
        return serial_result::success;
    }
    std::uint32_t Read(void* data, std::size_t size, std::uint32_t* count, SerialOverlapped*,
                       std::uint32_t timeoutMs) override {
        if (timeoutMs == 1) {
            return serial_result::timeout;
        }
        auto* bytes = static_cast<std::uint8_t*>(data);
        if (size == 1) {
            *bytes = std::exchange(next_, std::uint8_t{0x06});
        } else {
            std::copy(reply_.begin(), reply_.end(), bytes);
        }
        *count = static_cast<std::uint32_t>(size);
        return serial_result::success;
    }

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
