#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

#include "history/file_history.h"
#include "support/ordinary_user.h"
#include "support/settings_fakes.h"
#include "support/temporary_folder.h"

// Permissions and links as POSIX has them.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

class NotesOnPosix : public ::testing::Test {
 protected:
    NotesOnPosix() {
        std::filesystem::create_directory(place_);
        std::filesystem::create_directory(data_);
        for (const auto& folder : {folder_.path(), place_, data_}) {
            EXPECT_EQ(::chmod(folder.c_str(), 0777), 0);
        }
        history_.setListener([this](FileNews news, const std::filesystem::path& path) {
            news_.emplace_back(news, path.filename().string());
        });
    }
    ~NotesOnPosix() override { ::chmod(place_.c_str(), 0777); }
    NotesOnPosix(const NotesOnPosix&) = delete;
    NotesOnPosix& operator=(const NotesOnPosix&) = delete;

    [[nodiscard]] std::filesystem::path car() const { return place_ / "car.eqs"; }
    [[nodiscard]] std::filesystem::path carNotes() const { return place_ / "car.notes.json"; }
    void name(std::u16string_view text) {
        FileNotes notes;
        setChannelName(notes, {2}, text);
        menu_.tuning.state.setNotes(notes);
    }
    static mode_t modeOf(const std::filesystem::path& path) {
        struct stat status {};
        EXPECT_EQ(::stat(path.c_str(), &status), 0);
        return status.st_mode & 0777U;
    }

    OrdinaryUser user_;
    TemporaryFolder folder_;
    std::filesystem::path place_ = folder_ / "place";
    std::filesystem::path data_ = folder_ / "data";
    FileMenu menu_;
    FileHistory history_{menu_.tuning.state, menu_.commands, data_ / "versions"};
    std::vector<std::pair<FileNews, std::string>> news_;
};

TEST_F(NotesOnPosix, AFolderThatTakesNoFilesSavesTheSettingsAndTellsOfTheNotes) {
    ASSERT_TRUE(menu_.commands.saveSettingsTo(car()));
    ASSERT_EQ(::chmod(place_.c_str(), 0555), 0);
    name(u"Mid L");
    menu_.tuning.state.setVolume(3, true);
    news_.clear();
    ASSERT_TRUE(menu_.commands.saveSettingsTo(car()));
    EXPECT_THAT(news_, ElementsAre(Pair(FileNews::saved, "car.eqs"),
                                   Pair(FileNews::notesNotSaved, "car.notes.json")));
    const Bytes saved = readFile(car());
    EXPECT_EQ(std::memcmp(saved.data(), &menu_.tuning.state.store(), parameterStoreSize), 0);
    EXPECT_FALSE(std::filesystem::exists(carNotes()));
    EXPECT_TRUE(history_.documentDiffers());
    EXPECT_TRUE(menu_.texts().empty()) << "no box";
    ASSERT_EQ(::chmod(place_.c_str(), 0777), 0);
    ASSERT_EQ(history_.saveAgain(), SaveAgain::saved);
    EXPECT_TRUE(std::filesystem::exists(carNotes()));
    EXPECT_FALSE(history_.documentDiffers());
}

TEST_F(NotesOnPosix, WithoutPermissionToReadThemTheSettingsOpenAndTheyStay) {
    name(u"Mid L");
    ASSERT_TRUE(menu_.commands.saveSettingsTo(car()));
    const Bytes before = readFile(carNotes());
    ASSERT_EQ(::chmod(carNotes().c_str(), 0), 0);
    news_.clear();
    ASSERT_TRUE(menu_.commands.loadSettingsFrom(car()));
    EXPECT_THAT(news_, ElementsAre(Pair(FileNews::loaded, "car.eqs"),
                                   Pair(FileNews::notesUnreadable, "car.notes.json")));
    name(u"other");
    news_.clear();
    ASSERT_TRUE(menu_.commands.saveSettingsTo(car()));
    EXPECT_THAT(news_, ElementsAre(Pair(FileNews::saved, "car.eqs"),
                                   Pair(FileNews::notesNotSaved, "car.notes.json")));
    ASSERT_EQ(::chmod(carNotes().c_str(), 0600), 0);
    EXPECT_EQ(readFile(carNotes()), before);
}

TEST_F(NotesOnPosix, WhoMayReadTheSettingsMayReadTheNotes) {
    name(u"Mid L");
    for (const mode_t mode : {0600U, 0640U, 0666U}) {
        ASSERT_TRUE(menu_.commands.saveSettingsTo(car()));
        ASSERT_EQ(::chmod(car().c_str(), mode), 0);
        name(std::u16string(1, static_cast<char16_t>(u'a' + mode % 7)));
        ASSERT_TRUE(menu_.commands.saveSettingsTo(car()));
        EXPECT_EQ(modeOf(carNotes()), mode);
    }
}

TEST_F(NotesOnPosix, ALinkIsFollowed) {
    const std::filesystem::path elsewhere = data_ / "notes.json";
    name(u"first");
    const std::string text = notesJson(menu_.tuning.state.notes());
    ASSERT_TRUE(writeFile(elsewhere, Bytes(text.begin(), text.end())));
    std::filesystem::create_symlink(elsewhere, carNotes());
    name(u"second");
    ASSERT_TRUE(menu_.commands.saveSettingsTo(car()));
    EXPECT_TRUE(std::filesystem::is_symlink(carNotes()));
    EXPECT_EQ(readNotes(elsewhere), (std::variant<FileNotes, NotesTrouble>(menu_.tuning.state.notes())));
}

TEST_F(NotesOnPosix, NothingStandsBesideADevice) {
    name(u"Mid L");
    std::filesystem::create_symlink("/dev/null", place_ / "null.eqs");
    news_.clear();
    if (menu_.commands.saveSettingsTo(place_ / "null.eqs")) {
        EXPECT_THAT(news_, ElementsAre(Pair(FileNews::saved, "null.eqs")));
    }
    EXPECT_FALSE(std::filesystem::exists(place_ / "null.notes.json"));
}

}  // namespace
}  // namespace tessavo::test
