#include "comm/port_device_win32.h"

#include <algorithm>
#include <array>
#include <optional>

#include "comm/own_ports.h"
#include "comm/port_names.h"
#include "platform/wide_text_win32.h"

namespace tessavo {

namespace ports {

namespace {

// Devices that bring a serial port.
constexpr wchar_t serialPorts[] = L"\\Control\\DeviceClasses\\{86e0d1e0-8089-11d0-9ce4-08003e301f73}";
constexpr std::size_t longestText = 512;
constexpr DWORD mostDevices = 1024;

class Key {
 public:
    Key(HKEY parent, const std::wstring& path) {
        if (RegOpenKeyExW(parent, path.c_str(), 0, KEY_READ, &key_) != ERROR_SUCCESS) {
            key_ = nullptr;
        }
    }
    ~Key() {
        if (key_ != nullptr) {
            RegCloseKey(key_);
        }
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    [[nodiscard]] HKEY get() const { return key_; }

    /// Nothing for a value that is missing, too long or no text.
    [[nodiscard]] std::wstring text(const wchar_t* name) const {
        std::array<wchar_t, longestText> value{};
        DWORD type = 0;
        DWORD size = sizeof value;
        if (key_ == nullptr ||
            RegQueryValueExW(key_, name, nullptr, &type, reinterpret_cast<BYTE*>(value.data()), &size) !=
                ERROR_SUCCESS ||
            type != REG_SZ) {
            return {};
        }
        // Whoever wrote it need not have ended it with a zero.
        const std::size_t length = std::min<std::size_t>(size / sizeof(wchar_t), value.size());
        return {value.data(), static_cast<std::size_t>(std::find(value.data(), value.data() + length, L'\0') -
                                                       value.data())};
    }

    [[nodiscard]] bool isSet(const wchar_t* name) const {
        DWORD value = 0;
        DWORD type = 0;
        DWORD size = sizeof value;
        return key_ != nullptr &&
               RegQueryValueExW(key_, name, nullptr, &type, reinterpret_cast<BYTE*>(&value), &size) ==
                   ERROR_SUCCESS &&
               type == REG_DWORD && value != 0;
    }

    /// Nothing behind the last one.
    [[nodiscard]] std::optional<std::wstring> subkey(DWORD index) const {
        std::array<wchar_t, longestText> name{};
        auto length = static_cast<DWORD>(name.size());
        if (key_ == nullptr || RegEnumKeyExW(key_, index, name.data(), &length, nullptr, nullptr, nullptr,
                                             nullptr) != ERROR_SUCCESS) {
            return std::nullopt;
        }
        return std::wstring(name.data(), length);
    }

 private:
    HKEY key_ = nullptr;
};

bool sameName(const std::wstring& left, std::wstring_view right) {
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

PortDevice described(const Key& device, const std::wstring& instance, std::string_view portName) {
    std::wstring name = device.text(L"FriendlyName");
    if (name.empty()) {
        name = device.text(L"DeviceDesc");
    }
    return {.description = deviceDescription(narrow(name), portName),
            .identity = usbIdentity(narrow(instance))};
}

}  // namespace

PortDevice registryDevice(HKEY root, const std::wstring& controlSet, std::string_view portName) {
    const std::wstring wanted = wide(portName);
    const Key classes(root, controlSet + serialPorts);
    PortDevice found;
    for (DWORD index = 0; index < mostDevices; ++index) {
        const auto name = classes.subkey(index);
        if (!name) {
            break;
        }
        const std::wstring instance = Key(classes.get(), *name).text(L"DeviceInstance");
        const Key device(root, controlSet + L"\\Enum\\" + instance);
        if (instance.empty() || device.get() == nullptr ||
            !sameName(Key(device.get(), L"Device Parameters").text(L"PortName"), wanted)) {
            continue;
        }
        found = described(device, instance, portName);
        if (Key(classes.get(), *name + L"\\#\\Control").isSet(L"Linked")) {
            break;
        }
    }
    return found;
}

}  // namespace ports

namespace {

constexpr std::string_view devicePrefix = "\\\\.\\";
constexpr wchar_t controlSet[] = L"SYSTEM\\CurrentControlSet";

}  // namespace

bool portIsThere(const std::string& portName) {
    const std::string name(withoutPrefix(portName, devicePrefix));
    if (name.empty()) {
        return false;
    }
    if (ports::isOwnPort(name)) {
        return true;
    }
    std::array<wchar_t, MAX_PATH> target{};
    const DWORD length =
        QueryDosDeviceW(wide(name).c_str(), target.data(), static_cast<DWORD>(target.size()));
    // Where its name leads to does not matter; that it is longer than this says that it is there.
    return length != 0 || GetLastError() == ERROR_INSUFFICIENT_BUFFER;
}

PortDevice portDevice(const std::string& portName) {
    const std::string name(withoutPrefix(portName, devicePrefix));
    if (ports::isOwnPort(name)) {
        return {.description = std::string(simulatedTargetText), .identity = {}};
    }
    return ports::registryDevice(HKEY_LOCAL_MACHINE, controlSet, name);
}

}  // namespace tessavo
