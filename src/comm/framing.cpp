#include "comm/framing.h"

#include <algorithm>

namespace tessavo {

namespace {

constexpr std::uint16_t polynomial = 0x1021;
constexpr std::uint16_t initialRegister = 0xFFFF;

// Bytes looked up at once: the lookups of one step do not wait for each other.
constexpr std::size_t crcStep = 4;

/// Entry [n][byte]: what a byte adds to the register once n more bytes have passed behind it.
constexpr auto makeCrcTables() {
    std::array<std::array<std::uint16_t, 256>, crcStep> tables{};
    for (unsigned byte = 0; byte < 256; ++byte) {
        unsigned crc = byte << 8U;
        for (auto& table : tables) {
            for (int bit = 0; bit < 8; ++bit) {
                crc = (crc & 0x8000U) != 0 ? (crc << 1U) ^ polynomial : crc << 1U;
            }
            crc &= 0xFFFFU;
            table[byte] = static_cast<std::uint16_t>(crc);
        }
    }
    return tables;
}

constexpr auto crcTables = makeCrcTables();

}  // namespace

std::uint16_t Crc16(std::span<const std::uint8_t> bytes, std::uint16_t crcSoFar) {
    unsigned crc = crcSoFar;
    for (; bytes.size() >= crcStep; bytes = bytes.subspan(crcStep)) {
        crc = static_cast<unsigned>(crcTables[3][(crc >> 8U) ^ bytes[0]]) ^
              crcTables[2][(crc & 0xFFU) ^ bytes[1]] ^ crcTables[1][bytes[2]] ^ crcTables[0][bytes[3]];
    }
    for (const std::uint8_t byte : bytes) {
        crc = ((crc << 8U) & 0xFFFFU) ^ crcTables[0][(crc >> 8U) ^ byte];
    }
    return static_cast<std::uint16_t>(crc);
}

std::uint16_t Crc16(std::span<const std::uint8_t> bytes) {
    return Crc16(bytes, initialRegister);
}

std::uint16_t Crc16(std::size_t length, const std::uint8_t* bytes) {
    return Crc16(std::span{bytes, length});
}

std::size_t BuildFrame(std::uint8_t type, std::uint8_t blockNumber, std::span<const std::uint8_t> payload,
                       std::span<std::uint8_t> out) {
    const std::size_t size = payloadSize(type);
    const std::size_t frameSize = size + frameOverhead;
    if (out.size() < frameSize) {
        return 0;
    }
    out[0] = type;
    out[1] = blockNumber;
    out[2] = static_cast<std::uint8_t>(~blockNumber & 0xFF);
    const auto body = out.subspan(frameHeaderSize, size);
    const std::size_t given = std::min(size, payload.size());
    std::copy_n(payload.begin(), given, body.begin());
    std::fill(body.begin() + static_cast<std::ptrdiff_t>(given), body.end(), control_byte::padding);
    const std::uint16_t crc = Crc16(body);
    out[frameHeaderSize + size] = static_cast<std::uint8_t>(crc >> 8);
    out[frameHeaderSize + size + 1] = static_cast<std::uint8_t>(crc & 0xFF);
    return frameSize;
}

bool ParseFrame(std::span<const std::uint8_t> frame, XModemMessage& message) {
    if (frame.size() < frameHeaderSize) {
        return false;
    }
    message.type = frame[0];
    message.blockNumber = frame[1];
    message.complement = frame[2];
    const std::size_t size = payloadSize(message.type);
    message.size = static_cast<std::uint16_t>(size);
    message.kind = size != 0 ? message.type : 0;
    if (frame.size() < size + frameOverhead) {
        return false;
    }
    const auto body = frame.subspan(frameHeaderSize, size);
    std::copy(body.begin(), body.end(), message.payload.begin());
    message.receivedCrc =
        static_cast<std::uint16_t>((frame[frameHeaderSize + size] << 8) | frame[frameHeaderSize + size + 1]);
    return message.receivedCrc == Crc16(body) && message.blockNumber == ((~message.complement) & 0xFF);
}

}  // namespace tessavo
