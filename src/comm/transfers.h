#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tessavo {

/// Message types of SendToTarget().
enum class MessageType : std::uint8_t {
    blocks128 = 1,
    /// The CRC-16 of the whole message is appended where it falls inside the last block.
    blocks1kWithCrc = 2,
    blocks4k = 5
};

/// Blocks that a message of this size is sent in; 0 for an unknown type.
[[nodiscard]] std::size_t blockCount(std::size_t messageSize, MessageType type);

/// The two exchanges that everything between the program and the target is made of.
class ITransfers {
 public:
    virtual ~ITransfers() = default;

    /// Pushes a message to the target in blocks. An empty message connects and disconnects.
    /// \return true when every block was taken and the target confirmed the disconnect; false for an unknown
    /// type, which touches nothing.
    virtual bool SendToTarget(std::span<const std::uint8_t> data, MessageType type) = 0;

    /// Sends a request and reads the target's reply frame.
    ///
    /// \param reply takes the payload of a valid reply (at most 4096 bytes, cut to the buffer) as soon as it
    /// has arrived, so also when the disconnect after it fails; otherwise untouched.
    /// \param request up to 2048 bytes; the rest of the frame is zeros. A longer one touches nothing.
    /// \return true when a valid reply arrived and the target confirmed the disconnect.
    virtual bool ReceiveFromTarget(std::span<std::uint8_t> reply, std::span<const std::uint8_t> request) = 0;
};

}  // namespace tessavo
