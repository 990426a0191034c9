#include "comm/live_record.h"

namespace tessavo {

void LiveRecord::note(LiveWorker::State state, const ParameterImage& image) {
    const std::lock_guard guard(mutex_);
    if (state == LiveWorker::State::sending) {
        inTransit_ = image;
        confirmed_.reset();
    } else if (state == LiveWorker::State::confirmed) {
        // Nothing when it was forgotten on its way.
        confirmed_ = inTransit_;
    } else {
        confirmed_.reset();
    }
}

void LiveRecord::noteEnd(ExchangeEnd end) {
    if (end == ExchangeEnd::answered || end == ExchangeEnd::lineBusy) {
        return;
    }
    const std::lock_guard guard(mutex_);
    confirmed_.reset();
}

void LiveRecord::forget() {
    const std::lock_guard guard(mutex_);
    confirmed_.reset();
    inTransit_.reset();
}

std::optional<ParameterImage> LiveRecord::confirmed() const {
    const std::lock_guard guard(mutex_);
    return confirmed_;
}

}  // namespace tessavo
