#pragma once

#include <cstddef>
#include <cstdint>

#include "copies/copy_watch.h"

namespace tessavo {

/// Counts the exchanges of a backup, a restore or a comparison for whoever watches it.
class CopyRound {
 public:
    /// \param watch outlives this object
    /// \param all exchanges in all
    CopyRound(const CopyWatch& watch, std::size_t all) : watch_(watch), all_(all) {}

    /// Asks whether the next exchange may begin, and tells of it.
    /// \return false when everything ends here
    [[nodiscard]] bool begin(CopyAct act, std::uint8_t targetSet) {
        if (!mayGoOn()) {
            return false;
        }
        if (watch_.progress) {
            watch_.progress({.done = done_, .all = all_, .act = act, .targetSet = targetSet});
        }
        ++done_;
        return true;
    }

    /// Whether an exchange that has just failed may have sent something.
    [[nodiscard]] bool maybeSent() const { return !watch_.nothingSent || !watch_.nothingSent(); }

    [[nodiscard]] bool mayGoOn() const { return !watch_.mayGoOn || watch_.mayGoOn(); }

 private:
    const CopyWatch& watch_;
    std::size_t all_;
    std::size_t done_ = 0;
};

}  // namespace tessavo
