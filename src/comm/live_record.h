#pragma once

#include <mutex>
#include <optional>

#include "comm/live_worker.h"
#include "comm/transfer_engine.h"
#include "params/parameter_image.h"

namespace tessavo {

/// Which image the target is known to hold. Any thread.
class LiveRecord {
 public:
    /// Follows the live worker.
    /// \param image the copy that is sent; only ever that one counts as confirmed
    void note(LiveWorker::State state, const ParameterImage& image);
    /// Follows every exchange: one that failed ends the confirmation, for the target may have lost its
    /// memory. An image that is under way stays: the target is still asked whether it has that one.
    void noteEnd(ExchangeEnd end);
    /// From now on nothing counts as confirmed until a transfer that begins later is.
    void forget();

    /// The image that the target has confirmed last; nothing before that and after whatever ends it.
    [[nodiscard]] std::optional<ParameterImage> confirmed() const;

 private:
    mutable std::mutex mutex_;
    std::optional<ParameterImage> inTransit_;
    std::optional<ParameterImage> confirmed_;
};

}  // namespace tessavo
