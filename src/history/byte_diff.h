#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tessavo {

/// The difference of two rows of bytes of the same length, at most 65535. Applied to either row it gives the
/// other one: what is kept is the exclusive or of both, where they differ.
class ByteDiff {
 public:
    /// No difference.
    ByteDiff() = default;

    /// \param one, other of the same length, at most 65535
    [[nodiscard]] static ByteDiff between(std::span<const std::uint8_t> one,
                                          std::span<const std::uint8_t> other);

    /// The difference that bytes() has given.
    /// \param length of the rows that it will be applied to
    /// \return nothing when these bytes are no difference of such rows
    [[nodiscard]] static std::optional<ByteDiff> fromBytes(std::vector<std::uint8_t> bytes,
                                                           std::size_t length);

    /// Turns one of the two rows into the other.
    /// \param row as long as the rows that were compared
    void applyTo(std::span<std::uint8_t> row) const;

    [[nodiscard]] bool empty() const { return runs_.empty(); }
    /// Runs of differing bytes, one behind the other: two bytes offset, two bytes length, both little-endian,
    /// and the exclusive or of that many bytes. Offsets rise.
    [[nodiscard]] std::span<const std::uint8_t> bytes() const { return runs_; }

 private:
    std::vector<std::uint8_t> runs_;
};

}  // namespace tessavo
