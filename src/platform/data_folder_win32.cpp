#include <windows.h>

#include <knownfolders.h>
#include <shlobj.h>
#include <string>

#include "platform/data_folder.h"
#include "platform/wide_text_win32.h"

namespace tessavo {

namespace {

namespace fs = std::filesystem;

// Empty where the variable is not there.
std::wstring variable(const char* name) {
    const std::wstring wideName = wide(name);
    std::wstring value(GetEnvironmentVariableW(wideName.c_str(), nullptr, 0), L'\0');
    // Asked for room, the system counts the zero at the end; told the value, it does not.
    value.resize(value.empty() ? 0
                               : GetEnvironmentVariableW(wideName.c_str(), value.data(),
                                                         static_cast<DWORD>(value.size())));
    return value;
}

}  // namespace

fs::path dataFolder() {
    if (const std::wstring named = variable(dataFolderVariable); !named.empty()) {
        return named;
    }
    wchar_t* local = nullptr;
    const bool isKnown = SHGetKnownFolderPath(FOLDERID_LocalAppData, 0, nullptr, &local) == S_OK;
    const fs::path folder = isKnown ? fs::path(local) / L"Tessavo" : fs::path();
    CoTaskMemFree(local);
    return folder;
}

// The local application data is the user's alone, and a folder inherits that.
std::error_code makePrivateFolder(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    std::error_code none;
    return fs::is_directory(folder, none) ? std::error_code() : error;
}

}  // namespace tessavo
