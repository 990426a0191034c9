#include <windows.h>

#include <shellapi.h>

#include "cli/program_arguments.h"

namespace tessavo::cli {

namespace {

std::string utf8Of(const wchar_t* text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 1) {
        return {};
    }
    std::string utf8(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), size, nullptr, nullptr);
    utf8.pop_back();  // the zero at the end
    return utf8;
}

}  // namespace

// What main() gets went through the system's code page and lost what that does not have.
std::vector<std::string> programArguments(int /*argc*/, char** /*argv*/) {
    std::vector<std::string> arguments;
    int count = 0;
    wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (wide == nullptr) {
        return arguments;
    }
    for (int i = 1; i < count; ++i) {
        arguments.push_back(utf8Of(wide[i]));
    }
    LocalFree(wide);
    return arguments;
}

}  // namespace tessavo::cli
