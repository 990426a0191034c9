#include "comm/port_names.h"

#include <algorithm>

namespace tessavo {

namespace {

constexpr std::string_view separators = ", \t\r\n";

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

// Cuts the digits off the front, without leading zeros: numbers of any length compare.
std::string_view takeNumber(std::string_view& text) {
    const auto end =
        static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isDigit) - text.begin());
    std::string_view number = text.substr(0, end);
    text.remove_prefix(end);
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    return number;
}

}  // namespace

bool portNameLess(std::string_view left, std::string_view right) {
    std::string_view restLeft = left;
    std::string_view restRight = right;
    while (!restLeft.empty() && !restRight.empty()) {
        if (isDigit(restLeft.front()) && isDigit(restRight.front())) {
            const std::string_view numberLeft = takeNumber(restLeft);
            const std::string_view numberRight = takeNumber(restRight);
            if (numberLeft.size() != numberRight.size()) {
                return numberLeft.size() < numberRight.size();
            }
            if (numberLeft != numberRight) {
                return numberLeft < numberRight;
            }
        } else {
            if (restLeft.front() != restRight.front()) {
                return restLeft.front() < restRight.front();
            }
            restLeft.remove_prefix(1);
            restRight.remove_prefix(1);
        }
    }
    if (restLeft.empty() != restRight.empty()) {
        return restLeft.empty();
    }
    // Only leading zeros differ, if anything.
    return left < right;
}

std::vector<std::string> splitPortNames(std::string_view list) {
    std::vector<std::string> names;
    for (std::size_t at = list.find_first_not_of(separators); at != std::string_view::npos;
         at = list.find_first_not_of(separators, at)) {
        const std::size_t end = std::min(list.find_first_of(separators, at), list.size());
        names.emplace_back(list.substr(at, end - at));
        at = end;
    }
    return names;
}

void appendPortNames(std::vector<std::string>& names, const std::vector<std::string>& more) {
    for (const std::string& name : more) {
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            names.push_back(name);
        }
    }
}

std::vector<std::string> comPortNames(std::wstring_view deviceNames) {
    constexpr std::string_view prefix = "COM";
    std::vector<std::string> names;
    while (!deviceNames.empty()) {
        const std::size_t end = std::min(deviceNames.find(L'\0'), deviceNames.size());
        const std::wstring_view device = deviceNames.substr(0, end);
        deviceNames.remove_prefix(std::min(end + 1, deviceNames.size()));
        std::string name;
        for (const wchar_t character : device) {
            const bool lowerCase = character >= L'a' && character <= L'z';
            name.push_back(
                character > L'~' ? '?' : static_cast<char>(lowerCase ? character - L'a' + L'A' : character));
        }
        if (!name.starts_with(prefix)) {
            continue;
        }
        std::string_view rest = std::string_view(name).substr(prefix.size());
        if (!rest.empty() && isDigit(rest.front())) {
            const std::string_view number = takeNumber(rest);
            appendPortNames(names, {std::string(prefix).append(number.empty() ? "0" : number)});
        }
    }
    std::sort(names.begin(), names.end(), portNameLess);
    return names;
}

std::string oneLine(std::string_view text) {
    const auto isGap = [](char character) {
        const auto code = static_cast<unsigned char>(character);
        return code <= ' ' || code == 0x7F;
    };
    std::string line;
    bool gap = false;
    for (const char character : text) {
        if (isGap(character)) {
            gap = true;
            continue;
        }
        if (gap && !line.empty()) {
            line.push_back(' ');
        }
        gap = false;
        line.push_back(character);
    }
    return line;
}

std::string deviceDescription(std::string_view registryText, std::string_view portName) {
    if (registryText.starts_with('@')) {
        const std::size_t end = registryText.rfind(';');
        registryText.remove_prefix(end == std::string_view::npos ? registryText.size() : end + 1);
    }
    std::string line = oneLine(registryText);
    const std::string port = " (" + std::string(portName) + ")";
    if (line.ends_with(port)) {
        line.resize(line.size() - port.size());
    }
    return line;
}

std::string usbIdentity(std::string_view instancePath) {
    constexpr char separator = '\\';
    const std::size_t busEnd = instancePath.find(separator);
    const std::size_t deviceEnd =
        busEnd == std::string_view::npos ? busEnd : instancePath.find(separator, busEnd + 1);
    const std::string_view bus = instancePath.substr(0, busEnd);
    if (deviceEnd == std::string_view::npos || (bus != "USB" && bus != "FTDIBUS")) {
        return {};
    }
    // Where a device has no number of its own the system makes one up from the socket.
    const std::string_view instance = instancePath.substr(deviceEnd + 1);
    const bool ownNumber = instance.find('&') == std::string_view::npos;
    return std::string(ownNumber ? instancePath : instancePath.substr(0, deviceEnd));
}

std::string_view withoutPrefix(std::string_view name, std::string_view prefix) {
    return name.starts_with(prefix) ? name.substr(prefix.size()) : name;
}

}  // namespace tessavo
