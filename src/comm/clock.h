#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace tessavo {

using Milliseconds = std::chrono::milliseconds;

/// Time as the transfer engine and the live worker see it, so that tests can run in virtual time.
class IClock {
 public:
    virtual ~IClock() = default;

    /// Time since an arbitrary start; never goes back.
    [[nodiscard]] virtual Milliseconds now() = 0;

    /// Pauses the calling thread.
    /// \return false when the pause was cut short because the program ends.
    virtual bool sleep(Milliseconds duration) = 0;
};

/// The machine's steady clock. Thread-safe.
class SystemClock final : public IClock {
 public:
    [[nodiscard]] Milliseconds now() override;
    bool sleep(Milliseconds duration) override;

    /// Ends every running and every later pause at once; called when the program ends.
    void interrupt();

 private:
    std::mutex mutex_;
    std::condition_variable wake_;
    bool interrupted_ = false;
};

}  // namespace tessavo
