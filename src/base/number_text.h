#pragma once

#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace tessavo {

// The one place where numbers become text and text becomes numbers. None of it follows the locale of the
// process: the decimal sign is a point and digits are never grouped.

/// The shortest text that reads back as the same number: "-6", "0.1", "1e+30", "nan", "inf".
[[nodiscard]] std::string shortestText(double value);
[[nodiscard]] std::string shortestText(float value);

/// The same without an exponent, and zero without a sign: "-6", "0.00000025". A large number has all its digits in front of
/// the point.
[[nodiscard]] std::string plainText(double value);

/// What printf() writes for "%.<significantDigits>g" in the C locale.
/// \param significantDigits 1 to 17; no double has more that mean something
[[nodiscard]] std::string shortNumber(double value, int significantDigits = 6);

/// What printf() writes for "%.<decimals>f" in the C locale.
/// \param decimals 0 to 17
[[nodiscard]] std::string fixedText(double value, int decimals);

/// Upper-case hexadecimal digits without a prefix: "00010006".
/// \param digits least number of digits; zeros fill the front
[[nodiscard]] std::string hexNumber(std::uint32_t value, std::size_t digits);

/// The whole text as a finite number. Blanks, a leading plus, hexadecimal digits, "inf" and "nan" are
/// refused, and so is a number that a double cannot hold.
[[nodiscard]] std::optional<double> finiteNumber(std::string_view text);

/// The whole text as an integer. Blanks, a leading plus, a prefix such as "0x" and a number that the type
/// cannot hold are refused.
/// \param base 2 to 36
template <std::integral Integer>
[[nodiscard]] std::optional<Integer> wholeNumber(std::string_view text, int base = 10) {
    Integer value = 0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, value, base);
    if (error != std::errc{} || end != last) {
        return std::nullopt;
    }
    return value;
}

/// The same for what a person wrote in a command: "0x" or "0X" in front makes the number hexadecimal.
template <std::unsigned_integral Integer>
[[nodiscard]] std::optional<Integer> prefixedNumber(std::string_view text) {
    if (text.starts_with("0x") || text.starts_with("0X")) {
        return wholeNumber<Integer>(text.substr(2), 16);
    }
    return wholeNumber<Integer>(text);
}

/// What a person typed into a field: spaces and tabs around it, a leading plus and a decimal comma are
/// accepted.
/// \return nothing unless the whole text is one number that a double holds; "inf" and "nan" are numbers here
[[nodiscard]] std::optional<double> typedNumber(std::string_view text);

/// What a text begins with.
struct NumberStart {
    double value = 0;      ///< 0 without a number
    bool isThere = false;  ///< the text begins with a number
    bool isWhole = false;  ///< and is nothing else
};

/// The number at the start of what a person typed, by the same rules. One that a double cannot hold is 0 or infinite.
[[nodiscard]] NumberStart numberAtStart(std::string_view text);

}  // namespace tessavo
