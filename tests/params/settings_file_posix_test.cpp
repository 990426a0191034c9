#include <fcntl.h>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include "base/raw_file.h"
#include "params/settings_file.h"
#include "support/ordinary_user.h"
#include "support/settings_fakes.h"
#include "support/temporary_folder.h"

namespace {

/// Runs once, when a save is about to flush what it has written.
std::function<void()> beforeFlush;

}  // namespace

// Takes the place of the C library's.
extern "C" int fsync(int fd) {
    if (const auto act = std::exchange(beforeFlush, nullptr)) {
        act();
    }
    return static_cast<int>(syscall(SYS_fsync, fd));
}

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;

class SettingsFilePosix : public ::testing::Test {
 protected:
    SettingsFilePosix() {
        // A pipe that is opened in the usual way waits for its other end.
        constexpr unsigned hangSeconds = 60;
        alarm(hangSeconds);
    }
    ~SettingsFilePosix() override {
        alarm(0);
        beforeFlush = nullptr;
    }

    [[nodiscard]] std::filesystem::path makePipe(const std::string& name) const {
        EXPECT_EQ(mkfifo((folder_ / name).c_str(), 0600), 0) << name;
        return folder_ / name;
    }
    /// A pipe without another end, devices, a folder, and links to such.
    [[nodiscard]] std::vector<std::filesystem::path> oddFiles() const {
        std::filesystem::create_symlink("/dev/zero", folder_ / "link.eqs");
        std::filesystem::create_symlink(folder_.path(), folder_ / "folder.eqs");
        return {makePipe("pipe.eqs"), folder_ / "link.eqs", folder_ / "folder.eqs",
                folder_.path(),       "/dev/zero",          "/dev/null",
                "/dev/ptmx"};
    }

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

TEST_F(SettingsFilePosix, LoadOfWhatIsNoRegularFileSaysThatItCannotBeOpened) {
    const Bytes before = menu_.tuning.store();
    for (const std::filesystem::path& odd : oddFiles()) {
        menu_.boxes.shown.clear();
        menu_.dialogs.answer = odd;
        menu_.commands.loadSettings();
        EXPECT_THAT(menu_.texts(), ElementsAre("Error opening configuration file!")) << odd;
        EXPECT_SAME_BYTES(menu_.tuning.store(), before);
        EXPECT_FALSE(readFileStart(odd, 10).has_value()) << odd;
    }
    EXPECT_EQ(menu_.view.refreshes, 0);
}

TEST_F(SettingsFilePosix, LoadOfAPipeInWhichSettingsWaitIsRefusedAndTakesNothingOut) {
    const auto path = makePipe("full.eqs");
    const int pipe = open(path.c_str(), O_RDWR | O_CLOEXEC);
    const Bytes settings = menu_.tuning.store();
    ASSERT_EQ(write(pipe, settings.data(), settings.size()), static_cast<ssize_t>(settings.size()));
    menu_.dialogs.answer = path;
    menu_.commands.loadSettings();
    EXPECT_THAT(menu_.texts(), ElementsAre("Error opening configuration file!"));
    int waiting = 0;
    EXPECT_EQ(ioctl(pipe, FIONREAD, &waiting), 0);
    EXPECT_EQ(static_cast<std::size_t>(waiting), settings.size());
    close(pipe);
}

TEST_F(SettingsFilePosix, SaveAndExportIntoAPipeOrAFolderSayThatItCannotBeOpened) {
    const auto read = makePipe("read.eqs");
    // Somebody reads from this one.
    const int end = open(read.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(end, 0);
    std::filesystem::create_directory(folder_ / "sub");
    std::filesystem::create_symlink(read, folder_ / "link.eqs");
    for (const std::filesystem::path& odd :
         {makePipe("alone.eqs"), read, folder_ / "link.eqs", folder_ / "sub"}) {
        menu_.boxes.shown.clear();
        menu_.dialogs.answer = odd;
        menu_.commands.saveSettings();
        menu_.commands.exportImage();
        menu_.commands.saveSettingsAtExit();
        EXPECT_THAT(menu_.texts(), ElementsAre("Error opening configuration file!", "Error writing data!",
                                               "Error opening binary file!", "Error writing data!",
                                               "Error opening configuration file!", "Error writing data!"))
            << odd;
        EXPECT_TRUE(menu_.everyBoxIsAnError());
    }
    char byte = 0;
    EXPECT_EQ(::read(end, &byte, 1), 0) << "nothing was written, and nobody has it open for writing";
    close(end);
}

TEST_F(SettingsFilePosix, SaveOverAPipeUnderTheNameOfTheBytesOnTheirWayDoesNotWait) {
    const auto held = makePipe("new.eqs.part-" + std::to_string(getpid()));
    menu_.dialogs.answer = folder_ / "new.eqs";
    menu_.commands.saveSettings();
    EXPECT_THAT(menu_.texts(), ElementsAre());
    EXPECT_SAME_BYTES(readFile(folder_ / "new.eqs"), menu_.tuning.store());
    EXPECT_FALSE(std::filesystem::exists(held));
}

TEST_F(SettingsFilePosix, StreamsAreReadToTheirEnd) {
    const auto path = makePipe("stream");
    std::thread other([&] { writeFile(path, Bytes(9000, 5)); });
    const auto stream = readStreamStart(path, 10000);
    other.join();
    ASSERT_TRUE(stream.has_value());
    EXPECT_SAME_BYTES(stream->bytes, Bytes(9000, 5));
    EXPECT_EQ(stream->fileSize, 0U);
    EXPECT_FALSE(readStreamStart(folder_.path(), 10).has_value());
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
    menu_.dialogs.answer = folder_ / "new.eqs";
    bool bytesWereThere = false;
    beforeFlush = [&] {
        bytesWereThere = std::filesystem::exists(folder_ / ("new.eqs.part-" + std::to_string(getpid())));
        writeFile(folder_ / "new.eqs", Bytes(12000, 9));
    };
    menu_.commands.saveSettings();
    EXPECT_FALSE(beforeFlush);
    EXPECT_TRUE(bytesWereThere);
    Bytes expected = menu_.tuning.store();
    expected.resize(12000, 9);
    EXPECT_THAT(menu_.texts(), ElementsAre());
    EXPECT_SAME_BYTES(readFile(folder_ / "new.eqs"), expected);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 1);
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
}  // namespace tessavo::test
