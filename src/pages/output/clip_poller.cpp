#include "pages/output/clip_poller.h"

#include <system_error>
#include <utility>

#include "platform/process.h"

namespace tessavo {

namespace {

constexpr Milliseconds pollPause{1000};

}  // namespace

ClipPoller::ClipPoller(Dependencies dependencies, IClock* clock)
    : dependencies_(std::move(dependencies)), clock_(clock != nullptr ? *clock : ownClock_) {
    try {
        thread_ = std::thread(&ClipPoller::run, this);
    } catch (const std::system_error&) {
        // Without the thread the indicators keep their state, as when the target does not answer.
    }
}

ClipPoller::~ClipPoller() {
    stopping_ = true;
    ownClock_.interrupt();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void ClipPoller::setOn(bool on) {
    on_ = on;
}

void ClipPoller::run() {
    lowerThreadPriority();
    do {
        poll();
    } while (clock_.sleep(pollPause) && !stopping_);
}

void ClipPoller::poll() {
    const auto wanted = [this] { return on_ && !stopping_; };
    if (!wanted() || !dependencies_.takeTurn(wanted)) {
        return;
    }
    const auto state = dependencies_.ask();
    if (wanted()) {
        dependencies_.deliver(state);
    }
}

}  // namespace tessavo
