#include "target/frame_collector.h"

#include <algorithm>

#include "comm/framing.h"

namespace tessavo {

void FrameCollector::reset() {
    if (!partial_.empty()) {
        listener_.dropped(partial_.size());
        partial_.clear();
    }
}

std::size_t FrameCollector::startFrame(std::span<const std::uint8_t> bytes) {
    std::size_t strange = 0;
    std::size_t used = 0;
    while (used < bytes.size() && partial_.empty() && bytes[used] != control_byte::disconnect) {
        const std::uint8_t byte = bytes[used];
        ++used;
        if (payloadSize(byte) == 0) {
            ++strange;
        } else {
            expected_ = payloadSize(byte) + frameOverhead;
            partial_.push_back(byte);
        }
    }
    if (strange > 0) {
        listener_.dropped(strange);
    }
    return used;
}

void FrameCollector::receive(std::span<const std::uint8_t> bytes, TargetTime now) {
    if (bytes.empty()) {
        return;
    }
    if (now - lastByte_ >= quietGap) {
        reset();
    }
    lastByte_ = now;
    while (!bytes.empty()) {
        if (partial_.empty()) {
            bytes = bytes.subspan(startFrame(bytes));
            if (partial_.empty() && !bytes.empty()) {
                bytes = bytes.subspan(1);
                listener_.disconnect();
            }
            continue;
        }
        const std::size_t count = std::min(bytes.size(), expected_ - partial_.size());
        partial_.insert(partial_.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
        bytes = bytes.subspan(count);
        if (partial_.size() == expected_) {
            const std::vector<std::uint8_t> frame = std::move(partial_);
            partial_.clear();
            listener_.frame(frame);
        }
    }
}

}  // namespace tessavo
