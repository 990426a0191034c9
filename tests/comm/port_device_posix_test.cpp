#include "comm/port_device_posix.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "comm/fake_terminals_posix.h"
#include "comm/port_list_posix.h"
#include "comm/port_watch.h"
#include "support/pty_pair.h"

namespace tessavo::test {
namespace {

namespace fs = std::filesystem;
using ports::Attachment;

const std::map<std::string, std::string> bridge{{"idVendor", "10c4\n"},
                                                {"idProduct", "ea60\n"},
                                                {"manufacturer", "Silicon Labs\n"},
                                                {"product", "CP2102 USB to UART\n"},
                                                {"serial", "0001\n"}};

class Terminals : public testing::Test {
 protected:
    [[nodiscard]] ports::TerminalDevice terminal(const std::string& name) const {
        return ports::terminalDevice(tree.terminals() / name);
    }
    [[nodiscard]] std::string description(const std::string& name) const {
        return terminal(name).device.description;
    }
    [[nodiscard]] std::string identity(const std::string& name) const {
        return terminal(name).device.identity;
    }
    [[nodiscard]] PortDevice behind(const std::string& name) const {
        return ports::deviceBehind(name, tree.terminals(), tree.devices());
    }

    FakeTerminals tree;
};

TEST_F(Terminals, AUsbAdapterTellsItsName) {
    tree.usbAdapter("ttyUSB0", bridge);
    EXPECT_EQ(terminal("ttyUSB0").attachment, Attachment::usb);
    EXPECT_EQ(description("ttyUSB0"), "CP2102 USB to UART");
    EXPECT_EQ(identity("ttyUSB0"), "10c4:ea60:0001");
    EXPECT_EQ(behind("ttyUSB0"), terminal("ttyUSB0").device);
}

TEST_F(Terminals, TheSameAdapterInAnotherSocketIsTheSame) {
    tree.usbAdapter("ttyUSB0", bridge);
    tree.usbAdapter("ttyUSB1", bridge, "1-3.4");
    EXPECT_EQ(identity("ttyUSB0"), identity("ttyUSB1"));
    auto other = bridge;
    other["serial"] = "0002";
    tree.usbAdapter("ttyUSB2", other, "1-5");
    EXPECT_NE(identity("ttyUSB2"), identity("ttyUSB0"));
    other = bridge;
    other["idProduct"] = "ea61";
    tree.usbAdapter("ttyUSB3", other, "1-6");
    EXPECT_NE(identity("ttyUSB3"), identity("ttyUSB0"));
}

TEST_F(Terminals, AUsbDeviceWithoutANameTellsItsNumbers) {
    auto texts = bridge;
    texts["product"] = " \n";
    texts.erase("serial");
    tree.usbAdapter("ttyUSB0", texts);
    EXPECT_EQ(description("ttyUSB0"), "USB device 10c4:ea60");
    EXPECT_EQ(identity("ttyUSB0"), "10c4:ea60:");
    const fs::path device = tree.usbAdapter("ttyACM0", texts, "1-9");
    std::ofstream(device / "1-9:1.0" / "interface") << "Debug console\n";
    EXPECT_EQ(description("ttyACM0"), "Debug console");
}

TEST_F(Terminals, ThePartsOfTheComputerAreToldFromCards) {
    tree.builtIn("ttyS0");
    tree.card("ttyS4");
    tree.terminal("ttyAMA0", tree.folder("platform/fe201000.serial", "amba"));
    tree.terminal("rfcomm0", tree.folder("virtual/hci0:12", "bluetooth"));
    tree.terminal("ttyX0", tree.folder("odd/device", "mcb"));
    EXPECT_EQ(terminal("ttyS0").attachment, Attachment::builtIn);
    EXPECT_EQ(terminal("ttyAMA0").attachment, Attachment::builtIn);
    EXPECT_EQ(description("ttyS0"), "built-in serial port");
    EXPECT_EQ(terminal("ttyS4").attachment, Attachment::plugged);
    EXPECT_EQ(description("ttyS4"), "PCI serial port");
    EXPECT_EQ(terminal("rfcomm0").attachment, Attachment::plugged);
    EXPECT_EQ(description("rfcomm0"), "Bluetooth serial port");
    EXPECT_EQ(description("ttyX0"), "mcb device");
    for (const char* name : {"ttyS0", "ttyS4", "ttyAMA0", "rfcomm0", "ttyX0"}) {
        EXPECT_EQ(identity(name), "") << name;
    }
}

TEST_F(Terminals, ABluetoothPortIsNotTheUsbRadioThatCarriesIt) {
    const fs::path radio = tree.usbAdapter("ttyUSB0", bridge);
    const fs::path link = radio / "1-2:1.0" / "bluetooth" / "hci0" / "hci0:12";
    fs::create_directories(link);
    fs::create_directory_symlink(tree.root() / "bus" / "bluetooth", link / "subsystem");
    tree.terminal("rfcomm0", link);
    EXPECT_EQ(terminal("rfcomm0").attachment, Attachment::plugged);
    EXPECT_EQ(description("rfcomm0"), "Bluetooth serial port");
    EXPECT_EQ(identity("rfcomm0"), "");
}

TEST_F(Terminals, WithoutABusTheNameDecides) {
    for (const char* name : {"ttyUSB0", "ttyACM1", "ttyS0", "ttySAC1", "rfcomm0"}) {
        tree.terminal(name, tree.folder(std::string("plain/") + name, ""));
    }
    EXPECT_EQ(terminal("ttyUSB0").attachment, Attachment::usb);
    EXPECT_EQ(terminal("ttyACM1").attachment, Attachment::usb);
    EXPECT_EQ(terminal("ttyS0").attachment, Attachment::builtIn);
    EXPECT_EQ(terminal("ttySAC1").attachment, Attachment::plugged);
    EXPECT_EQ(terminal("rfcomm0").attachment, Attachment::plugged);
    EXPECT_EQ(description("ttyUSB0"), "USB device");
}

TEST_F(Terminals, OddTextsOfADeviceAreOneLineOrNotThere) {
    const auto shown = [this](const std::string& product) {
        static int socket = 0;
        auto texts = bridge;
        texts["product"] = product;
        const std::string name = "ttyUSB" + std::to_string(++socket);
        tree.usbAdapter(name, texts, "2-" + std::to_string(socket));
        return description(name);
    };
    EXPECT_EQ(shown("  two\n\tlines\x7F and\x01more \n\n"), "two lines and more");
    EXPECT_EQ(shown("\xC3\xBC\xFF\n"), "\xC3\xBC\xFF") << "what is no text is for the window to judge";
    EXPECT_EQ(shown(std::string(511, 'x')), std::string(511, 'x'));
    EXPECT_EQ(shown(std::string(512, 'x')), "USB device 10c4:ea60");
    EXPECT_EQ(shown(std::string(1 << 20, 'x')), "USB device 10c4:ea60");
    EXPECT_EQ(shown(std::string(3, '\0')), "USB device 10c4:ea60");
}

TEST_F(Terminals, NumbersThatAreNoneAreNoIdentity) {
    for (const char* number : {"", "10c", "10c45", "10cg", "10c4 ea60", "\n"}) {
        auto texts = bridge;
        texts["idVendor"] = "ffff";
        texts["idProduct"] = number;
        texts["product"] = "";
        const FakeTerminals fresh;
        fresh.usbAdapter("ttyUSB0", texts);
        const ports::TerminalDevice found = ports::terminalDevice(fresh.terminals() / "ttyUSB0");
        EXPECT_EQ(found.device, (PortDevice{"USB device", ""})) << number;
        EXPECT_EQ(found.attachment, Attachment::usb) << number;
    }
}

TEST_F(Terminals, FilesThatAreNoneNeitherHoldUpNorMislead) {
    const fs::path device = tree.usbAdapter("ttyUSB0", bridge);
    for (const char* file : {"product", "serial", "idProduct"}) {
        fs::remove(device / file);
    }
    ASSERT_EQ(::mkfifo((device / "product").c_str(), 0600), 0);
    fs::create_directories(device / "serial");
    fs::create_symlink(device / "idProduct", device / "idProduct");
    EXPECT_EQ(terminal("ttyUSB0").device, (PortDevice{"USB device", ""}));
}

TEST_F(Terminals, DamagedFoldersAreNoDevice) {
    fs::create_directory_symlink(tree.root() / "nowhere", tree.terminals() / "ttyUSB0");
    fs::create_directories(tree.terminals() / "ttyUSB1");
    fs::create_directory_symlink(tree.terminals() / "ttyUSB1" / "device",
                                 tree.terminals() / "ttyUSB1" / "device");
    std::ofstream(tree.terminals() / "ttyUSB2") << "no folder";
    for (const char* name : {"ttyUSB0", "ttyUSB1", "ttyUSB2", "ttyUSB3"}) {
        EXPECT_EQ(terminal(name).device, (PortDevice{"USB device", ""})) << name;
        EXPECT_EQ(terminal(name).attachment, Attachment::usb) << name;
    }
}

TEST_F(Terminals, ANameThatIsALinkTellsItsDevice) {
    tree.usbAdapter("ttyUSB0", bridge);
    fs::create_directories(tree.devices() / "serial" / "by-id");
    fs::create_symlink("../../ttyUSB0", tree.devices() / "serial" / "by-id" / "usb-bridge");
    EXPECT_EQ(behind("serial/by-id/usb-bridge").description, "CP2102 USB to UART");
    fs::remove(tree.devices() / "ttyUSB0");
    EXPECT_EQ(behind("serial/by-id/usb-bridge"), PortDevice{});
    EXPECT_EQ(behind("ttyUSB0"), PortDevice{}) << "the kernel's folder alone is no port";
}

TEST_F(Terminals, NamesThatLeadElsewhereTellNothing) {
    tree.builtIn("ttyS0");
    std::ofstream(tree.root() / "outside") << "";
    for (const char* name : {"", ".", "..", "../outside", "../class/tty/ttyS0", "no/such", "/", "//"}) {
        EXPECT_EQ(behind(name), PortDevice{}) << name;
    }
    EXPECT_EQ(behind(std::string(100000, 'x')), PortDevice{});
}

TEST_F(Terminals, APortIsThereWhileItsFileIs) {
    const auto there = [this](const std::string& name) { return ports::isThere(name, tree.devices()); };
    tree.builtIn("ttyS0");
    fs::create_directories(tree.devices() / "pts");
    fs::create_symlink("ttyS0", tree.devices() / "modem");
    EXPECT_TRUE(there("ttyS0"));
    EXPECT_TRUE(there("modem"));
    for (const char* name : {"", ".", "..", "pts", "ttyS1", "ttyS0/"}) {
        EXPECT_FALSE(there(name)) << name;
    }
    EXPECT_FALSE(there((tree.devices() / "ttyS0").string())) << "below the folder of devices only";
    EXPECT_FALSE(there(std::string(100000, 'x')));
    fs::remove(tree.devices() / "ttyS0");
    EXPECT_FALSE(there("ttyS0"));
    EXPECT_FALSE(there("modem")) << "a link to nothing";
}

TEST(PortDevice, AFileThatCannotBeOpenedIsThereAllTheSame) {
    PtyPair line;
    // Somebody else has it for himself alone.
    const int opened = ::open(("/dev/" + line.name()).c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(opened, 0);
    ASSERT_EQ(::ioctl(opened, TIOCEXCL), 0);
    EXPECT_TRUE(portIsThere(line.name()));
    EXPECT_TRUE(portIsThere("/dev/" + line.name()));
    EXPECT_EQ(portDevice(line.name()), (PortDevice{"pseudo-terminal", ""}));
    ::close(opened);
    line.hangUp();
    EXPECT_FALSE(portIsThere(line.name()));
    EXPECT_EQ(portDevice(line.name()), PortDevice{});
}

TEST(PortDevice, LookingDoesNotOpenThePort) {
    const PtyPair line;
    PortWatch watch(systemPorts());
    watch.setPort(line.name());
    EXPECT_EQ(watch.look(), PortWatch::Event::none);
    // The other end tells whether anybody ever had it open: until then it reports no hang-up.
    EXPECT_FALSE(line.wasOpened());
    const int opened = ::open(("/dev/" + line.name()).c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(opened, 0);
    ::close(opened);
    EXPECT_TRUE(line.wasOpened()) << "so it would have been seen";
}

TEST(PortDevice, ARunningSimulatedTargetIsToldAsSuch) {
    const PtyPair line;
    const AnnouncedPort announced(line.name());
    EXPECT_EQ(portDevice(line.name()), (PortDevice{"simulated target", ""}));
}

}  // namespace
}  // namespace tessavo::test
