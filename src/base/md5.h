#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tessavo {

/// The 16 bytes of a digest, in the order in which they are sent.
using Md5Digest = std::array<std::uint8_t, 16>;

/// MD5 message digest as RFC 1321 defines it: the state words A, B, C and D, each little-endian.
///
/// Images carry it so that the receiver finds transmission errors. It protects against accidents only: MD5
/// has been broken for long against somebody who means harm.
[[nodiscard]] Md5Digest md5(std::span<const std::uint8_t> message);

}  // namespace tessavo
