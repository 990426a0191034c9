#include "base/number_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace tessavo {

namespace {

// Room for every double in the forms below: the largest has 309 digits in front of the point.
constexpr std::size_t longestText = 340;

template <typename Number, typename... Form>
std::string written(Number value, Form... form) {
    std::array<char, longestText> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value, form...);
    return {text.data(), result.ptr};
}

std::optional<double> anyNumber(std::string_view text) {
    double value = 0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, value);
    if (error != std::errc{} || end != last) {
        return std::nullopt;
    }
    return value;
}

// A typed text as a program writes numbers: no blanks around it, no leading plus, a decimal point.
std::string withoutHabits(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const std::size_t end = text.find_last_not_of(blanks) + 1;  // 0 where there are only blanks
    std::string number(text.substr(0, end));
    number.erase(0, number.find_first_not_of(blanks));
    if (number.starts_with('+') && !number.starts_with("+-")) {
        number.erase(0, 1);
    }
    // A text with both, or with several, stays one with too many points.
    std::ranges::replace(number, ',', '.');
    return number;
}

}  // namespace

std::string shortestText(double value) {
    return written(value);
}

std::string shortestText(float value) {
    return written(value);
}

std::string plainText(double value) {
    // Adding zero takes the sign from a negative one.
    return written(value + 0.0, std::chars_format::fixed);
}

std::string shortNumber(double value, int significantDigits) {
    return written(value, std::chars_format::general, significantDigits);
}

std::string fixedText(double value, int decimals) {
    return written(value, std::chars_format::fixed, decimals);
}

std::string hexNumber(std::uint32_t value, std::size_t digits) {
    std::string text = written(value, 16);
    for (char& digit : text) {
        if (digit >= 'a') {
            digit = static_cast<char>(digit - 'a' + 'A');
        }
    }
    text.insert(0, digits - std::min(digits, text.size()), '0');
    return text;
}

std::optional<double> finiteNumber(std::string_view text) {
    const auto number = anyNumber(text);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

NumberStart numberAtStart(std::string_view text) {
    const std::string number = withoutHabits(text);
    const char* const last = number.data() + number.size();
    double value = 0;
    const auto [end, error] = std::from_chars(number.data(), last, value);
    if (error == std::errc::invalid_argument) {
        return {};
    }
    if (error == std::errc::result_out_of_range) {
        // Too large or too small: the sign of the exponent tells which, without one a digit before the point.
        const std::size_t exponent = number.find_first_of("eE");
        const bool tiny = exponent != std::string::npos
                              ? number[exponent + 1] == '-'
                              : number.find_first_of("123456789.") == number.find('.');
        value = tiny ? 0 : std::copysign(std::numeric_limits<double>::infinity(), number[0] == '-' ? -1 : 1);
    }
    return {value, true, end == last};
}

std::optional<double> typedNumber(std::string_view text) {
    return anyNumber(withoutHabits(text));
}

}  // namespace tessavo
