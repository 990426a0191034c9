#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "params/parameter_image.h"

namespace tessavo {

using ImageBytes = std::array<std::uint8_t, parameterImageSize>;

/// The default set and sets 1 to 5.
inline constexpr std::size_t targetSetCount = 6;

/// What the simulated target remembers.
struct TargetMemory {
    ImageBytes live{};  ///< the image that Live Mode sent last; the default set before that
    std::array<ImageBytes, targetSetCount> sets{};  ///< 0 is the default set
    std::vector<std::uint8_t> software;             ///< the software image taken last

    /// A fresh target: every set, and the live image, holds these bytes.
    [[nodiscard]] static TargetMemory holding(const ImageBytes& image) {
        TargetMemory memory;
        memory.live = image;
        memory.sets.fill(image);
        return memory;
    }
};

/// The image of the default store's first set: what a fresh target holds.
[[nodiscard]] ImageBytes factoryImage();

}  // namespace tessavo
