#include "text/text_encoding.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/utf8.h"

namespace tessavo {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool continues(std::string_view bytes, std::size_t at) {
    return at < bytes.size() && continuesCharacter(bytes[at]);
}

/// How many bytes the character at a place has; 0 where there is no character of UTF-8.
std::size_t characterLength(std::string_view bytes, std::size_t at) {
    const auto first = static_cast<std::uint8_t>(bytes[at]);
    if (first < 0x80U) {
        return 1;
    }
    if (first < 0xC2U || first > 0xF4U || !continues(bytes, at + 1)) {
        return 0;
    }
    if (first < 0xE0U) {
        return 2;
    }
    const auto second = static_cast<std::uint8_t>(bytes[at + 1]);
    if (!continues(bytes, at + 2)) {
        return 0;
    }
    if (first < 0xF0U) {
        // Neither longer than needed nor half of a pair of UTF-16.
        return (first == 0xE0U && second < 0xA0U) || (first == 0xEDU && second > 0x9FU) ? 0 : 3;
    }
    const bool isOutside = (first == 0xF0U && second < 0x90U) || (first == 0xF4U && second > 0x8FU);
    return isOutside || !continues(bytes, at + 3) ? 0 : 4;
}

bool isUtf8(std::string_view bytes) {
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t length = characterLength(bytes, at);
        if (length == 0) {
            return false;
        }
        at += length;
    }
    return true;
}

/// Bytes of the end of a line at a place, 0 where none is.
std::size_t endLength(std::string_view text, std::size_t at) {
    const std::string_view rest = text.substr(at, 3);
    if (rest == "\r\r\n") {
        return 3;
    }
    if (rest.starts_with("\r\n")) {
        return 2;
    }
    return rest.starts_with('\r') || rest.starts_with('\n') ? 1 : 0;
}

}  // namespace

std::string utf8Of(std::string_view bytes) {
    if (isUtf8(bytes)) {
        return std::string(bytes.starts_with(byteOrderMark) ? bytes.substr(byteOrderMark.size()) : bytes);
    }
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (const char byte : bytes) {
        const auto code = static_cast<std::uint8_t>(byte);
        if (code < 0x80U) {
            text.push_back(byte);
        } else {
            text.push_back(static_cast<char>(0xC0U | (code >> 6U)));
            text.push_back(static_cast<char>(0x80U | (code & 0x3FU)));
        }
    }
    return text;
}

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t end = std::min(text.find_first_of("\r\n", begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end < text.size() ? end + endLength(text, end) : end;
    }
    return lines;
}

}  // namespace tessavo
