#include "target/software_image.h"

#include <algorithm>

#include "comm/framing.h"

namespace tessavo {

namespace {

constexpr std::size_t blockSize = payloadSize(frame_type::block1k);
constexpr std::size_t crcSize = 2;

}  // namespace

SoftwareCheck checkSoftwareImage(std::span<const std::uint8_t> blocks) {
    const std::size_t total = blocks.size();
    if (total == 0) {
        return {};
    }
    const std::size_t lastBlock = (total - 1) / blockSize * blockSize;
    // Behind the CRC there is nothing but padding; the CRC and the image may end in padding bytes too.
    std::size_t paddingStart = total;
    while (paddingStart > lastBlock && blocks[paddingStart - 1] == control_byte::padding) {
        --paddingStart;
    }
    const std::size_t shortest =
        std::max(lastBlock + 1, paddingStart >= crcSize ? paddingStart - crcSize : 0);

    std::uint16_t crc = Crc16(blocks.first(std::min(shortest, total)));
    for (std::size_t size = shortest; size + crcSize <= total; ++size) {
        const auto appended = static_cast<std::uint16_t>((blocks[size] << 8) | blocks[size + 1]);
        if (appended == crc) {
            return {size, SoftwareVerdict::right};
        }
        crc = Crc16(blocks.subspan(size, 1), crc);
    }
    const bool halfCrc = (Crc16(blocks.first(total - 1)) >> 8) == blocks[total - 1];
    return {total, halfCrc ? SoftwareVerdict::halfCrc : SoftwareVerdict::noCrc};
}

}  // namespace tessavo
