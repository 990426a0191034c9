#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "comm/framing.h"
#include "comm/target_commands.h"
#include "target/fault_plan.h"
#include "target/frame_collector.h"
#include "target/paced_queue.h"
#include "target/signal_processor.h"
#include "target/target_log.h"
#include "target/target_memory.h"

namespace tessavo {

/// The signal processor at the other end of the serial line, as far as the line can tell.
///
/// Knows no port, no clock and no thread: bytes and times come in, bytes and the times at which they leave
/// come out. One thread at a time. Time never goes back.
class TargetDevice {
 public:
    struct Options {
        FaultPlan faults{};
        TargetVersions versions = SignalProcessor::Options{}.versions;
        TargetTime timePerByte{0};           ///< pace of what the device sends; see byteTime()
        const MemoryFiles* files = nullptr;  ///< keeps sets and software between runs; outlives the device
    };

    TargetDevice(TargetMemory memory, Options options, TargetLog log = {});
    TargetDevice(const TargetDevice&) = delete;
    TargetDevice& operator=(const TargetDevice&) = delete;

    /// A host has opened the port: a new connection begins, with the request byte.
    void opened(TargetTime now);
    /// Another host has opened the port while one uses it: it gets its request byte, the connection goes on.
    void openedAgain(TargetTime now);
    /// The host has closed the port: what was under way in either direction is lost.
    void closed();
    /// Takes bytes from the host. Bytes outside a connection are lost.
    void receive(std::span<const std::uint8_t> bytes, TargetTime now);

    /// \return when there is something to take; nothing while the device is silent
    [[nodiscard]] std::optional<TargetTime> nextDue() const;
    /// Removes and returns the bytes that reach the host by `now`.
    [[nodiscard]] std::vector<std::uint8_t> takeDue(TargetTime now);

    [[nodiscard]] bool isOpen() const { return open_; }
    /// True once the planned number of bytes has passed; the device then neither hears nor speaks again.
    [[nodiscard]] bool cablePulled() const { return cablePulled_; }
    [[nodiscard]] const TargetMemory& memory() const { return processor_.memory(); }
    [[nodiscard]] ClipSource& clip() { return processor_.clip(); }
    [[nodiscard]] const ClipSource& clip() const { return processor_.clip(); }

 private:
    void sendRequestByte();
    void startMessage();
    void handleFrame(std::span<const std::uint8_t> frame);
    void handleDisconnect();
    void handleRequest(const XModemMessage& message);
    void handleBlock(const XModemMessage& message);
    bool takeBlock(const XModemMessage& message);
    void answer(std::uint8_t byte);
    void sendReply(std::span<const std::uint8_t> payload);
    [[nodiscard]] std::size_t passable(std::size_t count) const;
    void countPassed(std::size_t count);

    FaultPlan faults_;
    TargetLog log_;
    SignalProcessor processor_;
    FrameCollector collector_;
    PacedQueue outgoing_;
    TargetTime now_{0};
    bool open_ = false;
    bool cablePulled_ = false;
    std::uint64_t passed_ = 0;

    std::uint32_t framesSeen_ = 0;  ///< in this connection, for the faults
    std::uint8_t messageType_ = 0;  ///< frame type of the message under way; 0 = none
    std::uint8_t expectedBlock_ = 1;
};

}  // namespace tessavo
