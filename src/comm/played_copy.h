#pragma once

#include <mutex>

#include "base/semaphore.h"
#include "params/parameter_image.h"
#include "params/tuning_state.h"

namespace tessavo {

/// In what the copy that Live Mode sends differs from the image that it is made of: in gain words, and in nothing else.
/// Every term has its own owner and stands for itself, so that a further one, such as a word for channels that are
/// muted, is a member here and a line in PlayedCopy::of().
struct PlayedTerms {
    /// All channels are lowered by so many steps of the volumeGainTable(), half a dB each, as loweredGainWord() does.
    unsigned loweredSteps = 0;

    friend bool operator==(const PlayedTerms&, const PlayedTerms&) = default;
};

/// Makes the copy of the image that Live Mode sends. The sets and the image of the program stay as they are; without
/// terms the copy is the image to the last byte. Any thread.
class PlayedCopy {
 public:
    [[nodiscard]] PlayedTerms terms() const;
    /// Whether the copy is the image itself.
    [[nodiscard]] bool isPlain() const { return terms() == PlayedTerms{}; }
    /// Who sees to it that the copy is sent raises `updatePending`.
    void setLoweredSteps(unsigned steps);

    /// The copy that belongs to an image.
    [[nodiscard]] ParameterImage of(const ParameterImage& image) const;

    /// The copy of the image as it stands, to be sent. Waits at most 500 ms for the end of a hold(), and then goes on.
    [[nodiscard]] ParameterImage take(const TuningState& tuning);
    /// Whether the copy that was taken last was the image itself; true before the first.
    [[nodiscard]] bool tookPlain() const;

    /// Nothing is taken while this lives, so that image and terms can change together: none is sent with the other's
    /// former state. To be taken before the mutual-exclusion object of the tuning, and by one thread only once.
    [[nodiscard]] SemaphoreHold hold();

 private:
    CSemaphore pair_;
    mutable std::mutex mutex_;  ///< guards what follows
    PlayedTerms terms_;
    bool tookPlain_ = true;
};

}  // namespace tessavo
