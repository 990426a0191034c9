#include "filtertext/coefficient_list.h"

#include <utility>

#include "text/decimal_sign.h"

namespace tessavo {

namespace {

/// Whether a line is "biquad", a number or none, and nothing more or numbers.
bool isHead(std::string_view plain, std::size_t begin) {
    constexpr std::string_view word = "biquad";
    if (!isWordAt(plain, begin, word)) {
        return false;
    }
    for (std::size_t at = begin + word.size(); at < plain.size(); ++at) {
        if (isLetter(plain[at])) {
            return false;
        }
    }
    return true;
}

bool isFirstCoefficient(std::string_view plain, std::size_t begin) {
    if (!isWordAt(plain, begin, "b0")) {
        return false;
    }
    const std::size_t at = afterBlanks(plain, begin + 2, plain.size());
    if (at >= plain.size() || (plain[at] != '=' && plain[at] != ':')) {
        return false;
    }
    const std::size_t number = afterBlanks(plain, at + 1, plain.size());
    return numberAt(plain, number, plain.size(), NumberUse::other).has_value();
}

/// Whether a line is five or six numbers with a point and nothing more.
bool isRowOfCoefficients(std::string_view plain, std::size_t begin) {
    constexpr int fewest = 5;
    constexpr int most = 6;
    int numbers = 0;
    bool hasMark = false;
    std::size_t at = begin;
    while (at < plain.size() && numbers <= most) {
        if (isBlank(plain[at]) || plain[at] == ',' || plain[at] == ';' || plain[at] == '{' ||
            plain[at] == '}') {
            ++at;
            continue;
        }
        const std::size_t end = plain.find_first_of(" \t,;}", at);
        const auto number =
            numberAt(plain, at, end == std::string_view::npos ? plain.size() : end, NumberUse::other);
        if (!number) {
            return false;
        }
        hasMark = hasMark || number->text.find('.') != std::string::npos;
        at = number->end;
        at += at < plain.size() && plain[at] == 'f' ? 1U : 0U;
        if (at < plain.size() && !isBlank(plain[at]) &&
            std::string_view(",;}").find(plain[at]) == std::string_view::npos) {
            return false;
        }
        ++numbers;
    }
    return hasMark && numbers >= fewest && numbers <= most;
}

}  // namespace

bool CoefficientList::read(const LineText& line) {
    const std::string_view plain = line.plain();
    const std::size_t begin = afterBlanks(plain, 0, plain.size());
    if (isHead(plain, begin)) {
        isOpen_ = true;
        return true;
    }
    if (isFirstCoefficient(plain, begin)) {
        const bool begins = !isOpen_;
        isOpen_ = false;
        return begins;
    }
    return isRowOfCoefficients(plain, begin) && !std::exchange(isOpen_, false);
}

}  // namespace tessavo
