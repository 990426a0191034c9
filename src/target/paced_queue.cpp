#include "target/paced_queue.h"

#include <algorithm>

namespace tessavo {

TargetTime PacedQueue::arrival(const Run& run, std::size_t index) const {
    return run.start + timePerByte_ * static_cast<TargetTime::rep>(index + 1);
}

void PacedQueue::push(std::span<const std::uint8_t> bytes, TargetTime start) {
    if (bytes.empty()) {
        return;
    }
    runs_.push_back({{bytes.begin(), bytes.end()}, 0, std::max(start, lineFree_)});
    lineFree_ = arrival(runs_.back(), bytes.size() - 1);
    size_ += bytes.size();
}

void PacedQueue::clear() {
    runs_.clear();
    size_ = 0;
    lineFree_ = TargetTime{0};
}

std::optional<TargetTime> PacedQueue::nextDue() const {
    if (runs_.empty()) {
        return std::nullopt;
    }
    return arrival(runs_.front(), runs_.front().consumed);
}

std::vector<std::uint8_t> PacedQueue::take(TargetTime now, std::size_t limit) {
    std::vector<std::uint8_t> due;
    while (!runs_.empty() && due.size() < limit) {
        Run& run = runs_.front();
        if (arrival(run, run.consumed) > now) {
            break;
        }
        due.push_back(run.bytes[run.consumed]);
        ++run.consumed;
        if (run.consumed == run.bytes.size()) {
            runs_.pop_front();
        }
    }
    size_ -= due.size();
    return due;
}

}  // namespace tessavo
