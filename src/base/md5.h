#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tessavo {

using Md5Digest = std::array<std::uint8_t, 16>;

/// MD5 message digest (RFC 1321): the state words A, B, C, D, each little-endian.
[[nodiscard]] Md5Digest md5(std::span<const std::uint8_t> message);

}  // namespace tessavo
