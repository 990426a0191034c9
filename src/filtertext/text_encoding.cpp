#include <cstddef>
#include <cstdint>

#include "filtertext/readers.h"

namespace tessavo {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// Length of the UTF-8 character that begins at a position, or 0 where none does.
std::size_t characterLength(std::string_view bytes, std::size_t at) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(bytes[k]); };
    const unsigned char first = byte(at);
    if (first < 0x80) {
        return 1;
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || at + length > bytes.size()) {
        return 0;
    }
    std::uint32_t code = first & (0xFFU >> (length + 1));
    for (std::size_t k = 1; k < length; ++k) {
        if ((byte(at + k) & 0xC0U) != 0x80U) {
            return 0;
        }
        code = code << 6U | (byte(at + k) & 0x3FU);
    }
    const std::uint32_t least = length == 4 ? 0x10000 : length == 3 ? 0x800 : 0x80;
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < least || code > 0x10FFFF || surrogate ? 0 : length;
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

}  // namespace

std::string utf8Of(std::string_view bytes) {
    if (bytes.starts_with(byteOrderMark)) {
        bytes.remove_prefix(byteOrderMark.size());
    }
    if (isUtf8(bytes)) {
        return std::string(bytes);
    }
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (code < 0x80) {
            text.push_back(byte);
        } else {
            text.push_back(static_cast<char>(0xC0U | code >> 6U));
            text.push_back(static_cast<char>(0x80U | (code & 0x3FU)));
        }
    }
    return text;
}

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("\r\n");
        lines.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            break;
        }
        // CR CR LF is what comes of CR LF that was written as a text once more.
        std::size_t next = end + 1;
        for (const std::string_view ending : {"\r\r\n", "\r\n"}) {
            if (text.substr(end).starts_with(ending)) {
                next = end + ending.size();
                break;
            }
        }
        text.remove_prefix(next);
    }
    return lines;
}

bool looksLikeYaml(std::string_view text) {
    for (const std::string_view line : linesOf(text)) {
        for (const std::string_view key : {"filters:", "pipeline:", "devices:"}) {
            const bool ends =
                line.size() == key.size() ||
                (line.size() > key.size() && (line[key.size()] == ' ' || line[key.size()] == '\t'));
            if (line.starts_with(key) && ends) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace tessavo
