#pragma once

#include <condition_variable>
#include <mutex>
#include <string>

#include "target/target_device.h"

namespace tessavo {

/// A simulated target inside the program, without pseudo-terminal and thread; InProcessLine leads to it.
///
/// Any thread may call anything. What the target does happens on the thread that uses the line.
class InProcessTarget {
 public:
    /// \param portName as a person sees it
    /// \param memory what the target remembers at first
    /// \param options faults, versions and pace
    /// \param log called on the thread that uses the line; must not call back
    InProcessTarget(std::string portName, TargetMemory memory, TargetDevice::Options options,
                    TargetLog log = {});
    InProcessTarget(const InProcessTarget&) = delete;
    InProcessTarget& operator=(const InProcessTarget&) = delete;

    [[nodiscard]] const std::string& portName() const { return portName_; }

    /// See ClipSource.
    void holdClipState(const ClipBytes& state);
    void enqueueClipState(const ClipBytes& state);
    void randomiseClipStates(std::uint32_t seed);

    /// What the target remembers now.
    [[nodiscard]] TargetMemory memory() const;

 private:
    friend class InProcessLine;

    mutable std::mutex mutex_;         ///< guards the device, and the input and state of the line
    std::condition_variable changed_;  ///< told when a waiting line must look again
    std::string portName_;
    TargetDevice device_;
    bool inUse_ = false;
};

}  // namespace tessavo
