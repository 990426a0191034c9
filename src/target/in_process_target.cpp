#include "target/in_process_target.h"

#include <utility>

namespace tessavo {

InProcessTarget::InProcessTarget(std::string portName, TargetMemory memory, TargetDevice::Options options,
                                 TargetLog log)
    : portName_(std::move(portName)), device_(std::move(memory), std::move(options), std::move(log)) {}

void InProcessTarget::holdClipState(const ClipBytes& state) {
    const std::lock_guard guard(mutex_);
    device_.clip().hold(state);
}

void InProcessTarget::enqueueClipState(const ClipBytes& state) {
    const std::lock_guard guard(mutex_);
    device_.clip().enqueue(state);
}

void InProcessTarget::randomiseClipStates(std::uint32_t seed) {
    const std::lock_guard guard(mutex_);
    device_.clip().randomise(seed);
}

TargetMemory InProcessTarget::memory() const {
    const std::lock_guard guard(mutex_);
    return device_.memory();
}

}  // namespace tessavo
