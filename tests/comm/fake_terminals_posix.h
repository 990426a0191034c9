#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "support/temporary_folder.h"

namespace tessavo::test {

/// A folder of terminals with their devices, as the kernel shows them, in a temporary place.
class FakeTerminals {
 public:
    using Path = std::filesystem::path;

    FakeTerminals() {
        std::filesystem::create_directories(terminals());
        std::filesystem::create_directories(devices());
    }

    [[nodiscard]] Path root() const { return root_; }
    [[nodiscard]] Path terminals() const { return root_ / "class" / "tty"; }
    /// Where the devices' own files are.
    [[nodiscard]] Path devices() const { return root_ / "dev"; }

    /// A folder below the devices' with the link to its bus; without a bus when that is empty.
    Path folder(const std::string& path, const std::string& bus) const {
        const Path made = root_ / "devices" / path;
        std::filesystem::create_directories(made);
        if (!bus.empty() && !std::filesystem::is_symlink(made / "subsystem")) {
            std::filesystem::create_directory_symlink(root_ / "bus" / bus, made / "subsystem");
        }
        return made;
    }

    /// A terminal of this name whose device is the folder.
    void terminal(const std::string& name, const Path& device, const std::string& type = {}) const {
        const Path own = device / "tty" / name;
        std::filesystem::create_directories(own);
        std::filesystem::create_directory_symlink(device, own / "device");
        std::filesystem::create_directory_symlink(own, terminals() / name);
        if (!type.empty()) {
            std::ofstream(own / "type") << type << '\n';
        }
        std::ofstream(devices() / name) << "";
    }

    /// Serial adapter at a USB socket, with these texts of the device.
    Path usbAdapter(const std::string& name, const std::map<std::string, std::string>& texts,
                    const std::string& socket = "1-2") const {
        const std::string usb = "pci0000:00/0000:00:14.0/usb1/" + socket;
        folder("pci0000:00/0000:00:14.0", "pci");
        folder("pci0000:00/0000:00:14.0/usb1", "usb");
        Path device = folder(usb, "usb");
        for (const auto& [file, text] : texts) {
            std::ofstream(device / file) << text;
        }
        const std::string part = usb + "/" + socket + ":1.0";
        folder(part, "usb");
        terminal(name, folder(part + "/" + name, "usb-serial"));
        return device;
    }

    /// Port of the computer itself, as newer kernels show it.
    void builtIn(const std::string& name) const {
        const std::string chip = "pnp0/00:0" + name.substr(name.size() - 1);
        folder(chip, "pnp");
        folder(chip + "/00:05:0", "serial-base");
        terminal(name, folder(chip + "/00:05:0/00:05:0.0", "serial-base"), "4");
    }

    /// Port of a card.
    void card(const std::string& name) const {
        folder("pci0000:00", "");
        terminal(name, folder("pci0000:00/0000:03:0" + name.substr(name.size() - 1), "pci"), "4");
    }

 private:
    TemporaryFolder folder_;
    Path root_ = std::filesystem::canonical(folder_.path());
};

}  // namespace tessavo::test
