#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tessavo {

/// A line with one character for each of its code points, so that the place of a character is its column.
class LineText {
 public:
    /// What stands for a blank at which no line may be broken.
    static constexpr char noBreakBlank = '\x1F';
    /// What stands for every character that means nothing to a reader.
    static constexpr char otherCharacter = '\x7F';

    /// \param line UTF-8 without an end of line; must outlive this
    explicit LineText(std::string_view line);

    /// The line as a reader needs it: letters, digits, signs and tabs of ASCII; minus signs and dashes as '-', blanks that break
    /// no line as noBreakBlank, everything else as otherCharacter.
    [[nodiscard]] std::string_view plain() const { return characters_; }

    /// What stands there between two places of plain(), in UTF-8.
    [[nodiscard]] std::string_view original(std::size_t begin, std::size_t end) const;

    /// The same in quotation marks for a message; what is long is cut.
    [[nodiscard]] std::string quoted(std::size_t begin, std::size_t end) const;

 private:
    std::string_view source_;
    std::string characters_;
};

/// A text in UTF-8 for a message: what is longer than 40 characters is cut, with three points behind, and blanks stand in the
/// place of characters that steer a terminal.
[[nodiscard]] std::string shortened(std::string_view text);

/// The same in quotation marks.
[[nodiscard]] std::string shortQuote(std::string_view text);

/// Whether a character of LineText::plain() is a blank of any kind.
[[nodiscard]] constexpr bool isBlank(char character) {
    return character == ' ' || character == '\t' || character == LineText::noBreakBlank;
}

/// Whether it is a digit of ASCII, whatever the locale.
[[nodiscard]] constexpr bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Whether it is a letter of ASCII, whatever the locale.
[[nodiscard]] constexpr bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

/// The letters of ASCII in lower case, whatever the locale.
[[nodiscard]] std::string lowerCase(std::string_view text);

/// Whether a word of small letters begins at a place, in any case.
[[nodiscard]] bool isWordAt(std::string_view plain, std::size_t at, std::string_view word);

/// The first place from `at` on that holds no blank; `end` where all are blanks.
[[nodiscard]] std::size_t afterBlanks(std::string_view plain, std::size_t at, std::size_t end);

/// The first place from `at` on that holds a blank; `end` where none does.
[[nodiscard]] std::size_t afterWord(std::string_view plain, std::size_t at, std::size_t end);

}  // namespace tessavo
