#include "comm/port_list_posix.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "comm/fake_terminals_posix.h"
#include "comm/port_list.h"
#include "support/environment.h"
#include "support/pty_pair.h"

namespace tessavo::test {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class PortList : public testing::Test {
 protected:
    // A terminal as the kernel shows it.
    void terminal(const std::string& name, bool device, const std::string& type = {}) const {
        fs::create_directories(root_ / "class" / name);
        if (device) {
            fs::create_directories(root_ / "devices" / name);
            fs::create_directory_symlink(root_ / "devices" / name, root_ / "class" / name / "device");
        }
        if (!type.empty()) {
            std::ofstream(root_ / "class" / name / "type") << type << '\n';
        }
    }
    [[nodiscard]] std::vector<std::string> hardware() const {
        ports::HardwarePorts found = ports::hardwarePorts(root_ / "class");
        found.usb.insert(found.usb.end(), found.others.begin(), found.others.end());
        return found.usb;
    }

    void device(const std::string& name) const {
        fs::create_directories((root_ / "dev" / name).parent_path());
        std::ofstream(root_ / "dev" / name) << "";
    }
    void entry(const std::string& file, const std::string& content) const {
        fs::create_directories(run());
        fs::permissions(run(), fs::perms::owner_all);
        std::ofstream(run() / file) << content;
    }
    [[nodiscard]] fs::path run() const { return root_ / "tessavo"; }
    [[nodiscard]] std::vector<std::string> announced() const {
        return ports::announcedPorts(run(), root_ / "dev");
    }

    TemporaryFolder folder_;
    fs::path root_ = folder_.path();
    Variable runtime_{"XDG_RUNTIME_DIR", root_.c_str()};
    Variable listed_{"TESSAVO_PORTS", nullptr};
};

TEST_F(PortList, OnlyUartsWithHardwareArePorts) {
    terminal("ttyS0", true, "4");
    terminal("ttyS1", true, "0");
    terminal("ttyS2", false, "0");
    terminal("ttyS3", true);
    terminal("ttyS4", true, "rubbish");
    terminal("ttyS10", false, "3");
    EXPECT_THAT(hardware(), ElementsAre("ttyS0", "ttyS10"));
}

TEST_F(PortList, OtherTerminalsNeedADevice) {
    terminal("ttyUSB0", true);
    terminal("ttyACM0", true);
    terminal("ttyAMA0", true);
    terminal("rfcomm0", true);
    terminal("ttySAC1", true);
    terminal("ttyUSB1", false);
    terminal("rfcomm1", false);
    terminal("tty", false);
    terminal("tty1", false);
    terminal("console", false);
    terminal("ptmx", false);
    EXPECT_THAT(hardware(), ElementsAre("ttyACM0", "ttyUSB0", "rfcomm0", "ttyAMA0", "ttySAC1"));
}

TEST_F(PortList, PortsAreSortedByKindAndNumber) {
    for (const char* name : {"ttyUSB10", "ttyUSB2", "ttyACM11", "ttyACM3", "ttyUSB1"}) {
        terminal(name, true);
    }
    EXPECT_THAT(hardware(), ElementsAre("ttyACM3", "ttyACM11", "ttyUSB1", "ttyUSB2", "ttyUSB10"));
}

TEST_F(PortList, UsbPortsStandFirstThenSimulatedTargetsPluggedDevicesAndTheComputersOwn) {
    const FakeTerminals tree;
    for (const char* name : {"ttyS1", "ttyS0"}) {
        tree.builtIn(name);
    }
    for (const char* name : {"ttyS5", "ttyS4"}) {
        tree.card(name);
    }
    tree.usbAdapter("ttyUSB10", {{"idVendor", "10c4"}}, "1-1");
    tree.usbAdapter("ttyUSB2", {{"idVendor", "10c4"}}, "1-2");
    tree.usbAdapter("ttyACM0", {{"idVendor", "2341"}}, "1-3");
    std::ofstream(tree.devices() / "sim10") << "";
    std::ofstream(tree.devices() / "sim9") << "";
    const AnnouncedPort tenth("sim10");
    const AnnouncedPort ninth("sim9");
    EXPECT_THAT(ports::portsIn(tree.terminals(), tree.devices(), "aa1 ttyS4,/dev/ttyUSB2"),
                ElementsAre("ttyACM0", "ttyUSB2", "ttyUSB10", "sim9", "sim10", "ttyS4", "ttyS5", "ttyS0",
                            "ttyS1", "aa1"));
}

TEST_F(PortList, AnExclamationMarkStandsForASlash) {
    terminal("board!0", true);
    EXPECT_THAT(hardware(), ElementsAre("board/0"));
}

TEST_F(PortList, LinkToAVanishedDeviceIsNoPort) {
    terminal("ttyUSB0", true);
    fs::remove_all(root_ / "devices" / "ttyUSB0");
    EXPECT_THAT(hardware(), IsEmpty());
}

TEST_F(PortList, MissingFolderHasNoPorts) {
    EXPECT_THAT(ports::hardwarePorts(root_ / "nowhere").usb, IsEmpty());
    EXPECT_THAT(ports::hardwarePorts(root_ / "nowhere").others, IsEmpty());
    EXPECT_THAT(ports::announcedPorts(root_ / "nowhere", "/dev"), IsEmpty());
}

TEST_F(PortList, AnnouncedPortIsListedWhileItLives) {
    const PtyPair line;
    {
        const AnnouncedPort announced(line.name());
        EXPECT_THAT(listPorts(), Contains(line.name()));
        // Looking does not remove it.
        EXPECT_THAT(listPorts(), Contains(line.name()));
    }
    EXPECT_THAT(listPorts(), Not(Contains(line.name())));
    EXPECT_TRUE(fs::is_empty(run()));
}

TEST_F(PortList, AnnouncedPortWithThePrefixIsTheSame) {
    const PtyPair line;
    const AnnouncedPort announced("/dev/" + line.name());
    EXPECT_THAT(listPorts(), Contains(line.name()));
}

TEST_F(PortList, SeveralAnnouncedPortsAreSorted) {
    device("sim10");
    device("sim9");
    const AnnouncedPort tenth("sim10");
    const AnnouncedPort ninth("sim9");
    EXPECT_THAT(announced(), ElementsAre("sim9", "sim10"));
}

TEST_F(PortList, PortOfAKilledProgramIsIgnoredAndItsEntryRemoved) {
    device("sim0");
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const AnnouncedPort announced("sim0");
        if (::write(ready[1], "x", 1) == 1) {
            ::pause();
        }
        ::_exit(1);
    }
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    EXPECT_THAT(announced(), ElementsAre("sim0"));
    ASSERT_EQ(::kill(child, SIGKILL), 0);
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    EXPECT_FALSE(fs::is_empty(run()));
    EXPECT_THAT(announced(), IsEmpty());
    EXPECT_TRUE(fs::is_empty(run()));
    ::close(ready[0]);
    ::close(ready[1]);
}

TEST_F(PortList, AnnouncedPortWhoseDeviceIsGoneIsIgnoredAndItsEntryRemoved) {
    device("sim0");
    const AnnouncedPort here("sim0");
    fs::remove(root_ / "dev" / "sim0");
    EXPECT_THAT(announced(), IsEmpty());
    EXPECT_TRUE(fs::is_empty(run()));
}

TEST_F(PortList, DamagedEntriesAreIgnoredAndOthersFilesStay) {
    device("sim0");
    entry("port-1", "");
    entry("port-2", "sim0");
    entry("port-3", std::string(100000, 'x'));
    entry("port-4", "\x01\x02\n");
    entry("port-5", "a,b\n");
    entry("notes", "sim0\n");
    fs::create_directories(run() / "port-folder");
    fs::create_symlink(root_ / "dev" / "sim0", run() / "port-link");
    EXPECT_THAT(announced(), IsEmpty());
    EXPECT_TRUE(fs::exists(run() / "notes"));
    EXPECT_TRUE(fs::exists(root_ / "dev" / "sim0"));
}

TEST_F(PortList, RunFolderIsThisUsersAlone) {
    const auto folder = ports::runFolder();
    ASSERT_TRUE(folder);
    EXPECT_EQ(*folder, run());
    struct stat status {};
    ASSERT_EQ(::lstat(folder->c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
    EXPECT_EQ(ports::runFolder(), folder);
}

TEST_F(PortList, RunFolderThatOthersMayEnterIsNotUsed) {
    fs::create_directories(run());
    fs::permissions(run(), fs::perms::owner_all | fs::perms::others_write);
    EXPECT_FALSE(ports::runFolder());
    const PtyPair line;
    const AnnouncedPort announced(line.name());
    EXPECT_THAT(listPorts(), Not(Contains(line.name())));
}

TEST_F(PortList, RunFolderBehindALinkIsNotUsed) {
    fs::create_directories(root_ / "elsewhere");
    fs::permissions(root_ / "elsewhere", fs::perms::owner_all);
    fs::create_directory_symlink(root_ / "elsewhere", run());
    EXPECT_FALSE(ports::runFolder());
}

TEST_F(PortList, WithoutARuntimeFolderTheTemporaryDirectoryServes) {
    const Variable temporary("TMPDIR", root_.c_str());
    const fs::path expected = root_ / ("tessavo-" + std::to_string(::geteuid()));
    for (const char* runtime : {static_cast<const char*>(nullptr), "relative/path", "/no/such/folder", ""}) {
        const Variable variable("XDG_RUNTIME_DIR", runtime);
        EXPECT_EQ(ports::runFolder(), expected);
    }
    const Variable none("XDG_RUNTIME_DIR", nullptr);
    const Variable nowhere("TMPDIR", "/no/such/folder");
    EXPECT_FALSE(ports::runFolder());
}

TEST_F(PortList, NamesFromTheEnvironmentComeLastAndOnce) {
    const PtyPair line;
    const AnnouncedPort announced(line.name());
    const Variable listed("TESSAVO_PORTS", ("zz9,/dev/aa1 " + line.name() + ", zz9").c_str());
    const std::vector<std::string> names = listPorts();
    ASSERT_GE(names.size(), 3U);
    EXPECT_THAT(std::vector<std::string>(names.end() - 2, names.end()), ElementsAre("zz9", "aa1"));
    EXPECT_EQ(std::count(names.begin(), names.end(), line.name()), 1);
}

TEST(DevicePath, StandsBehindThePrefix) {
    EXPECT_EQ(devicePath("ttyUSB0"), L"/dev/ttyUSB0");
    EXPECT_EQ(devicePath("pts/3"), L"/dev/pts/3");
    EXPECT_EQ(devicePath("/dev/pts/3"), L"/dev/pts/3");
    EXPECT_EQ(devicePath(""), L"/dev/");
    EXPECT_EQ(devicePath("t\xC3\xBCr"), L"/dev/t\u00FCr");
}

}  // namespace
}  // namespace tessavo::test
