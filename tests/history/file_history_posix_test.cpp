#include <algorithm>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "history/file_history.h"
#include "support/settings_fakes.h"
#include "support/temporary_folder.h"

// Full disks, permissions, links and devices as POSIX has them.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// As long as it lives no file gets longer than this: to a program it is a disk that is full.
class FullDisk {
 public:
    explicit FullDisk(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &before_), 0);
        const rlimit limit{bytes, before_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~FullDisk() {
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &before_), 0);
        std::signal(SIGXFSZ, handler_);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

 private:
    rlimit before_{};
    void (*handler_)(int);
};

/// Steps down from the superuser, for whom no permission counts.
class OrdinaryUser {
 public:
    OrdinaryUser() : isSuperuser_(geteuid() == 0) {
        if (isSuperuser_) {
            EXPECT_EQ(seteuid(65534), 0);
        }
    }
    ~OrdinaryUser() {
        if (isSuperuser_) {
            EXPECT_EQ(seteuid(0), 0);
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
    bool isSuperuser_;
};

/// Passes everything on; once the old content is kept, the disk is full.
class DiskThatFillsUp : public IFileWatch {
 public:
    DiskThatFillsUp(FileHistory& history, SettingsCommands& commands, rlim_t bytes)
        : history_(history), commands_(commands), bytes_(bytes) {
        commands.watchFiles(this);
    }
    ~DiskThatFillsUp() override { commands_.watchFiles(&history_); }
    DiskThatFillsUp(const DiskThatFillsUp&) = delete;
    DiskThatFillsUp& operator=(const DiskThatFillsUp&) = delete;

    void willWrite(const std::filesystem::path& path, FileKind kind) override {
        history_.willWrite(path, kind);
        full_.emplace(bytes_);
    }
    void saved(const std::filesystem::path& path) override {
        full_.reset();
        history_.saved(path);
    }
    void notSaved(const std::filesystem::path& path) override {
        full_.reset();
        history_.notSaved(path);
    }
    void loaded(const std::filesystem::path& path, std::uintmax_t bytes) override {
        history_.loaded(path, bytes);
    }

 private:
    FileHistory& history_;
    SettingsCommands& commands_;
    rlim_t bytes_;
    std::optional<FullDisk> full_;
};

class FileHistoryPosix : public ::testing::Test {
 protected:
    FileHistoryPosix() {
        history_.setListener([this](FileNews news, const std::filesystem::path&) { news_.push_back(news); });
    }
    [[nodiscard]] std::filesystem::path car() const { return folder_ / "car.eqs"; }
    void saveTo(const std::filesystem::path& path) {
        menu_.dialogs.answer = path;
        menu_.commands.saveSettings();
    }
    [[nodiscard]] std::vector<KeptVersion> list() const { return history_.versions().list(); }
    [[nodiscard]] Bytes newest() const {
        return list().empty() ? Bytes() : history_.versions().read(list().front().id).value_or(Bytes());
    }

    TemporaryFolder folder_;
    FileMenu menu_;
    FileHistory history_{menu_.tuning.state, menu_.commands, folder_ / "home" / "data"};
    std::vector<FileNews> news_;
    std::mt19937_64 random_{8};
};

TEST_F(FileHistoryPosix, AWriteThatFailsHalfwayLeavesTheOldContentAmongTheVersions) {
    const Bytes old = randomStore(random_);
    writeFile(car(), old);
    menu_.commands.loadSettingsFrom(car());
    menu_.tuning.load(randomStore(random_), 0);
    {
        const DiskThatFillsUp disk(history_, menu_.commands, 5000);
        EXPECT_EQ(history_.saveAgain(), SaveAgain::failed);
    }
    EXPECT_THAT(menu_.texts(), ElementsAre("Error writing data!"));
    Bytes half = menu_.tuning.store();
    std::copy(old.begin() + 5000, old.end(), half.begin() + 5000);
    ASSERT_SAME_BYTES(readFile(car()), half) << "the file itself is spoilt";
    EXPECT_SAME_BYTES(newest(), old);

    EXPECT_EQ(history_.saveAgain(), SaveAgain::saved) << "there is room again, and nobody else was at it";
    EXPECT_SAME_BYTES(readFile(car()), menu_.tuning.store());
    EXPECT_EQ(history_.bringBack(list().back().id), BroughtBack::done);
    EXPECT_SAME_BYTES(readFile(car()), old);
}

TEST_F(FileHistoryPosix, OnAFullDiskTheSaveGoesOnAndItIsToldOnceThatNothingWasKept) {
    const Bytes old = randomStore(random_);
    writeFile(car(), old);
    {
        const FullDisk disk(100);
        saveTo(car());
    }
    EXPECT_THAT(menu_.texts(), ElementsAre("Error writing data!"));
    EXPECT_THAT(news_, ElementsAre(FileNews::notKept, FileNews::notSaved));
    EXPECT_THAT(list(), IsEmpty());
    EXPECT_TRUE(std::filesystem::is_empty(folder_ / "home" / "data")) << "no half of a version";
}

TEST_F(FileHistoryPosix, AVersionThatDoesNotFitLeavesThoseThatAreThere) {
    writeFile(car(), Bytes(200, 1));
    saveTo(car());
    ASSERT_THAT(list(), SizeIs(1));
    {
        const FullDisk disk(5000);
        EXPECT_FALSE(KeptVersions(folder_ / "home" / "data").keep(car(), FileKind::settings));
    }
    ASSERT_THAT(list(), SizeIs(1));
    EXPECT_SAME_BYTES(newest(), Bytes(200, 1));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_ / "home" / "data"), {}), 2);
}

TEST_F(FileHistoryPosix, BringingBackOverWhatCannotBeKeptLeavesItAlone) {
    writeFile(car(), Bytes(200, 1));
    saveTo(car());
    const std::string id = list().front().id;
    const Bytes there = readFile(car());
    {
        const FullDisk disk(5000);
        EXPECT_EQ(history_.bringBack(id), BroughtBack::notKept);
    }
    EXPECT_SAME_BYTES(readFile(car()), there);
    EXPECT_EQ(history_.bringBack(id), BroughtBack::done);
}

TEST_F(FileHistoryPosix, BringingBackThatFailsHalfwayLosesNothing) {
    const Bytes old = randomStore(random_);
    writeFile(car(), old);
    saveTo(car());
    const std::string id = list().front().id;
    writeFile(car(), Bytes(200, 1));
    {
        const FullDisk disk(5000);
        EXPECT_EQ(history_.bringBack(id), BroughtBack::notWritten);
    }
    ASSERT_THAT(list(), SizeIs(2));
    EXPECT_SAME_BYTES(newest(), Bytes(200, 1));
    EXPECT_EQ(history_.versions().read(id), old);
}

TEST_F(FileHistoryPosix, InAHomeThatIsReadOnlyTheSaveGoesOnAndItIsToldOnce) {
    std::filesystem::create_directory(folder_ / "home");
    ASSERT_EQ(chmod((folder_ / "home").c_str(), 0555), 0);
    writeFile(car(), Bytes(100, 1));
    ASSERT_EQ(chmod(car().c_str(), 0666), 0);
    {
        const OrdinaryUser user;
        saveTo(car());
    }
    EXPECT_SAME_BYTES(readFile(car()), menu_.tuning.store());
    EXPECT_THAT(menu_.texts(), IsEmpty());
    EXPECT_THAT(news_, ElementsAre(FileNews::notKept, FileNews::saved));
    EXPECT_TRUE(std::filesystem::is_empty(folder_ / "home"));
}

TEST_F(FileHistoryPosix, AFileThatMayBeWrittenButNotReadIsToldAsNotKept) {
    writeFile(car(), Bytes(100, 1));
    ASSERT_EQ(chmod(car().c_str(), 0222), 0);
    {
        const OrdinaryUser user;
        saveTo(car());
    }
    EXPECT_EQ(news_.front(), FileNews::notKept);
    EXPECT_THAT(menu_.texts(), IsEmpty());
}

TEST_F(FileHistoryPosix, OnlyTheOwnerMayReadWhatIsKept) {
    const mode_t mask = umask(0);
    writeFile(car(), Bytes(100, 1));
    saveTo(car());
    umask(mask);
    struct stat status {};
    ASSERT_EQ(stat((folder_ / "home" / "data").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
    // So is the folder around it, where it had to be made.
    const std::filesystem::path program = folder_ / "home" / "new";
    umask(0);
    KeptVersions versions(program / "versions");
    EXPECT_TRUE(versions.keep(car(), FileKind::settings));
    umask(mask);
    ASSERT_EQ(stat(program.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder_ / "home" / "data")) {
        ASSERT_EQ(stat(entry.path().c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, 0600U) << entry.path();
        ++files;
    }
    EXPECT_EQ(files, 2);
}

TEST_F(FileHistoryPosix, ASaveThroughALinkKeepsTheFileBehindItUnderTheNameOfTheLink) {
    writeFile(folder_ / "real.eqs", Bytes(11000, 9));
    ASSERT_EQ(chmod((folder_ / "real.eqs").c_str(), 0640), 0);
    std::filesystem::create_symlink("real.eqs", folder_ / "link.eqs");
    saveTo(folder_ / "link.eqs");
    ASSERT_THAT(list(), SizeIs(1));
    EXPECT_EQ(list().front().path, folder_ / "link.eqs");
    EXPECT_SAME_BYTES(newest(), Bytes(11000, 9));
    EXPECT_EQ(history_.document().name(), "link.eqs");
    writeFile(folder_ / "real.eqs", Bytes(12000, 8));
    EXPECT_EQ(history_.bringBack(list().front().id), BroughtBack::done);
    EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "link.eqs"));
    EXPECT_SAME_BYTES(readFile(folder_ / "real.eqs"), Bytes(11000, 9));
    struct stat status {};
    ASSERT_EQ(stat((folder_ / "real.eqs").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640U) << "who may read the file does not change";
}

TEST_F(FileHistoryPosix, ALinkToNothingHasNothingToKeep) {
    std::filesystem::create_symlink("real.eqs", folder_ / "link.eqs");
    saveTo(folder_ / "link.eqs");
    EXPECT_THAT(news_, ElementsAre(FileNews::saved));
    EXPECT_THAT(list(), IsEmpty());
    std::filesystem::create_symlink("b.eqs", folder_ / "a.eqs");
    std::filesystem::create_symlink("a.eqs", folder_ / "b.eqs");
    saveTo(folder_ / "a.eqs");
    EXPECT_THAT(news_, ElementsAre(FileNews::saved, FileNews::notSaved));
}

TEST_F(FileHistoryPosix, DevicesAndPipesAreNeitherReadNorKept) {
    constexpr unsigned hangSeconds = 60;
    alarm(hangSeconds);
    ASSERT_EQ(mkfifo((folder_ / "pipe.eqs").c_str(), 0600), 0);
    for (const auto& odd : {std::filesystem::path("/dev/full"), std::filesystem::path("/dev/zero"),
                            folder_ / "pipe.eqs", folder_.path()}) {
        news_.clear();
        saveTo(odd);
        EXPECT_THAT(news_, SizeIs(1)) << odd;
        EXPECT_NE(news_.front(), FileNews::notKept) << odd;
    }
    alarm(0);
    EXPECT_THAT(list(), IsEmpty());
}

TEST_F(FileHistoryPosix, ANameThatIsNoTextIsKeptAndBroughtBack) {
    const std::filesystem::path odd = folder_ / "\xff\xfe odd\n.eqs";
    writeFile(odd, Bytes(100, 1));
    saveTo(odd);
    ASSERT_THAT(list(), SizeIs(1));
    EXPECT_EQ(list().front().path, odd);
    EXPECT_EQ(history_.bringBack(list().front().id), BroughtBack::done);
    EXPECT_SAME_BYTES(readFile(odd), Bytes(100, 1));
}

}  // namespace
}  // namespace tessavo::test
