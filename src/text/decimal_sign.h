#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tessavo {

// Numbers as programs of all countries write them: "91,9", "1.067", "1 067,5", "-3.0". What a mark in a number means is
// decided for a file as a whole.

/// What a number is for. Only a frequency can have marks or blanks for its thousands.
enum class NumberUse { frequency, other };

/// A number as it stands in a line.
struct WrittenNumber {
    std::string
        text;  ///< sign, digits, points and commas, an exponent; a blank between groups of digits is ' '
    std::size_t begin = 0;
    std::size_t end = 0;  ///< behind its last character, and behind a mark that nothing follows
};

/// The number that begins at a place of LineText::plain(), as far as it looks like one. A blank behind its sign is forgiven.
/// \param end where to stop, not above the size of the line
[[nodiscard]] std::optional<WrittenNumber> numberAt(std::string_view plain, std::size_t begin,
                                                    std::size_t end, NumberUse use);

/// The value of a number.
/// \param written WrittenNumber::text
/// \return nothing where a mark does not fit the decimal sign, or where a double cannot hold it
[[nodiscard]] std::optional<double> valueOf(std::string_view written, NumberUse use, char decimalSign);

/// Decides which mark is the decimal sign of a file.
class DecimalSignVotes {
 public:
    /// Counts what a number tells. A mark that can be no thousands is a decimal sign: of two different marks the last, a mark in
    /// anything but a frequency, and a mark before other than three digits, behind more than three or behind a zero.
    void add(std::string_view written, NumberUse use);

    /// The mark of the version in the head of the file, for files whose numbers tell nothing.
    void addHeader(char mark);

    /// '.' or ','; a point where there are as many of both.
    [[nodiscard]] char sign() const;

 private:
    std::size_t points_ = 0;
    std::size_t commas_ = 0;
    char headerMark_ = '.';
};

}  // namespace tessavo
