#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "comm/clock.h"
#include "comm/comm_log.h"
#include "comm/framing.h"
#include "comm/serial.h"
#include "params/message_box.h"
#include "params/timed_lock.h"

namespace tessavo {

/// Message types of SendToTarget().
enum class MessageType : std::uint8_t {
    blocks128 = 1,
    /// The CRC-16 of the whole message is appended where it falls inside the last block.
    blocks1kWithCrc = 2,
    blocks4k = 5
};

/// Text of the box shown when the port cannot be opened or set up.
inline constexpr std::string_view cannotOpenPortText = "Cannot open COM port!";

/// Bytes of old input dropped before a frame goes out; a line that chatters on does not hold it up further.
inline constexpr std::size_t flushLimit = 65536;

/// Runs whole exchanges with the target: opening, blocks or request and reply, disconnecting, closing.
///
/// Callable from any thread; the lock keeps exchanges apart, and an exchange that cannot have it in time
/// fails without a word. Every other step is logged as it happens. A port that cannot be opened is told in a
/// box once the lock is free again. When the clock's pause is cut short the exchange ends as failed, quietly.
class TransferEngine {
 public:
    /// What an exchange works with. All of it outlives the engine.
    struct Outside {
        CSerial& port;
        IClock& clock;
        ICommLog& log;
        IMessageBox& boxes;
        TimedLock& lock;
        /// Name of the port selected now, as listPorts() gives it. Called on the exchange's thread.
        std::function<std::string()> portName;
        /// Told after each block that the target took: blocks done, blocks in all. May be empty.
        /// Called on the exchange's thread.
        std::function<void(std::size_t, std::size_t)> progress;
    };

    explicit TransferEngine(Outside outside);

    /// Pushes a message to the target in blocks. An empty message connects and disconnects.
    /// \return true when every block was taken and the target confirmed the disconnect; false for an unknown
    /// type, which touches nothing.
    bool SendToTarget(std::span<const std::uint8_t> data, MessageType type);

    /// Sends a request and reads the target's reply frame.
    ///
    /// \param reply takes the payload of a valid reply (at most 4096 bytes, cut to the buffer) as soon as it
    /// has arrived, so also when the disconnect after it fails; otherwise untouched.
    /// \param request up to 2048 bytes; the rest of the frame is zeros. A longer one touches nothing.
    /// \return true when a valid reply arrived and the target confirmed the disconnect.
    bool ReceiveFromTarget(std::span<std::uint8_t> reply, std::span<const std::uint8_t> request);

 private:
    Outside outside_;
};

}  // namespace tessavo
