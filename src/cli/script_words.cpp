#include "cli/script_words.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"

namespace tessavo::cli {

namespace {

constexpr std::size_t longestQuote = 40;
constexpr std::string_view blanks = " \t";

std::vector<std::string_view> splitWords(std::string_view line) {
    std::vector<std::string_view> words;
    std::size_t start = line.find_first_not_of(blanks);
    while (start != std::string_view::npos && line[start] != '#') {
        const std::size_t end = std::min(line.find_first_of(blanks, start), line.size());
        words.push_back(line.substr(start, end - start));
        start = line.find_first_not_of(blanks, end);
    }
    return words;
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
    std::string out = "\"";
    for (const char character : text.substr(0, longestQuote)) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20 && byte < 0x7F && character != '"' && character != '\\') {
            out += character;
        } else {
            out += "\\x" + hexNumber(byte, 2);
        }
    }
    out += text.size() > longestQuote ? "...\"" : "\"";
    return out;
}

std::string rangeText(const Field& field) {
    std::string text = shortestText(field.minimum) + " to " + shortestText(field.maximum);
    if (!field.unit.empty()) {
        text += ' ';
        text += field.unit;
    }
    return text;
}

std::vector<std::string_view> scriptCodes(const Field& field) {
    std::vector<std::string_view> words;
    for (const FieldCode& code : field.codes) {
        if (!code.script.empty()) {
            words.push_back(code.script);
        }
    }
    return words;
}

ScriptWords::ScriptWords(std::string_view line) : line_(line), words_(splitWords(line)) {}

void ScriptWords::begin(std::string_view usage) {
    next_ = 1;
    usage_ = usage;
}

std::optional<std::string_view> ScriptWords::take() {
    if (error_) {
        return std::nullopt;
    }
    if (empty()) {
        fail("an argument is missing, write: " + std::string(usage_));
        return std::nullopt;
    }
    return words_[next_++];
}

std::string_view ScriptWords::rest() {
    const std::string_view last = words_[next_ - 1];
    const auto behind = static_cast<std::size_t>(last.data() + last.size() - line_.data());
    const std::size_t start = line_.find_first_not_of(blanks, behind);
    if (start == std::string_view::npos) {
        take();
        return {};
    }
    next_ = words_.size();
    return line_.substr(start, line_.find_last_not_of(blanks) - start + 1);
}

double ScriptWords::value(FieldId id) {
    const Field& field = fieldOf(id);
    if (const auto codes = scriptCodes(field); !codes.empty()) {
        return field.codes[choice(codes)].code;
    }
    const auto word = take();
    if (!word) {
        return 0;
    }
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
    const auto number = wholeNumber<std::size_t>(*word);
    if (number && *number >= lowest && *number <= highest) {
        return *number;
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
    if (!empty()) {
        fail(quoted(peek()) + " is too much, write: " + std::string(usage_));
    }
    return error_;
}

}  // namespace tessavo::cli
