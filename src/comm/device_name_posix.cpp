#include "comm/device_name_posix.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tessavo {

namespace {

constexpr std::uint32_t byteEscape = 0xDC00;
constexpr std::uint32_t firstSurrogate = 0xD800;
constexpr std::uint32_t lastSurrogate = 0xDFFF;
constexpr std::uint32_t lastCharacter = 0x10FFFF;
constexpr std::uint32_t continuationBits = 6;
constexpr std::uint32_t continuationMask = 0x3F;

// One form of UTF-8, by its number of bytes.
struct Form {
    std::uint32_t lead;
    std::uint32_t leadMask;
    std::uint32_t first;  // smaller characters have a shorter form
};

constexpr std::array<Form, 4> forms{Form{0x00, 0x7F, 0}, Form{0xC0, 0x1F, 0x80}, Form{0xE0, 0x0F, 0x800},
                                    Form{0xF0, 0x07, 0x10000}};

std::uint32_t byteAt(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]);
}

bool isCharacter(std::uint32_t value) {
    return value <= lastCharacter && (value < firstSurrogate || value > lastSurrogate);
}

// Bytes of the character at the front of a text that is not empty; 0 when there is none.
std::size_t decode(std::string_view text, std::uint32_t& value) {
    for (std::size_t size = 1; size <= std::min(forms.size(), text.size()); ++size) {
        const Form& form = forms[size - 1];
        if ((byteAt(text, 0) & ~form.leadMask & 0xFF) != form.lead) {
            continue;
        }
        value = byteAt(text, 0) & form.leadMask;
        for (std::size_t at = 1; at < size; ++at) {
            if ((byteAt(text, at) & ~continuationMask) != 0x80) {
                return 0;
            }
            value = value << continuationBits | (byteAt(text, at) & continuationMask);
        }
        return value >= form.first && isCharacter(value) ? size : 0;
    }
    return 0;
}

void encode(std::uint32_t value, std::string& text) {
    std::size_t size = forms.size();
    while (size > 1 && value < forms[size - 1].first) {
        --size;
    }
    auto shift = static_cast<std::uint32_t>(size - 1) * continuationBits;
    text.push_back(static_cast<char>(forms[size - 1].lead | value >> shift));
    while (shift > 0) {
        shift -= continuationBits;
        text.push_back(static_cast<char>(0x80 | (value >> shift & continuationMask)));
    }
}

}  // namespace

std::wstring wideDeviceName(std::string_view name) {
    std::wstring wide;
    while (!name.empty()) {
        std::uint32_t value = 0;
        std::size_t size = decode(name, value);
        if (size == 0) {
            value = byteEscape + byteAt(name, 0);
            size = 1;
        }
        wide.push_back(static_cast<wchar_t>(value));
        name.remove_prefix(size);
    }
    return wide;
}

std::optional<std::string> narrowDeviceName(std::wstring_view name) {
    std::string narrow;
    for (const wchar_t character : name) {
        const auto value = std::uint32_t{static_cast<char32_t>(character)};
        if (value >= byteEscape + 0x80 && value <= byteEscape + 0xFF) {
            narrow.push_back(static_cast<char>(value - byteEscape));
        } else if (isCharacter(value)) {
            encode(value, narrow);
        } else {
            return std::nullopt;
        }
    }
    return narrow;
}

}  // namespace tessavo
