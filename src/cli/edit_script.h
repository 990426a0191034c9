#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "params/tuning_state.h"

namespace tessavo::cli {

/// What a word of an edit script changes, and so which number stands in front of its values.
enum class WordTarget : std::uint8_t {
    currentSet,    ///< which set the following lines edit; by its number from 1
    filterMethod,  ///< how the following edits become coefficients; by a name of `filterMethodNames`
    selection,     ///< which channels the following lines edit; by their page positions from 1, none or all
    selectedChannels,    ///< a field of the selected channels, no number in front
    selectedBands,       ///< a field of one band, counted from 0, of the selected channels
    selectedCrossovers,  ///< fields of one crossover, counted from 0, of the selected channels
    oneChannel,          ///< a field of one record channel, counted from 0
    inputBand,  ///< one input band, counted from 0 through the elements of the first field, then the second
    wholeSet,   ///< a field that a set has once, no number in front
    setName,    ///< the set's name: the rest of the line
};

/// A field that a word writes.
struct WordField {
    FieldId field;
    /// The argument that chooses this field, in words that write one of several: "gain".
    std::string_view choice = {};
    /// What documents call the field's range; empty where it is told with another field's, or not at all.
    std::string_view rangeCaption = {};
};

/// One word of the edit script. Parser, help, manual and application read this row and nothing else.
struct ScriptWord {
    /// How a line is written, arguments in capitals; begins with the word: "setBandFrequency BAND HZ".
    std::string usage;
    WordTarget target;
    /// The fields that it writes, in the order of their arguments. Where they have choices, one of them is written: an
    /// argument chooses it, the next one is its value.
    std::vector<WordField> fields = {};
    /// What the word does, for documents.
    std::string_view effect;

    [[nodiscard]] std::string_view name() const { return std::string_view(usage).substr(0, usage.find(' ')); }
};

/// All words, in the order in which documents tell them.
[[nodiscard]] const std::vector<ScriptWord>& scriptWords();

/// One line of a script, its arguments checked.
struct ScriptLine {
    std::size_t number = 0;            ///< from 1
    const ScriptWord* word = nullptr;  ///< a row of scriptWords()
    /// Element of the fields that `values` name. Channels that the selection chooses are not in it.
    FieldIndex index = {};
    std::vector<FieldValue> values = {};
    /// Index of the set or of the filter method, or mask of the selection; 0 for other words.
    std::uint32_t state = 0;
    std::u16string name = {};  ///< for setName
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

/// Runs the operations in order, each as a final edit.
void applyScript(TuningState& tuning, std::span<const ScriptLine> script);

}  // namespace tessavo::cli
