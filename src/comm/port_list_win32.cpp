#include "comm/port_list_win32.h"

#include <windows.h>

#include <algorithm>
#include <mutex>
#include <vector>

#include "comm/port_list.h"
#include "comm/port_names.h"
#include "comm/wide_text_win32.h"

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

struct AnnouncedNames {
    std::mutex mutex;
    std::vector<std::string> names;
};

// Simulated targets stand inside the program that has them: no other one could open their ports.
AnnouncedNames& announcedNames() {
    static AnnouncedNames announced;
    return announced;
}

}  // namespace

std::wstring devicePath(std::string_view portName) {
    return wide(devicePrefix) + wide(withoutPrefix(portName, devicePrefix));
}

bool ports::isAnnounced(const std::string& portName) {
    AnnouncedNames& announced = announcedNames();
    const std::lock_guard guard(announced.mutex);
    return std::find(announced.names.begin(), announced.names.end(), portName) != announced.names.end();
}

std::vector<std::string> listPorts() {
    std::vector<std::string> names = comPortNames(deviceNames());
    {
        AnnouncedNames& announced = announcedNames();
        const std::lock_guard guard(announced.mutex);
        appendPortNames(names, announced.names);
    }
    for (const std::string& name : splitPortNames(listedNames())) {
        appendPortNames(names, {std::string(withoutPrefix(name, devicePrefix))});
    }
    return names;
}

AnnouncedPort::AnnouncedPort(const std::string& portName) : path_(portName) {
    AnnouncedNames& announced = announcedNames();
    const std::lock_guard guard(announced.mutex);
    announced.names.push_back(portName);
}

AnnouncedPort::~AnnouncedPort() {
    AnnouncedNames& announced = announcedNames();
    const std::lock_guard guard(announced.mutex);
    const auto own = std::find(announced.names.begin(), announced.names.end(), path_);
    if (own != announced.names.end()) {
        announced.names.erase(own);
    }
}

}  // namespace tessavo
