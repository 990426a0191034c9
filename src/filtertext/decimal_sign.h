#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace tessavo {

/// Decides the decimal sign of a file from the numbers in it.
///
/// A mark that cannot stand for thousands speaks for itself: one that other than three digits follow, one in a value
/// that never reaches thousands, the last of two different ones. What occurs more often is the sign; a point where both
/// do equally often.
class DecimalSign {
 public:
    /// \param canBeThousands whether the number is a frequency
    void see(std::string_view number, bool canBeThousands);
    /// A number that tells the sign only where no other does, as that of a program's version.
    void seeWeak(char mark) { weak_ = mark; }
    /// '.' or ','.
    [[nodiscard]] char decided() const;

 private:
    std::size_t points_ = 0;
    std::size_t commas_ = 0;
    char weak_ = '.';
};

/// Reads a number of a file.
/// \param decimalSign '.' or ','
/// \param thousands whether the other mark, blanks and no-break spaces before exactly three digits stand for thousands
/// \return nothing where the text is anything else than one finite number
[[nodiscard]] std::optional<double> readNumber(std::string_view text, char decimalSign, bool thousands);

}  // namespace tessavo
