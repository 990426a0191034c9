#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "params/channels.h"
#include "params/tuning_state.h"

namespace tessavo::cli {

/// The operations of an edit script, one struct for each word, with checked arguments in the units that
/// TuningState takes.
namespace edit {

/// set N
struct SelectSet {
    std::uint32_t setIndex;
};
/// mode M
struct SelectMode {
    std::uint32_t filterMode;
};
/// select 1 3 ... | none | all
struct SelectChannels {
    std::uint8_t mask;
};
struct SetVolume {
    float volumeDb;
};
struct SetDelay {
    float delayMs;
};
struct SetGroupGain {
    RecordChannel channel;
    float groupGainDb;
};
struct SetGroupDelay {
    RecordChannel channel;
    float groupDelayMs;
};
struct SetInvertPhase {
    std::uint8_t value;
};
struct SetBandFrequency {
    std::size_t band;
    std::uint16_t frequencyHz;
};
struct SetBandType {
    std::size_t band;
    std::uint8_t type;
};
struct SetBandGainOrQ {
    std::size_t band;
    BandValue which;
    float value;
};
struct SetBandOff {
    std::size_t band;
    std::uint8_t off;
};
struct SetCrossover {
    std::size_t crossover;
    std::uint8_t kind;
    std::uint8_t order;
    std::uint8_t enabled;
};
struct SetCrossoverFrequency {
    std::size_t crossover;
    std::uint16_t frequencyHz;
};
struct SetInputBandGain {
    std::size_t inputBand;
    float gainDb;
};
struct SetInputEqOn {
    bool on;
};
/// `value` as TuningState::setLimiter() takes it.
struct SetLimiter {
    LimiterField which;
    std::int32_t value;
};
struct SetRouterSource {
    RecordChannel channel;
    std::uint8_t source;
};
struct SetName {
    std::u16string name;
};

}  // namespace edit

using Edit = std::variant<edit::SelectSet, edit::SelectMode, edit::SelectChannels, edit::SetVolume,
                          edit::SetDelay, edit::SetGroupGain, edit::SetGroupDelay, edit::SetInvertPhase,
                          edit::SetBandFrequency, edit::SetBandType, edit::SetBandGainOrQ, edit::SetBandOff,
                          edit::SetCrossover, edit::SetCrossoverFrequency, edit::SetInputBandGain,
                          edit::SetInputEqOn, edit::SetLimiter, edit::SetRouterSource, edit::SetName>;

struct ScriptLine {
    std::size_t number;  ///< from 1
    Edit edit;
};

using Script = std::vector<ScriptLine>;

struct ScriptError {
    std::size_t line;  ///< from 1
    std::string message;
};

/// Longest line of a script in bytes, without its end.
inline constexpr std::size_t longestScriptLine = 1000;

/// Reads a script: one operation a line, words separated by spaces or tabs, line ends LF or CR LF.
///
/// A word that starts with '#' begins a comment that runs to the end of the line; setName takes everything up
/// to the end of the line as the name. Numbers use a point and no unit; one outside its control's range is an
/// error that names the range. Touches nothing outside. \return the operations, or the first error
[[nodiscard]] std::variant<Script, ScriptError> parseScript(std::string_view text);

/// Indices of the sets that the script edits, and of the one that is current at its end. The first line finds
/// set 0 current.
[[nodiscard]] std::set<std::size_t> setsUsed(std::span<const ScriptLine> script);

/// How each word of a script is written, its arguments in capitals: "setBandFrequency BAND HZ".
[[nodiscard]] std::vector<std::string_view> scriptUsages();

/// Runs the operations in order, each as a final edit.
void applyScript(TuningState& tuning, std::span<const ScriptLine> script);

/// Names of the filter methods, in the order of TuningState::filterMode().
inline constexpr std::array<std::string_view, 3> filterModeNames{"BZT", "MZT", "BZT/MZT"};

}  // namespace tessavo::cli
