#include "text/shown_text.h"

#include <algorithm>
#include <cstddef>

#include "base/utf8.h"

namespace tessavo {

namespace {

constexpr std::size_t longestShown = 120;  // bytes

bool isControl(char byte) {
    return static_cast<unsigned char>(byte) < 0x20U || byte == '\x7F';
}

std::string withBlanksFor(std::string_view what, std::string_view text) {
    std::string result;
    result.reserve(text.size());
    std::size_t at = 0;
    for (std::size_t next = text.find(what); next != std::string_view::npos; next = text.find(what, at)) {
        result.append(text.substr(at, next - at)).push_back(' ');
        at = next + what.size();
    }
    result.append(text.substr(at));
    return result;
}

}  // namespace

std::string shownText(std::string_view text) {
    std::size_t end = std::min(text.size(), longestShown);
    while (end < text.size() && end > 0 && continuesCharacter(text[end])) {
        --end;
    }
    std::string shown(text.substr(0, end));
    std::ranges::replace_if(shown, isControl, ' ');
    for (char low = '\x80'; low <= '\x9F'; ++low) {
        shown = withBlanksFor(std::string("\xC2").append(1, low), shown);
    }
    shown = withBlanksFor("\xE2\x80\xA8", shown);
    shown = withBlanksFor("\xE2\x80\xA9", shown);
    if (end < text.size()) {
        shown.append("\xE2\x80\xA6");
    }
    return shown;
}

std::string inQuotes(std::string_view text) {
    return std::string("\"").append(shownText(text)).append("\"");
}

}  // namespace tessavo
