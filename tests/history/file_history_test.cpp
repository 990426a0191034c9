#include "history/file_history.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "support/settings_fakes.h"
#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

class FileHistoryTest : public ::testing::Test {
 protected:
    FileHistoryTest() {
        history_.setListener([this](FileNews news, const std::filesystem::path& path) {
            news_.emplace_back(news, path.filename().string());
        });
    }
    [[nodiscard]] std::filesystem::path car() const { return folder_ / "car.eqs"; }
    /// Other sets than before.
    void edit() { menu_.tuning.load(randomStore(random_), 0); }
    void saveTo(const std::filesystem::path& path) {
        menu_.dialogs.answer = path;
        menu_.commands.saveSettings();
    }
    [[nodiscard]] std::vector<Bytes> kept() const {
        std::vector<Bytes> all;
        for (const KeptVersion& version : history_.versions().list()) {
            all.push_back(history_.versions().read(version.id).value_or(Bytes()));
        }
        return all;
    }

    TemporaryFolder folder_;
    FileMenu menu_;
    FileHistory history_{menu_.tuning.state, menu_.commands, folder_ / "data"};
    std::vector<std::pair<FileNews, std::string>> news_;
    std::mt19937_64 random_{21};
};

TEST_F(FileHistoryTest, EveryCommandThatWritesKeepsWhatStoodThere) {
    const std::function<void()> commands[]{
        [this] { menu_.commands.saveSettings(); }, [this] { menu_.commands.saveSettingsAtExit(); },
        [this] { menu_.commands.exportImage(); }, [this] { menu_.commands.saveSettingsTo(car()); },
        [this] { history_.overwrite(); }};
    menu_.dialogs.answer = car();
    std::uint8_t fill = 0;
    for (const auto& command : commands) {
        const Bytes old(12000, ++fill);
        writeFile(car(), old);
        command();
        ASSERT_FALSE(kept().empty());
        EXPECT_SAME_BYTES(kept().front(), old);
        EXPECT_NE(readFile(car()), old);
        EXPECT_EQ(history_.versions().list().front().path, car());
        EXPECT_EQ(history_.versions().list().front().kind, fill == 3 ? FileKind::image : FileKind::settings);
    }
    EXPECT_THAT(kept(), SizeIs(5));
    EXPECT_THAT(menu_.texts(), IsEmpty());
}

TEST_F(FileHistoryTest, ReadingKeepsNothing) {
    writeFile(car(), menu_.tuning.store());
    menu_.commands.loadSettingsFrom(car());
    EXPECT_THAT(kept(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(folder_ / "data"));
}

TEST_F(FileHistoryTest, TwentyFiveSavesKeepTheLastTwenty) {
    std::vector<Bytes> saved;
    for (int i = 0; i < 25; ++i) {
        edit();
        saveTo(car());
        saved.push_back(menu_.tuning.store());
    }
    const auto all = kept();
    ASSERT_THAT(all, SizeIs(20));
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_SAME_BYTES(all[i], saved[23 - i]);
    }
}

TEST_F(FileHistoryTest, TheDocumentIsSetByEveryLoadAndSaveOfSettingsThatSucceeds) {
    EXPECT_TRUE(history_.document().path().empty());
    saveTo(folder_ / "a.eqs");
    EXPECT_EQ(history_.document().name(), "a.eqs");
    menu_.dialogs.answer = folder_ / "b.eqs";
    menu_.commands.saveSettingsAtExit();
    EXPECT_EQ(history_.document().name(), "b.eqs");
    menu_.dialogs.answer = folder_ / "a.eqs";
    menu_.commands.loadSettings();
    EXPECT_EQ(history_.document().name(), "a.eqs");
    menu_.commands.loadSettingsFrom(folder_ / "b.eqs");
    EXPECT_EQ(history_.document().name(), "b.eqs");
    EXPECT_THAT(news_, ElementsAre(Pair(FileNews::saved, "a.eqs"), Pair(FileNews::saved, "b.eqs"),
                                   Pair(FileNews::loaded, "a.eqs"), Pair(FileNews::loaded, "b.eqs")));
    EXPECT_FALSE(history_.documentDiffers());
    menu_.tuning.state.setVolume(3.0F, true);
    EXPECT_TRUE(history_.documentDiffers());
}

TEST_F(FileHistoryTest, TheDocumentStaysThroughRefusedFilesFailedSavesExportsAndCancelledDialogs) {
    saveTo(car());
    writeFile(folder_ / "bad.eqs", Bytes(storeSize, 1));
    for (const auto& answer : {std::optional(folder_ / "bad.eqs"), std::optional(folder_ / "missing.eqs"),
                               std::optional(folder_.path()), std::optional(std::filesystem::path()),
                               std::optional<std::filesystem::path>()}) {
        menu_.dialogs.answer = answer;
        menu_.commands.loadSettings();
        EXPECT_EQ(history_.document().path(), car());
    }
    saveTo(folder_ / "no folder" / "a.eqs");
    EXPECT_EQ(history_.document().path(), car());
    menu_.dialogs.answer = folder_ / "out.bin";
    menu_.commands.exportImage();
    EXPECT_EQ(history_.document().path(), car());
    EXPECT_EQ(menu_.commands.settingsPath(), folder_ / "no folder" / "a.eqs") << "that one goes on";
    EXPECT_FALSE(history_.document().changedOnDisk());
}

TEST_F(FileHistoryTest, SaveAgainWritesTheDocumentWithoutADialog) {
    writeFile(car(), Bytes(12000, 0xC3));
    saveTo(car());
    menu_.dialogs.asked.clear();
    edit();
    EXPECT_TRUE(history_.documentDiffers());
    EXPECT_EQ(history_.saveAgain(), SaveAgain::saved);
    Bytes expected = menu_.tuning.store();
    expected.resize(12000, 0xC3);
    EXPECT_SAME_BYTES(readFile(car()), expected);
    EXPECT_FALSE(history_.documentDiffers());
    EXPECT_TRUE(menu_.dialogs.asked.empty());
    EXPECT_THAT(menu_.texts(), IsEmpty());
    edit();
    EXPECT_EQ(history_.saveAgain(), SaveAgain::saved) << "its own writing is no change by another";
}

TEST_F(FileHistoryTest, SaveAgainWithoutADocumentDoesNothing) {
    EXPECT_EQ(history_.saveAgain(), SaveAgain::noDocument);
    EXPECT_EQ(history_.overwrite(), SaveAgain::noDocument);
    EXPECT_THAT(menu_.texts(), IsEmpty());
    EXPECT_TRUE(menu_.dialogs.asked.empty());
    EXPECT_THAT(news_, IsEmpty());
}

TEST_F(FileHistoryTest, SaveAgainLeavesAFileThatChangedSinceUntilItIsToldToOverwrite) {
    saveTo(car());
    const Bytes foreign(storeSize, 0x99);
    writeFile(car(), foreign);
    edit();
    news_.clear();
    EXPECT_EQ(history_.saveAgain(), SaveAgain::changedOnDisk);
    EXPECT_SAME_BYTES(readFile(car()), foreign);
    EXPECT_THAT(kept(), IsEmpty());
    EXPECT_THAT(menu_.texts(), IsEmpty());
    EXPECT_THAT(news_, IsEmpty());
    EXPECT_TRUE(history_.documentDiffers());

    EXPECT_EQ(history_.overwrite(), SaveAgain::saved);
    EXPECT_SAME_BYTES(readFile(car()), menu_.tuning.store());
    EXPECT_SAME_BYTES(kept().front(), foreign);
    EXPECT_EQ(history_.saveAgain(), SaveAgain::saved);

    std::filesystem::remove(car());
    EXPECT_EQ(history_.saveAgain(), SaveAgain::changedOnDisk);
    EXPECT_FALSE(std::filesystem::exists(car()));
    EXPECT_EQ(history_.overwrite(), SaveAgain::saved);
    EXPECT_SAME_BYTES(readFile(car()), menu_.tuning.store());
}

TEST_F(FileHistoryTest, SaveAgainThatFailsShowsTheBoxesOfASave) {
    std::filesystem::create_directory(folder_ / "sub");
    saveTo(folder_ / "sub" / "car.eqs");
    std::filesystem::remove_all(folder_ / "sub");
    EXPECT_EQ(history_.saveAgain(), SaveAgain::changedOnDisk);
    EXPECT_EQ(history_.overwrite(), SaveAgain::failed);
    EXPECT_THAT(menu_.texts(), ElementsAre("Error opening configuration file!", "Error writing data!"));
    EXPECT_EQ(news_.back(), std::pair(FileNews::notSaved, std::string("car.eqs")));
    EXPECT_EQ(history_.document().name(), "car.eqs");
}

TEST_F(FileHistoryTest, AShortFileIsToldAsStateAndNotByABox) {
    Bytes bytes = randomStore(random_);
    bytes.resize(300);
    writeFile(car(), bytes);
    menu_.commands.loadSettingsFrom(car());
    EXPECT_THAT(menu_.texts(), IsEmpty());
    EXPECT_EQ(history_.document().shortFileText(), "car.eqs: 300 of 10600 bytes, the rest reads as zero");
    EXPECT_EQ(history_.saveAgain(), SaveAgain::saved);
    EXPECT_EQ(history_.document().shortFileText(), "");
    EXPECT_SAME_BYTES(kept().front(), bytes);
}

TEST_F(FileHistoryTest, ABroughtBackVersionLeavesTheSetsAndCountsAsAChangeOnTheDisk) {
    saveTo(car());
    const Bytes first = menu_.tuning.store();
    edit();
    saveTo(car());
    const Bytes second = menu_.tuning.store();
    news_.clear();
    EXPECT_EQ(history_.bringBack(history_.versions().list().front().id), BroughtBack::done);
    EXPECT_SAME_BYTES(readFile(car()), first);
    EXPECT_SAME_BYTES(menu_.tuning.store(), second);
    EXPECT_EQ(history_.saveAgain(), SaveAgain::changedOnDisk);
    EXPECT_THAT(news_, ElementsAre(Pair(FileNews::broughtBack, "car.eqs")));
    EXPECT_EQ(history_.bringBack("nothing"), BroughtBack::unknown);
    EXPECT_THAT(news_, SizeIs(1));
}

TEST_F(FileHistoryTest, AnOpenedVersionGivesItsSetsAndTouchesNoFile) {
    saveTo(car());
    const Bytes first = menu_.tuning.store();
    edit();
    saveTo(car());
    const Bytes second = menu_.tuning.store();
    news_.clear();
    EXPECT_EQ(history_.open(history_.versions().list().front().id), OpenedVersion::done);
    EXPECT_SAME_BYTES(menu_.tuning.store(), first);
    EXPECT_SAME_BYTES(readFile(car()), second);
    EXPECT_EQ(history_.document().path(), car());
    EXPECT_TRUE(history_.documentDiffers());
    EXPECT_EQ(history_.saveAgain(), SaveAgain::saved) << "the file is what it was";
    EXPECT_SAME_BYTES(readFile(car()), first);
    EXPECT_THAT(news_, ElementsAre(Pair(FileNews::opened, "car.eqs"), Pair(FileNews::saved, "car.eqs")));
    EXPECT_EQ(history_.open("nothing"), OpenedVersion::damaged);
    EXPECT_THAT(menu_.texts(), IsEmpty());
}

TEST_F(FileHistoryTest, AnOpenedVersionThatHoldsNoSettingsIsRefused) {
    writeFile(car(), Bytes(500, 3));
    saveTo(car());
    const Bytes before = menu_.tuning.store();
    news_.clear();
    EXPECT_EQ(history_.open(history_.versions().list().front().id), OpenedVersion::refused);
    EXPECT_THAT(menu_.texts(), ElementsAre("Incompatible .eqs file!\r\n"));
    EXPECT_SAME_BYTES(menu_.tuning.store(), before);
    EXPECT_THAT(news_, IsEmpty());
}

TEST_F(FileHistoryTest, WhereKeepingFailsTheSaveGoesOnAndItIsToldOnce) {
    writeFile(folder_ / "data", Bytes(5, 5));  // no folder can be made there
    writeFile(car(), Bytes(100, 1));
    saveTo(car());
    EXPECT_SAME_BYTES(readFile(car()), menu_.tuning.store());
    EXPECT_THAT(menu_.texts(), IsEmpty());
    EXPECT_THAT(news_, ElementsAre(Pair(FileNews::notKept, "car.eqs"), Pair(FileNews::saved, "car.eqs")));
    writeFile(folder_ / "out.bin", Bytes(100, 1));
    menu_.dialogs.answer = folder_ / "out.bin";
    menu_.commands.exportImage();
    EXPECT_SAME_BYTES(readFile(folder_ / "out.bin"), menu_.tuning.image());
    EXPECT_EQ(news_.back(), std::pair(FileNews::notKept, std::string("out.bin")));
    EXPECT_THAT(news_, SizeIs(3));
}

TEST_F(FileHistoryTest, ANewFileHasNothingToKeepAndNothingIsTold) {
    writeFile(folder_ / "data", Bytes(5, 5));
    saveTo(car());
    EXPECT_THAT(news_, ElementsAre(Pair(FileNews::saved, "car.eqs")));
}

TEST_F(FileHistoryTest, LetsTheCommandsGoAtItsEnd) {
    { const FileHistory other(menu_.tuning.state, menu_.commands, folder_ / "other"); }
    saveTo(car());
    saveTo(car());
    EXPECT_THAT(menu_.texts(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(folder_ / "other"));
}

TEST_F(FileHistoryTest, TheDocumentOfAnEarlierRunIsSavedAgain) {
    writeFile(car(), menu_.tuning.store());
    history_.resumeDocument(car(), std::nullopt);
    edit();
    EXPECT_TRUE(history_.documentDiffers());
    EXPECT_EQ(history_.saveAgain(), SaveAgain::saved);
    EXPECT_SAME_BYTES(readFile(car()), menu_.tuning.store());
}

TEST_F(FileHistoryTest, TheDocumentOfAnEarlierRunIsNotSavedAgainOverWhatAnotherProgramWrote) {
    saveTo(car());
    const DocumentMemory memory = history_.document().memory();
    const Bytes foreign(storeSize, 0x31);
    writeFile(car(), foreign);
    edit();
    history_.resumeDocument(car(), memory);
    EXPECT_TRUE(history_.documentDiffers());
    EXPECT_EQ(history_.saveAgain(), SaveAgain::changedOnDisk);
    EXPECT_EQ(readFile(car()), foreign);
    EXPECT_EQ(history_.overwrite(), SaveAgain::saved);
    EXPECT_SAME_BYTES(readFile(car()), menu_.tuning.store());
}

}  // namespace
}  // namespace tessavo::test
