#include "cli/script_words.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "cli/number_text.h"

namespace tessavo::cli {

namespace {

constexpr std::size_t longestQuote = 40;

// The whole word as a finite number.
std::optional<double> finiteNumber(std::string_view word) {
    double number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error != std::errc{} || end != word.data() + word.size() || !std::isfinite(number)) {
        return std::nullopt;
    }
    return number;
}

// Whether the field can hold the value: whole numbers, and tenths where tenths are stored.
bool isStorable(const Field& field, double shown) {
    if (field.type == FieldType::f32) {
        return true;
    }
    const double stored = shown * field.storedPerShown;
    return std::abs(stored - std::nearbyint(stored)) < 1e-9;
}

}  // namespace

std::string quoted(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string out = "\"";
    for (const char character : text.substr(0, longestQuote)) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20 && byte < 0x7F && character != '"' && character != '\\') {
            out += character;
        } else {
            out += "\\x";
            out += digits[byte >> 4U];
            out += digits[byte & 0xFU];
        }
    }
    out += text.size() > longestQuote ? "...\"" : "\"";
    return out;
}

std::string rangeText(const Field& field) {
    std::string text = numberText(field.minimum) + " to " + numberText(field.maximum);
    if (!field.unit.empty()) {
        text += ' ';
        text += field.unit;
    }
    return text;
}

std::optional<std::string_view> ScriptWords::take() {
    if (error_) {
        return std::nullopt;
    }
    if (words_.empty()) {
        fail("an argument is missing, write: " + std::string(usage_));
        return std::nullopt;
    }
    const std::string_view word = words_.front();
    words_ = words_.subspan(1);
    return word;
}

double ScriptWords::value(FieldId id) {
    const auto word = take();
    if (!word) {
        return 0;
    }
    const Field& field = fieldOf(id);
    const auto shown = finiteNumber(*word);
    if (!shown) {
        fail(quoted(*word) + " is not a number, expected " + rangeText(field));
        return 0;
    }
    if (*shown < field.minimum || *shown > field.maximum) {
        fail(quoted(*word) + " is out of range, expected " + rangeText(field));
        return 0;
    }
    if (!isStorable(field, *shown)) {
        fail(quoted(*word) +
             (field.storedPerShown > 1 ? " has more than one decimal" : " is not a whole number") +
             ", expected " + rangeText(field));
        return 0;
    }
    return storedFromShown(field, *shown);
}

std::size_t ScriptWords::number(std::string_view what, std::size_t lowest, std::size_t highest) {
    const auto word = take();
    if (!word) {
        return lowest;
    }
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(word->data(), word->data() + word->size(), number);
    if (error == std::errc{} && end == word->data() + word->size() && number >= lowest && number <= highest) {
        return number;
    }
    fail(quoted(*word) + " is no " + std::string(what) + ", expected a whole number from " +
         std::to_string(lowest) + " to " + std::to_string(highest));
    return lowest;
}

std::size_t ScriptWords::choice(std::span<const std::string_view> choices) {
    const auto word = take();
    if (!word) {
        return 0;
    }
    const auto found = std::find(choices.begin(), choices.end(), *word);
    if (found != choices.end()) {
        return static_cast<std::size_t>(found - choices.begin());
    }
    std::string message = quoted(*word) + " is not known here, expected";
    for (std::size_t i = 0; i < choices.size(); ++i) {
        message += i == 0 ? " " : i + 1 == choices.size() ? " or " : ", ";
        message += choices[i];
    }
    fail(std::move(message));
    return 0;
}

void ScriptWords::fail(std::string message) {
    if (!error_) {
        error_ = std::move(message);
    }
}

std::optional<std::string> ScriptWords::error() {
    if (!words_.empty()) {
        fail(quoted(words_.front()) + " is too much, write: " + std::string(usage_));
    }
    return error_;
}

}  // namespace tessavo::cli
