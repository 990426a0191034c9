#include "filtertext/decimal_sign.h"

#include <algorithm>
#include <array>
#include <string>

#include "base/number_text.h"

namespace tessavo {

namespace {

constexpr std::size_t groupSize = 3;
constexpr std::string_view minusSign = "\xE2\x88\x92";
constexpr std::array<std::string_view, 3> blankMarks{" ", "\xC2\xA0", "\xE2\x80\xAF"};

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

std::size_t digitsFrom(std::string_view text, std::size_t at) {
    std::size_t count = 0;
    while (at + count < text.size() && isDigit(text[at + count])) {
        ++count;
    }
    return count;
}

/// Length of a mark for thousands at a position, or 0.
std::size_t groupMark(std::string_view text, std::size_t at, char decimalSign) {
    const char other = decimalSign == '.' ? ',' : '.';
    if (text[at] == other) {
        return 1;
    }
    for (const std::string_view blank : blankMarks) {
        if (text.substr(at).starts_with(blank)) {
            return blank.size();
        }
    }
    return 0;
}

/// The number without the marks of its thousands.
/// \return nothing where such a mark stands elsewhere than before three digits
std::optional<std::string> withoutGroups(std::string_view text, char decimalSign) {
    std::size_t at = text.starts_with('-') ? 1 : 0;
    std::string digits(text.substr(0, at));
    std::size_t count = digitsFrom(text, at);
    digits.append(text.substr(at, count));
    at += count;
    while (at < text.size() && groupMark(text, at, decimalSign) != 0) {
        const std::size_t mark = groupMark(text, at, decimalSign);
        const bool fits = count >= 1 && count <= groupSize && digitsFrom(text, at + mark) == groupSize;
        if (!fits) {
            return std::nullopt;
        }
        digits.append(text.substr(at + mark, groupSize));
        at += mark + groupSize;
        count = groupSize;
    }
    return digits.append(text.substr(at));
}

}  // namespace

void DecimalSign::see(std::string_view number, bool canBeThousands) {
    const auto points = static_cast<std::size_t>(std::count(number.begin(), number.end(), '.'));
    const auto commas = static_cast<std::size_t>(std::count(number.begin(), number.end(), ','));
    const std::size_t last = number.find_last_of(".,");
    if (last == std::string_view::npos) {
        return;
    }
    char sign = number[last];
    if (points + commas > 1) {
        // Several of one kind part thousands.
        if (points == 0 || commas == 0) {
            sign = sign == '.' ? ',' : '.';
        }
    } else if (canBeThousands) {
        const std::size_t first = number.find_first_of("0123456789");
        const std::size_t before = first < last ? last - first : 0;
        const bool leadingZero = before != 0 && number[first] == '0';
        if (digitsFrom(number, last + 1) == groupSize && before >= 1 && before <= groupSize && !leadingZero) {
            return;
        }
    }
    ++(sign == '.' ? points_ : commas_);
}

char DecimalSign::decided() const {
    if (points_ == 0 && commas_ == 0) {
        return weak_;
    }
    return commas_ > points_ ? ',' : '.';
}

std::optional<double> readNumber(std::string_view text, char decimalSign, bool thousands) {
    std::string number(text);
    if (text.starts_with(minusSign)) {
        number = std::string("-").append(text.substr(minusSign.size()));
    } else if (text.starts_with('+')) {
        number.erase(0, 1);
        if (number.starts_with('-')) {
            return std::nullopt;
        }
    }
    if (thousands) {
        const std::optional<std::string> plain = withoutGroups(number, decimalSign);
        if (!plain) {
            return std::nullopt;
        }
        number = *plain;
    }
    const char other = decimalSign == '.' ? ',' : '.';
    if (number.find(other) != std::string::npos) {
        return std::nullopt;
    }
    std::replace(number.begin(), number.end(), ',', '.');
    return finiteNumber(number);
}

}  // namespace tessavo
