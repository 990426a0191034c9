#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessavo {

/// A number of a filter as it stands in the text, before the decimal sign of the file is known.
struct RawNumber {
    std::string
        text;  ///< without its unit and without blanks around it; empty where the name of the value has no number
    std::size_t column = 0;  ///< from 1, in characters
    double scale = 1.0;      ///< of the unit: 1000 for kHz
};

/// A filter of a line or of a row of a table, its numbers not read yet.
struct RawFilter {
    bool isOn = true;
    std::string type;            ///< as it stands there, with a slope that belongs to it: "LS 12dB"
    std::size_t typeColumn = 0;  ///< from 1, in characters
    std::size_t endColumn = 0;   ///< from 1, in characters: behind the last character
    std::optional<RawNumber> frequency;
    std::optional<RawNumber> gain;
    std::optional<RawNumber> q;
    std::optional<RawNumber> octaves;  ///< bandwidth
    std::optional<RawNumber> slope;    ///< in dB per octave
    std::string shape;                 ///< of a crossover in a table: "BU", "L-R", ...
    bool isCompound = false;           ///< a filter made of two
};

/// A word of a line, and where it begins.
struct Word {
    std::string_view text;
    std::size_t offset = 0;  ///< in bytes
};

/// The words between blanks, tabs and no-break spaces.
[[nodiscard]] std::vector<Word> wordsOf(std::string_view line);

/// Without blanks, tabs and no-break spaces at both ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// Whether two texts are the same but for the case of ASCII letters.
[[nodiscard]] bool sameWord(std::string_view one, std::string_view other);

/// Column of a byte, from 1, in characters.
[[nodiscard]] std::size_t columnOf(std::string_view line, std::size_t offset);

/// Reads a line such as "Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00".
/// \return nothing for a line of another kind; a filter without a type where nothing stands behind ON or OFF
[[nodiscard]] std::optional<RawFilter> readFilterLine(std::string_view line);

/// The rows of a table of filters, whose head names its columns.
class FilterTable {
 public:
    /// Takes the next line of a text.
    /// \return nothing for a line that is no row of a table
    [[nodiscard]] std::optional<RawFilter> take(std::string_view line);

 private:
    [[nodiscard]] bool takeHead(std::string_view line);
    [[nodiscard]] std::vector<Word> cellsOf(std::string_view line) const;

    std::vector<std::string> columns_;  ///< names in lower case; empty before a head
    char separator_ = ' ';              ///< ' ' for any number of blanks
    bool isCompound_ = false;
};

}  // namespace tessavo
