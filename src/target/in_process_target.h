#pragma once

#include <condition_variable>
#include <mutex>
#include <string>

#include "target/target_device.h"

namespace tessavo {

/// A simulated target inside the program, without pseudo-terminal and thread; InProcessPort leads to it.
///
/// Any thread may call anything. Plays the target on the thread that uses the port.
class InProcessTarget {
 public:
    /// \param portName as a person sees it.
    /// \param log called on the thread that uses the port; must not call back
    InProcessTarget(std::string portName, TargetMemory memory, TargetDevice::Options options,
                    TargetLog log = {});
    InProcessTarget(const InProcessTarget&) = delete;
    InProcessTarget& operator=(const InProcessTarget&) = delete;

    [[nodiscard]] const std::string& portName() const { return portName_; }
    /// Name under which the port opens; see devicePath().
    [[nodiscard]] const std::wstring& deviceName() const { return deviceName_; }

    /// See ClipSource.
    void holdClipState(const ClipBytes& state);
    void enqueueClipState(const ClipBytes& state);
    void randomiseClipStates(std::uint32_t seed);

    /// What the target remembers now.
    [[nodiscard]] TargetMemory memory() const;

 private:
    friend class InProcessPort;

    mutable std::mutex mutex_;         ///< guards the device, and the input and state of the port
    std::condition_variable changed_;  ///< told when a waiting port must look again
    std::string portName_;
    std::wstring deviceName_;
    TargetDevice device_;
    bool inUse_ = false;
};

}  // namespace tessavo
