#include "app/window_clock.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

namespace tessavo {

Milliseconds WindowClock::now() {
    return std::chrono::duration_cast<Milliseconds>(std::chrono::steady_clock::now().time_since_epoch());
}

bool WindowClock::sleep(Milliseconds duration) {
    const Milliseconds end = now() + duration;
    QTimer waker;
    waker.setTimerType(Qt::PreciseTimer);
    // Ticks on: the one at the end may come a moment too early.
    waker.start(std::chrono::milliseconds(10));
    while (!interrupted_ && now() < end) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    QAbstractEventDispatcher::instance()->wakeUp();
    return !interrupted_;
}

void WindowClock::interrupt() {
    interrupted_ = true;
    QAbstractEventDispatcher::instance()->wakeUp();
}

}  // namespace tessavo
