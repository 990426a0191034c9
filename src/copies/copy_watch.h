#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace tessavo {

/// What one exchange is for.
enum class CopyAct : std::uint8_t {
    readSet,       ///< reads a set of the target
    readVersions,  ///< reads the versions; of no set
    sendLive,      ///< sends a set's image live: the target plays it from here on
    confirm,       ///< asks the target to confirm the image
    save,          ///< saves the image as a set of the target
    readBack       ///< reads the saved set to compare it
};

/// Where a backup, a restore or a comparison stands: told before each exchange.
struct CopyProgress {
    std::size_t done = 0;  ///< exchanges behind it
    std::size_t all = 0;   ///< exchanges in all
    CopyAct act = CopyAct::readSet;
    std::uint8_t targetSet = 0;  ///< 1 to 5, or 0 for the default set
};

/// Who watches, and may end, what is done with several exchanges. Each may be empty; all are called on the
/// thread that runs it.
struct CopyWatch {
    std::function<void(const CopyProgress&)> progress;
    /// Asked before each exchange; false ends everything there.
    std::function<bool()> mayGoOn;
    /// Asked after an exchange that failed: whether its port could not be opened, so that nothing of it was
    /// sent. Where it is empty, anything may have been sent.
    std::function<bool()> nothingSent;
};

}  // namespace tessavo
