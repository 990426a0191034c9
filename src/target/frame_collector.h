#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "target/paced_queue.h"

namespace tessavo {

/// Cuts the bytes that a target receives into frames and control bytes, whatever comes.
///
/// A frame is as long as its type byte asks. Bytes that start no frame are dropped one by one; a frame that
/// is not complete when the line has been quiet for `quietGap` is dropped as a whole, so the next frame is
/// found again.
class FrameCollector {
 public:
    static constexpr TargetTime quietGap = std::chrono::milliseconds(500);

    struct Listener {
        std::function<void(std::span<const std::uint8_t>)> frame;  ///< whole frame, not checked
        std::function<void()> disconnect;
        std::function<void(std::size_t)> dropped;  ///< this many bytes made no frame
    };

    /// \param listener none of its members is empty
    explicit FrameCollector(Listener listener) : listener_(std::move(listener)) {}

    /// Takes what has arrived and tells what it completes before it returns.
    /// \param bytes in the order in which they came
    /// \param now not before that of the call before
    void receive(std::span<const std::uint8_t> bytes, TargetTime now);
    /// Drops an incomplete frame, as at the end of a connection.
    void reset();

 private:
    /// Takes the bytes in front of a frame and the frame's type byte.
    /// \return how many those are
    std::size_t startFrame(std::span<const std::uint8_t> bytes);

    Listener listener_;
    std::vector<std::uint8_t> partial_;  ///< what has come of the frame
    std::size_t expected_ = 0;           ///< its size in bytes
    TargetTime lastByte_{0};
};

}  // namespace tessavo
