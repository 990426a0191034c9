#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tessavo {

/// Single bytes that travel outside frames.
namespace control_byte {
inline constexpr std::uint8_t request = 0x43;     ///< 'C': the target is ready to take a frame
inline constexpr std::uint8_t positive = 0x06;    ///< ACK
inline constexpr std::uint8_t negative = 0x15;    ///< NAK
inline constexpr std::uint8_t disconnect = 0x04;  ///< sent by the PC; the target answers `positive`
inline constexpr std::uint8_t padding = 0x1A;     ///< fills a block beyond the message's end
}  // namespace control_byte

/// Type bytes of a frame; the number in the name is the size of its payload in bytes.
namespace frame_type {
inline constexpr std::uint8_t block128 = 1;
inline constexpr std::uint8_t block1k = 2;
inline constexpr std::uint8_t block2k = 3;
inline constexpr std::uint8_t block4k = 5;
}  // namespace frame_type

/// Type byte, block number and its complement in front of the payload.
inline constexpr std::size_t frameHeaderSize = 3;
/// Header and CRC: what a frame adds to its payload.
inline constexpr std::size_t frameOverhead = 5;
inline constexpr std::size_t maximumPayloadSize = 4096;
inline constexpr std::size_t maximumFrameSize = maximumPayloadSize + frameOverhead;

/// Payload bytes of a frame type; 0 for a type without a size.
[[nodiscard]] constexpr std::size_t payloadSize(std::uint8_t type) {
    switch (type) {
        case frame_type::block128:
            return 128;
        case frame_type::block1k:
            return 1024;
        case frame_type::block2k:
            return 2048;
        case frame_type::block4k:
            return 4096;
        default:
            return 0;
    }
}

/// The frame last built or parsed.
struct XModemMessage {
    std::uint8_t type = 0;         ///< see frame_type
    std::uint8_t blockNumber = 0;  ///< counts from 1; 0 follows 255
    std::uint8_t complement = 0;   ///< of a sound frame all bits of the block number turned over
    std::array<std::uint8_t, maximumPayloadSize> payload{};
    std::uint16_t receivedCrc = 0;
    std::uint32_t kind = 0;  ///< the type when it has a payload size, else 0
    std::uint16_t size = 0;  ///< payload bytes
};

/// CRC-16/CCITT-FALSE: polynomial 0x1021, initial value 0xFFFF, not reflected, no final XOR. No bytes give
/// 0xFFFF.
[[nodiscard]] std::uint16_t Crc16(std::size_t length, const std::uint8_t* bytes);
[[nodiscard]] std::uint16_t Crc16(std::span<const std::uint8_t> bytes);
/// Goes on from the CRC of the bytes in front of these.
[[nodiscard]] std::uint16_t Crc16(std::span<const std::uint8_t> bytes, std::uint16_t crcSoFar);

/// Writes a whole frame: type, block number, complement, payload, CRC high byte first.
///
/// \param type see frame_type; any other has a payload of no bytes
/// \param blockNumber any; the first of a message is 1
/// \param payload at least payloadSize(type) bytes; the rest is not read. Missing bytes are sent as padding.
/// \param out room for payloadSize(type) + 5 bytes.
/// \return bytes written, or 0 when `out` is too small.
std::size_t BuildFrame(std::uint8_t type, std::uint8_t blockNumber, std::span<const std::uint8_t> payload,
                       std::span<std::uint8_t> out);

/// Fills the message from a received frame.
///
/// \param frame from the type byte on; bytes behind the CRC are not looked at
/// \param message overwritten as far as the frame goes, also when it is not valid
/// \return true when the CRC matches the payload and the block number matches its complement; false also when
/// `frame` is shorter than its type byte asks. Type and block number are not checked further.
bool ParseFrame(std::span<const std::uint8_t> frame, XModemMessage& message);

}  // namespace tessavo
