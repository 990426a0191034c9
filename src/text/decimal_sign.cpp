#include "text/decimal_sign.h"

#include "base/number_text.h"
#include "text/line_text.h"

namespace tessavo {

namespace {

constexpr std::size_t groupDigits = 3;

bool isMark(char character) {
    return character == '.' || character == ',';
}

bool isSign(char character) {
    return character == '+' || character == '-';
}

bool isGroupBlank(char character) {
    return isBlank(character) || character == '\'';
}

std::size_t digitsAt(std::string_view text, std::size_t at, std::size_t end) {
    std::size_t count = 0;
    while (at + count < end && isDigit(text[at + count])) {
        ++count;
    }
    return count;
}

std::size_t digitsAt(std::string_view text, std::size_t at) {
    return digitsAt(text, at, text.size());
}

/// Bytes of the exponent at a place, 0 where none is.
std::size_t exponentLength(std::string_view text, std::size_t at, std::size_t end) {
    if (at >= end || (text[at] != 'e' && text[at] != 'E')) {
        return 0;
    }
    const std::size_t sign = at + 1 < end && isSign(text[at + 1]) ? 1 : 0;
    const std::size_t digits = digitsAt(text, at + 1 + sign, end);
    return digits == 0 ? 0 : 1 + sign + digits;
}

/// The digits in front of the decimal sign without what parts their groups, and where they end.
/// \return nothing where the groups are none
std::optional<std::size_t> addWholePart(std::string_view written, std::size_t at, char thousandsMark,
                                        std::string& number) {
    const std::size_t first = digitsAt(written, at);
    number.append(written.substr(at, first));
    std::size_t next = at + first;
    const char parting = next < written.size() ? written[next] : '\0';
    if (parting != ' ' && parting != thousandsMark) {
        return next;
    }
    if (first == 0 || first > groupDigits || written[at] == '0') {
        return std::nullopt;
    }
    while (next < written.size() && written[next] == parting) {
        if (digitsAt(written, next + 1) != groupDigits) {
            return std::nullopt;
        }
        number.append(written.substr(next + 1, groupDigits));
        next += 1 + groupDigits;
    }
    return next;
}

}  // namespace

std::optional<WrittenNumber> numberAt(std::string_view plain, std::size_t begin, std::size_t end,
                                      NumberUse use) {
    WrittenNumber number{{}, begin, begin};
    std::size_t at = begin;
    if (at < end && isSign(plain[at])) {
        number.text.push_back(plain[at]);
        at = afterBlanks(plain, at + 1, end);
    }
    const std::size_t mark = at < end && isMark(plain[at]) ? 1 : 0;
    if (digitsAt(plain, at + mark, end) == 0) {
        return std::nullopt;
    }
    while (at < end) {
        const std::size_t digits = digitsAt(plain, at, end);
        number.text.append(plain.substr(at, digits));
        at += digits;
        const std::size_t following = at < end ? digitsAt(plain, at + 1, end) : 0;
        if (at < end && isMark(plain[at])) {
            if (following == 0) {
                ++at;  // It ends a list or a sentence, and is not read.
                break;
            }
            number.text.push_back(plain[at]);
        } else if (use == NumberUse::frequency && at < end && isGroupBlank(plain[at]) &&
                   following == groupDigits) {
            number.text.push_back(' ');
        } else {
            break;
        }
        ++at;
    }
    const std::size_t exponent = exponentLength(plain, at, end);
    number.text.append(plain.substr(at, exponent));
    number.end = at + exponent;
    return number;
}

std::optional<double> valueOf(std::string_view written, NumberUse use, char decimalSign) {
    std::string number;
    std::size_t at = 0;
    if (!written.empty() && isSign(written.front())) {
        number.append(written.front() == '-' ? "-" : "");
        at = 1;
    }
    if (use == NumberUse::frequency) {
        const auto behind = addWholePart(written, at, decimalSign == '.' ? ',' : '.', number);
        if (!behind) {
            return std::nullopt;
        }
        at = *behind;
    } else {
        const std::size_t digits = digitsAt(written, at);
        number.append(written.substr(at, digits));
        at += digits;
    }
    if (at < written.size() && written[at] == decimalSign) {
        const std::size_t digits = digitsAt(written, at + 1);
        number.push_back('.');
        number.append(written.substr(at + 1, digits));
        at += 1 + digits;
    }
    number.append(written.substr(at, exponentLength(written, at, written.size())));
    at += exponentLength(written, at, written.size());
    return at == written.size() ? finiteNumber(number) : std::nullopt;
}

void DecimalSignVotes::add(std::string_view written, NumberUse use) {
    const std::string_view marks = ".,";
    const std::size_t last = written.find_last_of(marks);
    if (last == std::string_view::npos) {
        return;
    }
    const std::size_t first = written.find_first_of(marks);
    const bool areDifferent = written.find(written[last] == '.' ? ',' : '.') != std::string_view::npos;
    bool isDecimal = areDifferent;
    if (!areDifferent && first == last) {
        const std::size_t begin = !written.empty() && isSign(written.front()) ? 1 : 0;
        isDecimal = use != NumberUse::frequency || digitsAt(written, last + 1) != groupDigits ||
                    digitsAt(written, begin) > groupDigits || first == begin || written[begin] == '0';
    }
    if (isDecimal) {
        ++(written[last] == '.' ? points_ : commas_);
    }
}

void DecimalSignVotes::addHeader(char mark) {
    headerMark_ = mark;
}

char DecimalSignVotes::sign() const {
    if (points_ == 0 && commas_ == 0) {
        return headerMark_;
    }
    return commas_ > points_ ? ',' : '.';
}

}  // namespace tessavo
