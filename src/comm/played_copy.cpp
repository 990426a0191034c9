#include "comm/played_copy.h"

#include <chrono>

#include "params/volume_gain_table.h"

namespace tessavo {

namespace {

constexpr std::chrono::milliseconds pairWait{500};

ParameterImage copyWith(const PlayedTerms& terms, ParameterImage image) {
    for (ChannelImageBlock& channel : image.channels) {
        channel.gainWord = loweredGainWord(channel.gainWord, terms.loweredSteps);
    }
    return image;
}

}  // namespace

PlayedTerms PlayedCopy::terms() const {
    const std::lock_guard guard(mutex_);
    return terms_;
}

void PlayedCopy::setLoweredSteps(unsigned steps) {
    const std::lock_guard guard(mutex_);
    terms_.loweredSteps = steps;
}

ParameterImage PlayedCopy::of(const ParameterImage& image) const {
    return copyWith(terms(), image);
}

ParameterImage PlayedCopy::take(const TuningState& tuning) {
    const SemaphoreHold pair(pair_, pairWait);
    const ParameterImage image = tuning.imageCopy();
    const std::lock_guard guard(mutex_);
    tookPlain_ = terms_ == PlayedTerms{};
    return copyWith(terms_, image);
}

bool PlayedCopy::tookPlain() const {
    const std::lock_guard guard(mutex_);
    return tookPlain_;
}

SemaphoreHold PlayedCopy::hold() {
    return SemaphoreHold(pair_, pairWait);
}

}  // namespace tessavo
