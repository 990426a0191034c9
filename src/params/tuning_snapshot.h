#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

#include "dsp/biquad_words.h"
#include "params/channels.h"
#include "params/file_notes.h"
#include "params/parameter_image.h"
#include "params/records.h"

namespace tessavo {

/// What one set remembers of the image that it was received with.
struct ReceivedSnapshot {
    std::uint32_t isPresent = 0;  ///< 0 where the set remembers none; the rest is zero then
    ParameterImage image{};
    ParameterSet record{};  ///< as the conversion left it
};

/// Everything that an edit, a loaded file or a received set may change in a TuningState, as plain bytes without
/// gaps: two states are the same exactly when these bytes are. The filter method, the selected channels and the
/// flags of Live Mode are no part of it.
struct TuningSnapshot {
    ParameterStore store{};
    ParameterImage image{};
    std::array<ReceivedSnapshot, setCount> received{};  ///< by set
    // Coefficients as they were computed last; they may stem from another filter method than the current one.
    std::array<std::array<BiquadWords, bandCount>, channelCount> bandWords{};
    std::array<std::array<BiquadWords, crossoverCount>, channelCount> crossoverWords{};
    std::array<BiquadWords, inputSectionCount> inputWords{};
    std::uint32_t currentSet = 0;  ///< 0 to 4
    FileNotes notes{};
};

inline constexpr std::size_t tuningSnapshotSize = 49980;  ///< in bytes

static_assert(std::is_trivially_copyable_v<TuningSnapshot>);
static_assert(sizeof(TuningSnapshot) == tuningSnapshotSize &&
                  sizeof(ReceivedSnapshot) == 4 + parameterImageSize + parameterSetSize &&
                  tuningSnapshotSize ==
                      parameterStoreSize + parameterImageSize + setCount * sizeof(ReceivedSnapshot) +
                          sizeof(BiquadWords) *
                              (channelCount * (bandCount + crossoverCount) + inputSectionCount) +
                          sizeof(std::uint32_t) + fileNotesSize,
              "without gaps, so that states can be compared byte by byte");

/// The snapshot's bytes.
[[nodiscard]] inline std::span<const std::uint8_t, tuningSnapshotSize> bytesOf(
    const TuningSnapshot& snapshot) {
    return std::span<const std::uint8_t, tuningSnapshotSize>(reinterpret_cast<const std::uint8_t*>(&snapshot),
                                                             tuningSnapshotSize);
}
[[nodiscard]] inline std::span<std::uint8_t, tuningSnapshotSize> bytesOf(TuningSnapshot& snapshot) {
    return std::span<std::uint8_t, tuningSnapshotSize>(reinterpret_cast<std::uint8_t*>(&snapshot),
                                                       tuningSnapshotSize);
}

}  // namespace tessavo
