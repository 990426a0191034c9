#include "platform/wide_text_win32.h"

#include <windows.h>

namespace tessavo {

std::wstring wide(std::string_view text) {
    const auto size = static_cast<int>(text.size());
    std::wstring result(text.size(), L'\0');
    const int length =
        size == 0 ? 0 : MultiByteToWideChar(CP_UTF8, 0, text.data(), size, result.data(), size);
    result.resize(static_cast<std::size_t>(length));
    return result;
}

std::string narrow(std::wstring_view text) {
    const auto size = static_cast<int>(text.size());
    if (size == 0) {
        return {};
    }
    const int needed = WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(needed), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, result.data(), needed, nullptr, nullptr);
    return result;
}

}  // namespace tessavo
