#include "controls/ui_calls.h"

#include <QThread>
#include <utility>

namespace tessavo {

// What a call holds crosses under this class's own lock; the toolkit's queue carries a bare wake-up. The
// thread sanitizer sees the one and not the other, and so can judge what the threads hand to each other.
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
