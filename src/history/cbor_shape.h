#pragma once

#include <cstdint>
#include <span>

namespace tessavo {

/// Whether bytes are one whole CBOR value that can be read without danger: its parts lie in each other at most
/// eight deep, as deep reading needs stack, and no list promises more parts than there are bytes.
[[nodiscard]] bool hasPlainShape(std::span<const std::uint8_t> bytes);

}  // namespace tessavo
