#pragma once

#include <QObject>
#include <deque>
#include <functional>
#include <mutex>

namespace tessavo {

/// Hands calls from any thread to the user-interface thread, which is the thread that made this object.
///
/// The calls run in the order in which they were handed over, one for each event of the thread's event loop,
/// so that other events run between them; while a call runs a nested event loop, as a message box does, the
/// loop runs the next call. Calls that still wait when the object is destroyed do not run.
class UiCalls : public QObject {
    Q_OBJECT

 public:
    UiCalls();

    /// Runs the call at once on the object's own thread; from any other thread leaves it to the event loop.
    /// The object must live.
    void call(std::function<void()> call);

 Q_SIGNALS:
    /// Emitted for each call that waits for the event loop.
    void callWaits();

 private:
    void runNext();

    std::mutex mutex_;
    std::deque<std::function<void()>> waiting_;
};

}  // namespace tessavo
