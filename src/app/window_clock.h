#pragma once

#include "comm/clock.h"

namespace tessavo {

/// The machine's steady clock for what pauses on the user-interface thread: the window lives meanwhile.
class WindowClock : public IClock {
 public:
    [[nodiscard]] Milliseconds now() override;
    /// Lets events pass for that long.
    /// \return false when interrupt() cut it short, or was called before
    bool sleep(Milliseconds duration) override;

    /// Ends the pause that runs, and every later one until reset().
    void interrupt();
    void reset() { interrupted_ = false; }

 private:
    bool interrupted_ = false;
};

}  // namespace tessavo
