#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "target/target_device.h"

namespace tessavo {

/// A simulated target on a pseudo-terminal, run by a thread of its own.
///
/// Everything but the log runs on the caller's thread; clip states and memory may be used from any thread.
class PtyTarget {
 public:
    struct Options {
        FaultPlan faults{};
        TargetVersions versions = TargetDevice::Options{}.versions;
        /// Paces both directions like a line of this speed, in bit/s; 0 for no pace.
        std::uint32_t baud = 0;
        const MemoryFiles* files = nullptr;  ///< keeps sets and software between runs; outlives the target
    };

    /// \param log called on the target's thread, which holds no lock then; may call back, except for stop()
    PtyTarget(TargetMemory memory, Options options, TargetLog log = {});
    /// Stops.
    ~PtyTarget();
    PtyTarget(const PtyTarget&) = delete;
    PtyTarget& operator=(const PtyTarget&) = delete;

    /// Makes the port, announces it to listPorts() and plays the target on it. Called once.
    /// \return empty, or what failed
    [[nodiscard]] std::string start();
    /// Ends the thread and removes the port; a host sees its device vanish. May be called again.
    void stop();

    /// Path of the port, such as "/dev/pts/3"; kept after the end.
    [[nodiscard]] const std::string& path() const;
    /// The port as listPorts() names it, such as "pts/3".
    [[nodiscard]] std::string portName() const;
    /// False before start(), after stop(), and once the cable is pulled or the port has failed.
    [[nodiscard]] bool running() const { return running_; }
    /// True when the port ended by itself, without having been asked to.
    [[nodiscard]] bool failed() const { return failed_; }
    /// Becomes readable when running() turns false; for poll() or select().
    [[nodiscard]] int endDescriptor() const;

    /// See ClipSource.
    void holdClipState(const ClipBytes& state);
    void enqueueClipState(const ClipBytes& state);
    void randomiseClipStates(std::uint32_t seed);
    [[nodiscard]] std::size_t queuedClipStates() const;

    /// What the target remembers now.
    [[nodiscard]] TargetMemory memory() const;

 private:
    struct Native;

    void run();
    void handleVisits();
    void handleOpening();
    void endConnection();
    void takeBytes();
    void sendBytes();
    void passOnLines();
    void endLine();

    mutable std::mutex mutex_;  ///< guards the device and the lines, not the port
    std::vector<std::pair<TargetLogKind, std::string>> lines_;
    TargetLog log_;
    TargetDevice device_;
    PacedQueue arriving_;
    std::vector<std::uint8_t> leaving_;  ///< due, but the port had no room
    std::size_t hosts_ = 0;              ///< programs that have the port open, as far as can be told
    TargetTime lastByte_{0};             ///< when the last byte passed, in either direction
    std::atomic<bool> running_ = false;
    std::atomic<bool> failed_ = false;
    std::unique_ptr<Native> native_;
    std::thread thread_;
};

}  // namespace tessavo
