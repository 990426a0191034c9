#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tessavo {

/// What the end of a received software image tells about it.
enum class SoftwareVerdict : std::uint8_t {
    right,    ///< a CRC-16 that matches stands behind the image, and padding behind it
    halfCrc,  ///< no such CRC, but the last byte reads as the first half of one that the block's end cut off
    noCrc     ///< neither: an image that fills its blocks exactly comes without a CRC; any other is damaged
};

struct SoftwareCheck {
    std::size_t size = 0;  ///< bytes of the image itself; all received bytes unless the verdict is `right`
    SoftwareVerdict verdict = SoftwareVerdict::noCrc;
};

/// Finds the length of a software image from whole received blocks of 1024 bytes.
///
/// The sender appends a CRC-16 and pads the last block with 0x1A. Of several lengths that would match, the
/// shortest in the last block is taken.
[[nodiscard]] SoftwareCheck checkSoftwareImage(std::span<const std::uint8_t> blocks);

}  // namespace tessavo
