#include "params/file_watch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "support/settings_fakes.h"
#include "support/temporary_folder.h"

// What the commands of the File menu tell of the files that they read and write, and when.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A call, and how the world stood when it came.
struct Seen {
    std::string what;
    std::filesystem::path path;
    Bytes onDisk;
    std::size_t boxes;
    int localeResets;
    int refreshes;
};

class RecordingWatch : public IFileWatch {
 public:
    explicit RecordingWatch(FileMenu& menu) : menu_(menu) { menu.commands.watchFiles(this); }
    ~RecordingWatch() override { menu_.commands.watchFiles(nullptr); }
    RecordingWatch(const RecordingWatch&) = delete;
    RecordingWatch& operator=(const RecordingWatch&) = delete;

    void willWrite(const std::filesystem::path& path, FileKind kind) override {
        note(kind == FileKind::settings ? "will write settings" : "will write image", path);
    }
    void saved(const std::filesystem::path& path) override { note("saved", path); }
    void notSaved(const std::filesystem::path& path) override { note("not saved", path); }
    void loaded(const std::filesystem::path& path, std::uintmax_t bytesInFile) override {
        note("loaded " + std::to_string(bytesInFile), path);
    }

    [[nodiscard]] std::vector<std::string> calls() const {
        std::vector<std::string> all;
        for (const Seen& call : seen) {
            all.push_back(call.what);
        }
        return all;
    }
    std::vector<Seen> seen;

 private:
    void note(const std::string& what, const std::filesystem::path& path) {
        seen.push_back({what, path, std::filesystem::is_regular_file(path) ? readFile(path) : Bytes(),
                        menu_.boxes.shown.size(), menu_.dialogs.localeResets, menu_.view.refreshes});
    }
    FileMenu& menu_;
};

class FileWatch : public ::testing::Test {
 protected:
    TemporaryFolder folder_;
    FileMenu menu_;
    RecordingWatch watch_{menu_};
    std::mt19937_64 random_{15};
};

TEST_F(FileWatch, EverySaveTellsBeforeTheFileIsTouchedAndOnceTheSetsStandThere) {
    using Command = void (*)(FileMenu&, const std::filesystem::path&);
    const Command commands[]{
        [](FileMenu& menu, const std::filesystem::path&) { menu.commands.saveSettings(); },
        [](FileMenu& menu, const std::filesystem::path&) { menu.commands.saveSettingsAtExit(); },
        [](FileMenu& menu, const std::filesystem::path& path) { menu.commands.saveSettingsTo(path); }};
    for (const Command command : commands) {
        for (const std::optional<Bytes>& before :
             {std::optional<Bytes>(), std::optional(Bytes(12000, 0xC3))}) {
            watch_.seen.clear();
            const auto path = folder_ / (before ? "there.eqs" : "new.eqs");
            std::filesystem::remove(path);
            if (before) {
                writeFile(path, *before);
            }
            menu_.tuning.load(randomStore(random_), 0);
            menu_.dialogs.answer = path;
            command(menu_, path);
            ASSERT_THAT(watch_.calls(), ElementsAre("will write settings", "saved"));
            EXPECT_EQ(watch_.seen[0].path, path);
            EXPECT_EQ(watch_.seen[1].path, path);
            EXPECT_SAME_BYTES(watch_.seen[0].onDisk, before.value_or(Bytes()));
            Bytes after = menu_.tuning.store();
            after.resize(before ? before->size() : storeSize, 0xC3);
            EXPECT_SAME_BYTES(watch_.seen[1].onDisk, after);
        }
    }
    EXPECT_THAT(menu_.texts(), IsEmpty());
}

TEST_F(FileWatch, AnExportTellsBeforeTheFileIsTouchedAndNothingElse) {
    const Bytes before(5000, 0x3C);
    writeFile(folder_ / "out.bin", before);
    menu_.dialogs.answer = folder_ / "out.bin";
    menu_.commands.exportImage();
    ASSERT_THAT(watch_.calls(), ElementsAre("will write image"));
    EXPECT_EQ(watch_.seen[0].path, folder_ / "out.bin");
    EXPECT_SAME_BYTES(watch_.seen[0].onDisk, before);
    menu_.dialogs.answer = folder_ / "no folder" / "out.bin";
    menu_.commands.exportImage();
    EXPECT_THAT(watch_.calls(), ElementsAre("will write image", "will write image"));
}

TEST_F(FileWatch, ASaveThatFailsIsToldAfterItsBoxes) {
    for (const bool atExit : {false, true}) {
        watch_.seen.clear();
        menu_.boxes.shown.clear();
        menu_.dialogs.answer = folder_ / "no folder" / "out.eqs";
        if (atExit) {
            menu_.commands.saveSettingsAtExit();
        } else {
            EXPECT_FALSE(menu_.commands.saveSettings());
        }
        ASSERT_THAT(watch_.calls(), ElementsAre("will write settings", "not saved"));
        EXPECT_EQ(watch_.seen[0].boxes, 0U);
        EXPECT_EQ(watch_.seen[1].boxes, 2U);
        EXPECT_EQ(watch_.seen[1].path, *menu_.dialogs.answer);
    }
}

TEST_F(FileWatch, ALoadTellsTheLengthOfTheFileOnceTheWindowShowsTheSets) {
    for (const std::size_t size : {4U, 300U, 10599U, 10600U, 10601U, 50000U}) {
        watch_.seen.clear();
        Bytes bytes = randomStore(random_);
        bytes.resize(size, 0x11);
        writeFile(folder_ / "in.eqs", bytes);
        menu_.view.refreshes = 0;
        EXPECT_TRUE(menu_.commands.loadSettingsFrom(folder_ / "in.eqs"));
        ASSERT_THAT(watch_.calls(), ElementsAre("loaded " + std::to_string(size)));
        EXPECT_EQ(watch_.seen[0].path, folder_ / "in.eqs");
        EXPECT_EQ(watch_.seen[0].refreshes, 1);
    }
    watch_.seen.clear();
    menu_.dialogs.answer = folder_ / "in.eqs";
    EXPECT_TRUE(menu_.commands.loadSettings());
    EXPECT_THAT(watch_.calls(), ElementsAre("loaded 50000"));
    EXPECT_THAT(menu_.texts(), IsEmpty()) << "no word about the length";
}

TEST_F(FileWatch, NothingIsToldOfARefusedFileACancelledDialogOrAnEmptyPath) {
    writeFile(folder_ / "bad.eqs", Bytes(storeSize, 1));
    EXPECT_FALSE(menu_.commands.loadSettingsFrom(folder_ / "bad.eqs"));
    EXPECT_FALSE(menu_.commands.loadSettingsFrom(folder_ / "missing.eqs"));
    EXPECT_FALSE(menu_.commands.loadSettingsFrom(folder_.path()));
    for (const auto& answer :
         {std::optional<std::filesystem::path>(), std::optional(std::filesystem::path())}) {
        menu_.dialogs.answer = answer;
        menu_.commands.loadSettings();
        menu_.commands.saveSettings();
        menu_.commands.saveSettingsAtExit();
        menu_.commands.exportImage();
    }
    EXPECT_THAT(watch_.calls(), IsEmpty());
}

TEST_F(FileWatch, ASaveToAKnownPathAsksNothingAndKeepsTheRulesOfASave) {
    menu_.dialogs.answer = folder_ / "chosen.eqs";
    menu_.commands.saveSettings();
    menu_.dialogs.asked.clear();
    const int resets = menu_.dialogs.localeResets;
    writeFile(folder_ / "known.eqs", Bytes(12000, 0xC3));
    EXPECT_TRUE(menu_.commands.saveSettingsTo(folder_ / "known.eqs"));
    Bytes expected = menu_.tuning.store();
    expected.resize(12000, 0xC3);
    EXPECT_SAME_BYTES(readFile(folder_ / "known.eqs"), expected) << "the tail stays";
    EXPECT_THAT(menu_.texts(), IsEmpty());
    EXPECT_EQ(menu_.dialogs.localeResets, resets + 1);
    EXPECT_EQ(watch_.seen.back().localeResets, resets);

    EXPECT_FALSE(menu_.commands.saveSettingsTo(folder_ / "no folder" / "known.eqs"));
    EXPECT_THAT(menu_.texts(), ElementsAre("Error opening configuration file!", "Error writing data!"));
    EXPECT_TRUE(menu_.everyBoxIsAnError());
    EXPECT_EQ(menu_.dialogs.localeResets, resets + 2);
    EXPECT_TRUE(menu_.dialogs.asked.empty());
    EXPECT_EQ(menu_.commands.settingsPath(), folder_ / "chosen.eqs") << "the path last chosen in a dialog";
}

TEST_F(FileWatch, BytesOfASettingsFileAreTakenByTheRulesOfALoadAndNobodyIsTold) {
    Bytes store = randomStore(random_);
    Bytes longer = store;
    longer.resize(20000, 7);
    EXPECT_TRUE(menu_.commands.takeSettings(longer));
    EXPECT_SAME_BYTES(menu_.tuning.store(), store);
    EXPECT_EQ(menu_.view.refreshes, 1);
    EXPECT_EQ(menu_.view.boxes.size(), 8U);
    EXPECT_EQ(menu_.dialogs.localeResets, 1);

    store.resize(300);
    EXPECT_TRUE(menu_.commands.takeSettings(store));
    store.resize(storeSize, 0);
    EXPECT_SAME_BYTES(menu_.tuning.store(), store);
    EXPECT_THAT(menu_.texts(), IsEmpty());

    for (const Bytes& bad : {Bytes(), Bytes{0x48}, Bytes(storeSize, 1)}) {
        menu_.boxes.shown.clear();
        EXPECT_FALSE(menu_.commands.takeSettings(bad));
        EXPECT_THAT(menu_.texts(), ElementsAre("Incompatible .eqs file!\r\n"));
        EXPECT_SAME_BYTES(menu_.tuning.store(), store);
    }
    EXPECT_EQ(menu_.dialogs.localeResets, 5);
    EXPECT_THAT(watch_.calls(), IsEmpty());
    EXPECT_TRUE(menu_.commands.settingsPath().empty());
}

}  // namespace
}  // namespace tessavo::test
