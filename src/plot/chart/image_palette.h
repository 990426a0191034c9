#pragma once

#include <QColor>
#include <QString>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace tessavo {

/// A table of 256 colours for images.
///
/// 33 tables are built in, each 256 red-green-blue triplets: greys, single hues from black to white, ramps of
/// even lightness steps, diverging maps with a neutral middle, and cyclic maps whose ends meet.
class CImagePalette {
 public:
    static constexpr int firstIdentifier = 10033;
    static constexpr int lastIdentifier = 10065;
    static constexpr std::size_t colorCount = 256;
    static constexpr std::size_t byteCount = 3 * colorCount;

    /// A built-in table.
    /// \param identifier firstIdentifier to lastIdentifier
    /// \return nothing for any other identifier
    static std::optional<CImagePalette> load(int identifier);
    /// Name of a built-in table; empty for others.
    [[nodiscard]] static QString nameOf(int identifier);

    /// The table of greys.
    CImagePalette();

    [[nodiscard]] int identifier() const { return identifier_; }
    [[nodiscard]] std::span<const std::uint8_t, byteCount> bytes() const { return bytes_; }
    /// A colour of the table.
    /// \param index 0 to 255; others are clamped
    [[nodiscard]] QRgb color(int index) const;
    /// The colour of a value between a minimum and a maximum. It is the middle of the table when these two
    /// are equal, and transparent when the value is not finite.
    [[nodiscard]] QRgb colorOf(double value, double minimum, double maximum) const;

 private:
    explicit CImagePalette(int identifier);

    int identifier_ = firstIdentifier;
    std::array<std::uint8_t, byteCount> bytes_{};
};

}  // namespace tessavo
