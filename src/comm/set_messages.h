#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "base/md5.h"
#include "params/parameter_image.h"

namespace tessavo {

// The messages that bring an image into the target, for all that send one. Any thread.

inline constexpr std::size_t liveMessageSize = parameterImageSize + sizeof(Md5Digest);
inline constexpr std::size_t saveMessageSize = 2 + sizeof(Md5Digest);

/// The live image: its bytes as they stand and their digest. Sent in blocks of 4096 bytes.
[[nodiscard]] std::array<std::uint8_t, liveMessageSize> liveMessage(const ParameterImage& image);

/// The command to save the live image as a set, with that image's digest. Sent in blocks of 128 bytes.
/// \param targetSet 1 to 5, or 0 for the default set
[[nodiscard]] std::array<std::uint8_t, saveMessageSize> saveMessage(std::uint8_t targetSet,
                                                                    const ParameterImage& image);

/// Whether the reply to command_code::confirmLiveSet confirms the image.
[[nodiscard]] bool isConfirmation(std::span<const std::uint8_t> reply);

}  // namespace tessavo
