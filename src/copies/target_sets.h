#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "params/parameter_image.h"

namespace tessavo {

/// The sets that a target keeps, by their numbers on the wire and in the order in which they are read and
/// written: 1 to 5, then 0 for the default set.
inline constexpr std::array<std::uint8_t, 6> targetSetNumbers{1, 2, 3, 4, 5, 0};

/// Bytes of the payload in which a target gives one of its sets.
inline constexpr std::size_t targetReplySize = 4096;
using TargetReply = std::array<std::uint8_t, targetReplySize>;

/// "set 3" or "the default set", as it stands within a sentence.
[[nodiscard]] std::string targetSetText(std::uint8_t targetSet);
/// "Set 3" or "Default Set", as it stands in a list.
[[nodiscard]] std::string targetSetTitle(std::uint8_t targetSet);
/// "set3" or "default": how files, and options of a command, name a set.
[[nodiscard]] std::string targetSetWord(std::uint8_t targetSet);
/// The sets that a list such as "1,3,default" names, in the order of targetSetNumbers. Any thread.
/// \return nothing when a word is no set or stands there twice
[[nodiscard]] std::optional<std::vector<std::uint8_t>> targetSetsOf(std::string_view list);

/// Whether a reply holds an image with its right digest.
[[nodiscard]] bool isSound(const TargetReply& reply);
/// The image in front of a reply, byte for byte as it arrived, its first word included.
[[nodiscard]] ParameterImage imageOfReply(const TargetReply& reply);
/// Whether two images hold the same 3384 bytes.
[[nodiscard]] bool equalBytes(const ParameterImage& one, const ParameterImage& other);

}  // namespace tessavo
