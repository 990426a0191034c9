#include "params/set_text.h"

#include <algorithm>

namespace tessavo {

namespace {

constexpr char32_t replacement = 0xFFFD;

constexpr bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void append(std::u16string& out, char32_t code) {
    if (code < 0x10000) {
        out.push_back(static_cast<char16_t>(code));
        return;
    }
    const char32_t rest = code - 0x10000;
    out.push_back(static_cast<char16_t>(0xD800 + (rest >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (rest & 0x3FF)));
}

void append(std::string& out, char32_t code) {
    const auto tail = [code](unsigned shift) { return static_cast<char>(0x80 | ((code >> shift) & 0x3F)); };
    if (code < 0x80) {
        out.push_back(static_cast<char>(code));
    } else if (code < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (code >> 6)));
        out.push_back(tail(0));
    } else if (code < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (code >> 12)));
        out.push_back(tail(6));
        out.push_back(tail(0));
    } else {
        out.push_back(static_cast<char>(0xF0 | (code >> 18)));
        out.push_back(tail(12));
        out.push_back(tail(6));
        out.push_back(tail(0));
    }
}

struct Decoded {
    char32_t code = replacement;
    std::size_t length = 1;
};

Decoded decodeUtf8(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(0);
    if (first < 0x80) {
        return {first, 1};
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4) {
        return {};
    }
    char32_t code = first & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (i >= text.size() || (byte(i) & 0xC0U) != 0x80) {
            return {replacement, i};
        }
        code = (code << 6) | (byte(i) & 0x3FU);
    }
    const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    if (overlong || code > 0x10FFFF || isHighSurrogate(code) || isLowSurrogate(code)) {
        return {replacement, length};
    }
    return {code, length};
}

// Paths are UTF-8 on one system and UTF-16 on the other.
[[maybe_unused]] std::string fromNative(std::string_view path) {
    return utf8FromUtf16(utf16FromUtf8(path));
}
[[maybe_unused]] std::string fromNative(std::wstring_view path) {
    return utf8FromUtf16(std::u16string(path.begin(), path.end()));
}

}  // namespace

void writeSetText(SetText& field, std::u16string_view text, std::size_t limit) {
    std::size_t length = std::min({text.size(), limit, field.size() - 1});
    if (length < text.size() && length > 0 && isHighSurrogate(text[length - 1]) &&
        isLowSurrogate(text[length])) {
        --length;
    }
    field.fill(u'\0');
    std::copy_n(text.begin(), length, field.begin());
}

std::u16string readSetText(const SetText& field) {
    return {field.begin(), std::find(field.begin(), field.end(), u'\0')};
}

std::u16string utf16FromUtf8(std::string_view text) {
    std::u16string out;
    while (!text.empty()) {
        const Decoded decoded = decodeUtf8(text);
        append(out, decoded.code);
        text.remove_prefix(decoded.length);
    }
    return out;
}

std::string utf8FromUtf16(std::u16string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t code = text[i];
        if (isHighSurrogate(code) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
            code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00U);
        } else if (isHighSurrogate(code) || isLowSurrogate(code)) {
            code = replacement;
        }
        append(out, code);
    }
    return out;
}

std::string utf8FromPath(const std::filesystem::path& path) {
    return fromNative(path.native());
}

}  // namespace tessavo
