#include <windows.h>

#include <shlobj.h>
#include <string>

#include "platform/desktop.h"

namespace tessavo {

bool hasDisplay() {
    return true;
}

namespace {

const std::wstring fileClass = L"Tessavo.Settings";
const std::wstring classes = L"Software\\Classes\\";
constexpr std::size_t longestPath = 32768;

std::wstring programPath() {
    std::wstring path(longestPath, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

// A key's unnamed value; empty when there is none.
std::wstring valueOf(HKEY root, const std::wstring& key) {
    std::wstring value(longestPath, L'\0');
    DWORD size = static_cast<DWORD>(value.size() * sizeof(wchar_t));
    if (RegGetValueW(root, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, value.data(), &size) !=
        ERROR_SUCCESS) {
        return {};
    }
    // The count includes the zero at the end.
    value.resize(size / sizeof(wchar_t) - 1);
    return value;
}

void setValue(const std::wstring& key, const std::wstring& value) {
    RegSetKeyValueW(HKEY_CURRENT_USER, (classes + key).c_str(), nullptr, REG_SZ, value.c_str(),
                    static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

}  // namespace

void registerFileType() {
    const std::wstring program = programPath();
    const std::wstring command = L"\"" + program + L"\" \"%1\"";
    const std::wstring commandKey = fileClass + L"\\shell\\open\\command";
    // What holds for this user: the user's own entries, or those of the machine.
    const std::wstring opener = valueOf(HKEY_CLASSES_ROOT, L".eqs");
    if (program.empty() || (!opener.empty() && opener != fileClass) ||
        (opener == fileClass && valueOf(HKEY_CLASSES_ROOT, commandKey) == command)) {
        return;
    }
    setValue(fileClass, L"Tessavo settings");
    setValue(fileClass + L"\\DefaultIcon", program + L",0");
    setValue(commandKey, command);
    setValue(L".eqs", fileClass);
    SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
}

namespace {

bool isToggled(int key) {
    return (static_cast<unsigned short>(GetKeyState(key)) & 1U) != 0;
}

}  // namespace

KeyStates readKeyStates() {
    return {isToggled(VK_CAPITAL), isToggled(VK_NUMLOCK), isToggled(VK_SCROLL)};
}

}  // namespace tessavo
