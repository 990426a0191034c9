#pragma once

#include <array>
#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace tessavo {

inline constexpr std::size_t setCount = 5;         ///< parameter sets in a settings file and in the target
inline constexpr std::size_t channelCount = 8;     ///< output channels
inline constexpr std::size_t bandCount = 8;        ///< parametric bands of an output channel
inline constexpr std::size_t crossoverCount = 2;   ///< crossover filters of an output channel
inline constexpr std::size_t inputBandCount = 10;  ///< graphic bands of the input side
inline constexpr std::size_t toneBandCount = 3;    ///< bass, middle and treble of the input side
/// Bands of the input side: the graphic ones are 0 to 9, bass, middle and treble are 10, 11 and 12.
inline constexpr std::size_t inputSectionCount = inputBandCount + toneBandCount;

/// Number of a channel as the pages count them, 0 to 7 for "Channel 1" to "Channel 8".
struct PagePosition {
    std::uint8_t value = 0;
    friend auto operator<=>(const PagePosition&, const PagePosition&) = default;
};

/// Index of a channel in record, image and coefficient tables, 0 to 7. Channels have another order there than
/// on the pages, so this is a type of its own and cannot be mixed up with PagePosition.
struct RecordChannel {
    std::uint8_t value = 0;
    friend auto operator<=>(const RecordChannel&, const RecordChannel&) = default;
};

/// Entry p is the record channel of the channel shown at page position p.
inline constexpr std::array<std::uint8_t, channelCount> channelMap{7, 3, 0, 4, 1, 5, 2, 6};

/// Entry p is the record channel of slider position p of the output group page.
inline constexpr std::array<std::uint8_t, channelCount> groupSliderMap{2, 4, 6, 0, 3, 5, 7, 1};

/// Entry c is the number (1 to 8) of the main view's check box that shows the flag of record channel c.
inline constexpr std::array<std::uint8_t, channelCount> channelCheckBoxMap{4, 8, 1, 5, 2, 6, 3, 7};

/// Record channel of the channel at a page position; only the three low bits of the position count.
constexpr RecordChannel recordChannelAt(PagePosition position) {
    return {channelMap[position.value & 7U]};
}

/// Page position of a record channel; only the three low bits of the channel count.
constexpr PagePosition pagePositionOf(RecordChannel channel) {
    PagePosition position;
    while (channelMap[position.value] != (channel.value & 7U)) {
        ++position.value;
    }
    return position;
}

/// Bit of `selectionMask` that stands for a page position: the highest bit is position 0.
constexpr std::uint8_t selectionBit(PagePosition position) {
    return static_cast<std::uint8_t>(0x80U >> (position.value & 7U));
}

/// The last channel in page order of those that a `selectionMask` selects, whose values and curve stand for
/// all of them; nothing where none is selected.
constexpr std::optional<RecordChannel> lastSelected(std::uint8_t selectionMask) {
    if (selectionMask == 0) {
        return std::nullopt;
    }
    // The lowest bit that is set stands for the last position.
    return recordChannelAt({static_cast<std::uint8_t>(7 - std::countr_zero(selectionMask))});
}

}  // namespace tessavo
