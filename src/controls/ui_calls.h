#pragma once

#include <QObject>
#include <deque>
#include <functional>
#include <mutex>

namespace tessavo {

/// Calls that any thread hands to the thread of this object, the user-interface thread.
///
/// They run in the order in which they were handed over, one per event and in line with the thread's other
/// events; a nested event loop goes on with the next one. Calls that still wait when the object is destroyed
/// are dropped with what they hold.
class UiCalls : public QObject {
    Q_OBJECT

 public:
    UiCalls();

    /// Runs the call at once when this is the object's thread, and otherwise leaves it to its event loop.
    /// Any thread, as long as the object lives.
    void call(std::function<void()> call);

 Q_SIGNALS:
    void callWaits();

 private:
    void runNext();

    std::mutex mutex_;
    std::deque<std::function<void()>> waiting_;
};

}  // namespace tessavo
