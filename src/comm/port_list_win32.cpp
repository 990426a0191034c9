#include <windows.h>

#include <vector>

#include "comm/own_ports.h"
#include "comm/port_list.h"
#include "comm/port_names.h"
#include "platform/wide_text_win32.h"

namespace tessavo {

namespace {

constexpr std::string_view devicePrefix = "\\\\.\\";
constexpr wchar_t listVariable[] = L"TESSAVO_PORTS";
constexpr std::size_t firstGuess = 1U << 14U;
constexpr std::size_t largestList = 1U << 24U;

std::wstring deviceNames() {
    std::wstring names(firstGuess, L'\0');
    while (names.size() <= largestList) {
        const DWORD length = QueryDosDeviceW(nullptr, names.data(), static_cast<DWORD>(names.size()));
        if (length != 0) {
            names.resize(length);
            return names;
        }
        if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
            break;
        }
        names.resize(names.size() * 2);
    }
    return {};
}

std::string listedNames() {
    std::wstring value(firstGuess, L'\0');
    DWORD length = GetEnvironmentVariableW(listVariable, value.data(), static_cast<DWORD>(value.size()));
    if (length > value.size()) {
        value.resize(length);
        length = GetEnvironmentVariableW(listVariable, value.data(), length);
    }
    return narrow(std::wstring_view(value).substr(0, length));
}

}  // namespace

std::wstring devicePath(std::string_view portName) {
    return wide(devicePrefix) + wide(withoutPrefix(portName, devicePrefix));
}

std::vector<std::string> listPorts() {
    std::vector<std::string> names = comPortNames(deviceNames());
    appendPortNames(names, ports::ownPorts());
    for (const std::string& name : splitPortNames(listedNames())) {
        appendPortNames(names, {std::string(withoutPrefix(name, devicePrefix))});
    }
    return names;
}

}  // namespace tessavo
