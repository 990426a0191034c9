#include "controls/ui_calls.h"

#include <QThread>
#include <utility>

namespace tessavo {

// The calls are handed over under this class's own lock, and only a wake-up without content goes through the
// toolkit's queue. The thread sanitizer sees the lock, but not how the queue is guarded; so it can judge what
// the threads hand to each other.
UiCalls::UiCalls() {
    connect(this, &UiCalls::callWaits, this, &UiCalls::runNext, Qt::QueuedConnection);
}

void UiCalls::call(std::function<void()> call) {
    if (QThread::currentThread() == thread()) {
        call();
        return;
    }
    {
        const std::lock_guard guard(mutex_);
        waiting_.push_back(std::move(call));
    }
    Q_EMIT callWaits();
}

void UiCalls::runNext() {
    std::function<void()> call;
    {
        const std::lock_guard guard(mutex_);
        call = std::move(waiting_.front());
        waiting_.pop_front();
    }
    call();
}

}  // namespace tessavo
