#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <random>
#include <string_view>

#include "comm/clip_layout.h"

namespace tessavo {

/// The clip state as the target sends it: the entries of each stage, then the amplifiers; non-zero = clipping.
using ClipBytes = std::array<std::uint8_t, clipStateSize>;

/// Reads a pattern: 34 characters 0 or 1, spaces and tabs ignored.
/// \return nothing for any other line
[[nodiscard]] std::optional<ClipBytes> parseClipPattern(std::string_view line);

/// Where the simulated target gets its clip states from.
class ClipSource {
 public:
    /// Shows one state from now on.
    void hold(const ClipBytes& state);
    /// Shows a state after all those queued before it; each is shown to one request, the last one stays.
    void enqueue(const ClipBytes& state);
    /// Shows a new random state to each request from now on.
    void randomise(std::uint32_t seed);

    /// The state for the request at hand.
    ClipBytes next();
    /// States queued and not shown yet.
    [[nodiscard]] std::size_t queued() const { return queue_.size(); }

 private:
    ClipBytes current_{};
    std::deque<ClipBytes> queue_;
    std::optional<std::mt19937> random_;
};

}  // namespace tessavo
