#include <algorithm>
#include <array>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "params/raw_file.h"
#include "params/settings_fakes.h"
#include "params/settings_file.h"
#include "params/temporary_folder.h"

namespace tessavo::testing {
namespace {

using ::testing::ElementsAre;

/// Steps down from the superuser, for whom no permission counts.
class OrdinaryUser {
 public:
    OrdinaryUser() : before_(geteuid()) {
        if (before_ == 0) {
            stepped_ = seteuid(65534) == 0;
        }
    }
    ~OrdinaryUser() {
        if (stepped_) {
            EXPECT_EQ(seteuid(before_), 0);
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
    uid_t before_;
    bool stepped_ = false;
};

class SettingsFilePosix : public ::testing::Test {
 protected:
    TemporaryFolder folder_;
    FileMenu menu_;
};

TEST_F(SettingsFilePosix, LoadOfAFileWithoutPermissionSaysThatItCannotBeOpened) {
    writeFile(folder_ / "secret.eqs", menu_.tuning.store());
    ASSERT_EQ(chmod((folder_ / "secret.eqs").c_str(), 0), 0);
    const Bytes before = menu_.tuning.store();
    menu_.dialogs.answer = folder_ / "secret.eqs";
    {
        const OrdinaryUser user;
        menu_.commands.loadSettings();
    }
    EXPECT_THAT(menu_.texts(), ElementsAre("Error opening configuration file!"));
    EXPECT_SAME_BYTES(menu_.tuning.store(), before);
}

TEST_F(SettingsFilePosix, LoadOfAFileThatCannotBeReadChangesNothing) {
    const Bytes before = menu_.tuning.store();
    menu_.dialogs.answer = "/proc/self/mem";  // opens, but its first page is not readable
    menu_.commands.loadSettings();
    ASSERT_EQ(menu_.boxes.shown.size(), 1U);
    EXPECT_SAME_BYTES(menu_.tuning.store(), before);
    EXPECT_EQ(menu_.view.refreshes, 0);
}

TEST_F(SettingsFilePosix, LoadOfAnEndlessFileOfZerosIsRefused) {
    menu_.dialogs.answer = "/dev/zero";
    menu_.commands.loadSettings();
    EXPECT_THAT(menu_.texts(), ElementsAre("Incompatible .eqs file!\r\n"));
}

TEST_F(SettingsFilePosix, LoadThroughALoopOfLinksSaysThatItCannotBeOpened) {
    std::filesystem::create_symlink(folder_ / "b.eqs", folder_ / "a.eqs");
    std::filesystem::create_symlink(folder_ / "a.eqs", folder_ / "b.eqs");
    menu_.dialogs.answer = folder_ / "a.eqs";
    menu_.commands.loadSettings();
    EXPECT_THAT(menu_.texts(), ElementsAre("Error opening configuration file!"));
}

TEST_F(SettingsFilePosix, SaveOntoAFullDiskSaysThatItCouldNotWrite) {
    menu_.dialogs.answer = "/dev/full";
    menu_.commands.saveSettings();
    EXPECT_THAT(menu_.texts(), ElementsAre("Error writing data!"));
    EXPECT_TRUE(menu_.everyBoxIsAnError());
    menu_.boxes.shown.clear();
    menu_.commands.exportImage();
    EXPECT_THAT(menu_.texts(), ElementsAre("Error writing data!"));
}

TEST_F(SettingsFilePosix, SaveOverAReadOnlyFileGivesTwoMessagesAndLeavesIt) {
    const Bytes old(500, 0x42);
    writeFile(folder_ / "old.eqs", old);
    ASSERT_EQ(chmod((folder_ / "old.eqs").c_str(), 0444), 0);
    menu_.dialogs.answer = folder_ / "old.eqs";
    {
        const OrdinaryUser user;
        menu_.commands.saveSettings();
    }
    EXPECT_THAT(menu_.texts(), ElementsAre("Error opening configuration file!", "Error writing data!"));
    EXPECT_SAME_BYTES(readFile(folder_ / "old.eqs"), old);
}

TEST_F(SettingsFilePosix, SaveIntoAFolderWithoutPermissionLeavesNoFile) {
    ASSERT_EQ(chmod(folder_.path().c_str(), 0555), 0);
    menu_.dialogs.answer = folder_ / "new.eqs";
    {
        const OrdinaryUser user;
        menu_.commands.saveSettings();
    }
    ASSERT_EQ(chmod(folder_.path().c_str(), 0755), 0);
    EXPECT_THAT(menu_.texts(), ElementsAre("Error opening configuration file!", "Error writing data!"));
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(SettingsFilePosix, SaveThroughALinkWritesTheFileBehindIt) {
    writeFile(folder_ / "real.eqs", Bytes(11000, 9));
    std::filesystem::create_symlink(folder_ / "real.eqs", folder_ / "link.eqs");
    menu_.dialogs.answer = folder_ / "link.eqs";
    menu_.commands.saveSettings();
    EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "link.eqs"));
    Bytes expected = menu_.tuning.store();
    expected.resize(11000, 9);
    EXPECT_SAME_BYTES(readFile(folder_ / "real.eqs"), expected);
}

TEST_F(SettingsFilePosix, SaveThroughALinkToNothingCreatesTheFileBehindIt) {
    std::filesystem::create_directory(folder_ / "sub");
    std::filesystem::create_symlink("sub/real.eqs", folder_ / "second.eqs");
    std::filesystem::create_symlink(folder_ / "second.eqs", folder_ / "first.eqs");
    menu_.dialogs.answer = folder_ / "first.eqs";
    menu_.commands.saveSettings();
    EXPECT_THAT(menu_.texts(), ElementsAre());
    EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "first.eqs"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "second.eqs"));
    EXPECT_SAME_BYTES(readFile(folder_ / "sub" / "real.eqs"), menu_.tuning.store());
}

TEST_F(SettingsFilePosix, SaveThroughALinkIntoAMissingFolderLeavesTheLink) {
    std::filesystem::create_symlink("missing/real.eqs", folder_ / "link.eqs");
    menu_.dialogs.answer = folder_ / "link.eqs";
    menu_.commands.saveSettings();
    EXPECT_THAT(menu_.texts(), ElementsAre("Error opening configuration file!", "Error writing data!"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "link.eqs"));
}

TEST_F(SettingsFilePosix, SaveKeepsTheTailOfAFileThatAppearsMeanwhile) {
    // A pipe under the name of the bytes on their way takes fewer than are saved, so that the save waits for
    // somebody to read the rest.
    const std::filesystem::path held = folder_ / ("new.eqs.part-" + std::to_string(getpid()));
    ASSERT_EQ(mkfifo(held.c_str(), 0600), 0);
    const int pipe = open(held.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_GE(pipe, 0);
    ASSERT_GE(fcntl(pipe, F_SETPIPE_SZ, 4096), 4096);
    ASSERT_LT(fcntl(pipe, F_GETPIPE_SZ), 10600);
    menu_.dialogs.answer = folder_ / "new.eqs";
    std::size_t heldBytes = 0;
    std::thread other([&] {
        constexpr int longEnoughMs = 60000;
        pollfd some{pipe, POLLIN, 0};
        if (poll(&some, 1, longEnoughMs) != 1) {
            return;
        }
        writeFile(folder_ / "new.eqs", Bytes(12000, 9));
        std::array<char, 4096> bytes{};
        while (heldBytes < 10600 && poll(&some, 1, longEnoughMs) == 1) {
            heldBytes +=
                static_cast<std::size_t>(std::max<ssize_t>(read(pipe, bytes.data(), bytes.size()), 0));
        }
    });
    menu_.commands.saveSettings();
    other.join();
    close(pipe);
    EXPECT_EQ(heldBytes, 10600U);
    ASSERT_TRUE(std::filesystem::is_regular_file(folder_ / "new.eqs"));
    Bytes expected = menu_.tuning.store();
    expected.resize(12000, 9);
    EXPECT_THAT(menu_.texts(), ElementsAre());
    EXPECT_SAME_BYTES(readFile(folder_ / "new.eqs"), expected);
    EXPECT_FALSE(std::filesystem::exists(held));
}

TEST_F(SettingsFilePosix, SaveLeavesNothingBesideTheFile) {
    menu_.dialogs.answer = folder_ / "only.eqs";
    menu_.commands.saveSettings();
    menu_.commands.saveSettings();
    int files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
        ++files;
    }
    EXPECT_EQ(files, 1);
}

TEST_F(SettingsFilePosix, SaveTakesTheLongestNameThatAFileCanHave) {
    const std::string name = std::string(251, 'n') + ".eqs";
    menu_.dialogs.answer = folder_ / name;
    menu_.commands.saveSettings();
    EXPECT_THAT(menu_.texts(), ElementsAre());
    EXPECT_SAME_BYTES(readFile(folder_ / name), menu_.tuning.store());
    menu_.dialogs.answer = folder_ / (name + "s");
    menu_.commands.saveSettings();
    EXPECT_THAT(menu_.texts(), ElementsAre("Error opening configuration file!", "Error writing data!"));
}

TEST_F(SettingsFilePosix, VerdictsTellWhatHappened) {
    ParameterStore store;
    const Bytes before = bytesOf(store);
    EXPECT_EQ(readSettings(folder_ / "nowhere", 0, store), LoadVerdict::cannotOpen);
    writeFile(folder_ / "bad", Bytes(storeSize, 3));
    EXPECT_EQ(readSettings(folder_ / "bad", 0, store), LoadVerdict::incompatible);
    EXPECT_SAME_BYTES(bytesOf(store), before);
    EXPECT_EQ(writeSettings("/dev/full", store), SaveVerdict::incomplete);
    EXPECT_EQ(writeSettings(folder_ / "x" / "y", store), SaveVerdict::cannotOpen);
    EXPECT_EQ(writeImage("/dev/full", menu_.tuning.state.image()), SaveVerdict::incomplete);
    EXPECT_EQ(writeSettings(folder_ / "good", menu_.tuning.state.store()), SaveVerdict::saved);
    EXPECT_EQ(readSettings(folder_ / "good", 4, store), LoadVerdict::loaded);
    EXPECT_SAME_BYTES(bytesOf(store), menu_.tuning.store());
}

TEST_F(SettingsFilePosix, RawFilesReadAtMostTheLimitAndTellTheWholeSize) {
    writeFile(folder_ / "raw", Bytes(1000, 7));
    const auto start = readFileStart(folder_ / "raw", 10);
    ASSERT_TRUE(start.has_value());
    EXPECT_SAME_BYTES(start->bytes, Bytes(10, 7));
    EXPECT_EQ(start->fileSize, 1000U);
    const auto whole = readFileStart(folder_ / "raw", 5000);
    ASSERT_TRUE(whole.has_value());
    EXPECT_EQ(whole->bytes.size(), 1000U);
    EXPECT_FALSE(readFileStart(folder_ / "nowhere", 10).has_value());
    EXPECT_FALSE(readFileStart(folder_.path(), 10).has_value());
    const FileWrite full = writeFileStart("/dev/full", Bytes(10, 1));
    EXPECT_TRUE(full.opened);
    EXPECT_EQ(full.written, 0U);
}

}  // namespace
}  // namespace tessavo::testing
