#include "text/line_text.h"

#include "base/utf8.h"
#include "text/shown_text.h"

namespace tessavo {

namespace {

/// The byte from which on `count` further code points lie.
std::size_t byteAfter(std::string_view text, std::size_t from, std::size_t count) {
    std::size_t at = from;
    while (count > 0 && at < text.size()) {
        ++at;
        while (at < text.size() && continuesCharacter(text[at])) {
            ++at;
        }
        --count;
    }
    return at;
}

char plainOf(std::string_view character) {
    if (character.size() == 1) {
        const char byte = character.front();
        return byte == '\t' || (byte >= ' ' && byte < LineText::otherCharacter) ? byte
                                                                                : LineText::otherCharacter;
    }
    // No-break space, figure space, thin space, narrow no-break space.
    if (character == "\u00A0" || character == "\u2007" || character == "\u2009" || character == "\u202F") {
        return LineText::noBreakBlank;
    }
    // The minus sign, and the dash that text processors put in its place.
    if (character == "\u2212" || character == "\u2013") {
        return '-';
    }
    return character == "\u2019" ? '\'' : LineText::otherCharacter;
}

}  // namespace

LineText::LineText(std::string_view line) : source_(line) {
    characters_.reserve(line.size());
    for (std::size_t at = 0; at < line.size();) {
        const std::size_t end = byteAfter(line, at, 1);
        characters_.push_back(plainOf(line.substr(at, end - at)));
        at = end;
    }
}

std::string_view LineText::original(std::size_t begin, std::size_t end) const {
    const std::size_t first = byteAfter(source_, 0, begin);
    const std::size_t last = byteAfter(source_, first, end - begin);
    return source_.substr(first, last - first);
}

std::string LineText::quoted(std::size_t begin, std::size_t end) const {
    return shortQuote(original(begin, end));
}

std::string shortened(std::string_view text) {
    constexpr std::size_t mostCharacters = 40;
    const std::size_t end = byteAfter(text, 0, mostCharacters);
    return shownText(text.substr(0, end)).append(end < text.size() ? "..." : "");
}

std::string shortQuote(std::string_view text) {
    return std::string("\"").append(shortened(text)).append("\"");
}

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    for (char& character : lower) {
        if (character >= 'A' && character <= 'Z') {
            character = static_cast<char>(character - 'A' + 'a');
        }
    }
    return lower;
}

bool isWordAt(std::string_view plain, std::size_t at, std::string_view word) {
    return at <= plain.size() && lowerCase(plain.substr(at, word.size())) == word;
}

std::size_t afterBlanks(std::string_view plain, std::size_t at, std::size_t end) {
    while (at < end && isBlank(plain[at])) {
        ++at;
    }
    return at;
}

std::size_t afterWord(std::string_view plain, std::size_t at, std::size_t end) {
    while (at < end && !isBlank(plain[at])) {
        ++at;
    }
    return at;
}

}  // namespace tessavo
