#include "comm/port_device_posix.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fcntl.h>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "comm/own_ports.h"
#include "comm/port_list_posix.h"
#include "comm/port_names.h"
#include "comm/tty_device_posix.h"

namespace tessavo {

namespace fs = std::filesystem;

namespace ports {

namespace {

constexpr std::string_view uartPrefix = "ttyS";
constexpr std::size_t longestAttribute = 511;
constexpr int deepestFolder = 32;
constexpr std::size_t usbNumberDigits = 4;

// One of the kernel's short texts: a line in a file of its own.
std::string attribute(const fs::path& file) {
    const Descriptor opened(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!opened.valid() || ::fstat(opened.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return {};
    }
    std::array<char, longestAttribute + 1> text{};
    const ssize_t count = ::read(opened.get(), text.data(), text.size());
    if (count <= 0 || static_cast<std::size_t>(count) > longestAttribute) {
        return {};
    }
    return oneLine(std::string_view(text.data(), static_cast<std::size_t>(count)));
}

// The bus that a device hangs on; empty for a folder that is no device.
std::string busOf(const fs::path& device) {
    std::error_code error;
    return fs::read_symlink(device / "subsystem", error).filename().string();
}

// Layers of the kernel's own between a port and the bus of its device.
bool isLayer(std::string_view bus) {
    constexpr std::array<std::string_view, 4> layers{"", "tty", "serial", "serial-base"};
    return std::ranges::find(layers, bus) != layers.end();
}

bool isUsb(std::string_view bus) {
    return bus == "usb" || bus == "usb-serial";
}

bool isBoard(std::string_view bus) {
    constexpr std::array<std::string_view, 4> boards{"platform", "pnp", "amba", "acpi"};
    return std::ranges::find(boards, bus) != boards.end();
}

bool isUsbNumber(std::string_view text) {
    return text.size() == usbNumberDigits && std::ranges::all_of(text, [](char character) {
               return std::isxdigit(static_cast<unsigned char>(character)) != 0;
           });
}

// The nearest bus decides: a Bluetooth port does not hang on USB because the radio does.
struct BusPosition {
    std::string bus;
    std::string interfaceName;          ///< of a USB device's part, when it has a name
    std::optional<fs::path> usbDevice;  ///< folder with the device's numbers
};

BusPosition busPositionOf(const fs::path& terminalFolder) {
    BusPosition position;
    std::error_code error;
    fs::path folder = fs::canonical(terminalFolder / "device", error);
    for (int depth = 0; !error && depth < deepestFolder && folder.has_relative_path(); ++depth) {
        const std::string bus = busOf(folder);
        if (position.bus.empty() && !isLayer(bus)) {
            position.bus = bus;
        }
        if (!position.bus.empty() && !isUsb(position.bus)) {
            break;
        }
        if (position.interfaceName.empty()) {
            position.interfaceName = attribute(folder / "interface");
        }
        if (!attribute(folder / "idVendor").empty()) {
            position.bus = "usb";
            position.usbDevice = folder;
            break;
        }
        folder = folder.parent_path();
    }
    return position;
}

PortDevice usbDevice(const BusPosition& position) {
    PortDevice device{.description = "USB device", .identity = {}};
    if (position.usbDevice) {
        const std::string vendor = attribute(*position.usbDevice / "idVendor");
        const std::string product = attribute(*position.usbDevice / "idProduct");
        if (isUsbNumber(vendor) && isUsbNumber(product)) {
            const std::string numbers = vendor + ":" + product;
            device.description += " " + numbers;
            device.identity = numbers + ":" + attribute(*position.usbDevice / "serial");
        }
        if (const std::string name = attribute(*position.usbDevice / "product"); !name.empty()) {
            device.description = name;
            return device;
        }
    }
    if (!position.interfaceName.empty()) {
        device.description = position.interfaceName;
    }
    return device;
}

// As the port is opened: a name that begins with a slash leaves the folder no more than another.
fs::path deviceFile(const std::string& portName, const fs::path& deviceFolder) {
    return {deviceFolder.string() + "/" + portName};
}

Attachment attachmentByName(std::string_view name) {
    if (name.starts_with("ttyUSB") || name.starts_with("ttyACM")) {
        return Attachment::usb;
    }
    return isUartName(name) ? Attachment::builtIn : Attachment::plugged;
}

}  // namespace

bool isUartName(std::string_view name) {
    const std::string_view number = withoutPrefix(name, uartPrefix);
    return number.size() != name.size() && !number.empty() &&
           number.find_first_not_of("0123456789") == std::string_view::npos;
}

TerminalDevice terminalDevice(const fs::path& terminalFolder) {
    const BusPosition position = busPositionOf(terminalFolder);
    Attachment attachment = attachmentByName(terminalFolder.filename().string());
    if (isUsb(position.bus)) {
        attachment = Attachment::usb;
    } else if (isBoard(position.bus)) {
        attachment = Attachment::builtIn;
    } else if (!position.bus.empty()) {
        attachment = Attachment::plugged;
    }
    switch (attachment) {
        case Attachment::usb:
            return {attachment, usbDevice(position)};
        case Attachment::builtIn:
            return {attachment, {.description = "built-in serial port", .identity = {}}};
        case Attachment::plugged:
            break;
    }
    if (position.bus == "pci") {
        return {attachment, {.description = "PCI serial port", .identity = {}}};
    }
    if (position.bus == "bluetooth") {
        return {attachment, {.description = "Bluetooth serial port", .identity = {}}};
    }
    return {attachment,
            {.description = position.bus.empty() ? "serial port" : oneLine(position.bus) + " device",
             .identity = {}}};
}

bool isThere(const std::string& portName, const fs::path& deviceFolder) {
    struct stat status {};
    return !portName.empty() && ::stat(deviceFile(portName, deviceFolder).c_str(), &status) == 0 &&
           !S_ISDIR(status.st_mode);
}

PortDevice deviceBehind(const std::string& portName, const fs::path& ttyClass, const fs::path& deviceFolder) {
    std::error_code error;
    const fs::path folder = fs::canonical(deviceFolder, error);
    const fs::path device = fs::canonical(deviceFile(portName, deviceFolder), error);
    if (error || portName.empty()) {
        return {};
    }
    std::string name = device.lexically_relative(folder).string();
    if (name.starts_with("pts/")) {
        return {.description = "pseudo-terminal", .identity = {}};
    }
    // The kernel's stand-in for a slash in a device's name.
    std::replace(name.begin(), name.end(), '/', '!');
    if (name.starts_with('.') || !fs::is_directory(ttyClass / name, error)) {
        return {};
    }
    return terminalDevice(ttyClass / name).device;
}

}  // namespace ports

namespace {

constexpr std::string_view devicePrefix = "/dev/";
constexpr std::string_view terminalClass = "/sys/class/tty";

PortDevice simulatedTarget() {
    return {.description = std::string(simulatedTargetText), .identity = {}};
}

}  // namespace

bool portIsThere(const std::string& portName) {
    const std::string name(withoutPrefix(portName, devicePrefix));
    return ports::isOwnPort(name) || ports::isThere(name, devicePrefix);
}

PortDevice portDevice(const std::string& portName) {
    const std::string name(withoutPrefix(portName, devicePrefix));
    if (ports::isOwnPort(name)) {
        return simulatedTarget();
    }
    if (const auto folder = ports::runFolder()) {
        const std::vector<std::string> announced = ports::announcedPorts(*folder, devicePrefix);
        if (std::ranges::find(announced, name) != announced.end()) {
            return simulatedTarget();
        }
    }
    return ports::deviceBehind(name, terminalClass, devicePrefix);
}

}  // namespace tessavo
