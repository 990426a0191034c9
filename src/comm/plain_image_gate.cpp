#include "comm/plain_image_gate.h"

namespace tessavo {

void PlainImageGate::note(LiveWorker::State state, bool isPlain) {
    const std::lock_guard guard(mutex_);
    if (state == LiveWorker::State::sending) {
        ++rounds_;
        isPlain_ = isPlain;
        isNeeded_ = isNeeded_ || !isPlain;
        return;
    }
    if (!isPlain_) {
        return;
    }
    plainResult_ = rounds_;
    plainIsConfirmed_ = state == LiveWorker::State::confirmed;
    isNeeded_ = isNeeded_ && !plainIsConfirmed_;
    changed_.notify_all();
}

void PlainImageGate::end() {
    const std::lock_guard guard(mutex_);
    ended_ = true;
    changed_.notify_all();
}

bool PlainImageGate::isNeeded() const {
    const std::lock_guard guard(mutex_);
    return isNeeded_;
}

std::uint64_t PlainImageGate::rounds() const {
    const std::lock_guard guard(mutex_);
    return rounds_;
}

bool PlainImageGate::wait(std::uint64_t rounds, Milliseconds limit) {
    std::unique_lock guard(mutex_);
    changed_.wait_for(guard, limit, [&] { return ended_ || plainResult_ > rounds; });
    return !ended_ && plainResult_ > rounds && plainIsConfirmed_;
}

}  // namespace tessavo
