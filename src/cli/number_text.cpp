#include "cli/number_text.h"

#include <array>
#include <charconv>

namespace tessavo::cli {

namespace {

template <typename Number>
std::string shortest(Number value) {
    std::array<char, 64> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), result.ptr};
}

}  // namespace

std::string numberText(double value) {
    return shortest(value);
}

std::string numberText(float value) {
    return shortest(value);
}

}  // namespace tessavo::cli
