#include "params/settings_commands.h"

#include <clocale>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/settings_fakes.h"
#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* cannotOpen = "Error opening configuration file!";
constexpr const char* cannotOpenBinary = "Error opening binary file!";
constexpr const char* cannotWrite = "Error writing data!";
constexpr const char* incompatible = "Incompatible .eqs file!\r\n";

class SettingsFile : public ::testing::Test {
 protected:
    /// Loads a file with these bytes.
    void load(const Bytes& bytes) {
        writeFile(folder_ / "in.eqs", bytes);
        menu_.dialogs.answer = folder_ / "in.eqs";
        menu_.commands.loadSettings();
    }
    void expectUntouched(const Bytes& store, const Bytes& image) {
        EXPECT_SAME_BYTES(menu_.tuning.store(), store);
        EXPECT_SAME_BYTES(menu_.tuning.image(), image);
        EXPECT_EQ(menu_.view.refreshes, 0);
        EXPECT_THAT(menu_.view.boxes, IsEmpty());
    }
    TemporaryFolder folder_;
    FileMenu menu_;
    std::mt19937_64 random_{77};
};

TEST_F(SettingsFile, DialogsOfferTheFilterAndTheExtension) {
    menu_.commands.loadSettings();
    menu_.commands.saveSettings();
    menu_.commands.saveSettingsAtExit();
    menu_.commands.exportImage();
    ASSERT_EQ(menu_.dialogs.asked.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(menu_.dialogs.asked[i].save, i != 0);
        EXPECT_EQ(menu_.dialogs.asked[i].filter,
                  i < 3 ? "Tessavo settings files (*.eqs)|*.eqs||" : "Tessavo Binary files (*.bin)|*.bin||");
        EXPECT_EQ(menu_.dialogs.asked[i].extension, i < 3 ? "eqs" : "bin");
    }
}

TEST_F(SettingsFile, LoadReplacesAllFiveSetsAndBringsTheImageInStep) {
    const Bytes store = randomStore(random_);
    menu_.tuning.state.selectSet(1);
    menu_.tuning.settle();
    Bytes expected = menu_.tuning.image();
    load(store);
    EXPECT_THAT(menu_.texts(), IsEmpty());
    EXPECT_SAME_BYTES(menu_.tuning.store(), store);
    mirrorSet(store, 1, 0, expected);
    EXPECT_SAME_BYTES(menu_.tuning.image(), expected);
}

TEST_F(SettingsFile, ExportRightAfterAReadWritesTheReceivedBytes) {
    Bytes image(imageSize);
    std::generate(image.begin(), image.end(), [this] { return static_cast<std::uint8_t>(random_()); });
    writeAt(image, 0, std::uint32_t{3384});
    menu_.tuning.state.replaceImage(recordOf<ParameterImage>(image));
    menu_.tuning.state.imageToSet();
    for (int round = 0; round < 2; ++round) {
        menu_.dialogs.answer = folder_ / ("out" + std::to_string(round) + ".bin");
        menu_.commands.exportImage();
        EXPECT_SAME_BYTES(readFile(*menu_.dialogs.answer), image);
        menu_.tuning.state.selectSet(3);
        menu_.tuning.state.selectSet(0);
    }
}

TEST_F(SettingsFile, LoadRefreshesThePagesOnceWhenEverythingIsInStep) {
    const Bytes store = randomStore(random_);
    menu_.view.atRefresh = [&] {
        EXPECT_SAME_BYTES(menu_.tuning.store(), store);
        for (std::size_t c = 0; c < 8; ++c) {
            EXPECT_EQ(menu_.tuning.image()[36 + 360 * c + 8], store[224 + 168 * c + 152]);
        }
    };
    load(store);
    EXPECT_EQ(menu_.view.refreshes, 1);
    EXPECT_EQ(menu_.view.boxesBeforeRefresh, 8U);
}

TEST_F(SettingsFile, LoadChecksTheBoxOfEachChannelWithAFlag) {
    Bytes store = randomStore(random_);
    const std::uint8_t flags[8] = {0, 1, 0, 255, 2, 0, 0, 128};
    for (std::size_t c = 0; c < 8; ++c) {
        store[224 + 168 * c + 152] = flags[c];
    }
    load(store);
    using Box = std::pair<int, bool>;
    EXPECT_THAT(menu_.view.boxes, ElementsAre(Box{4, false}, Box{8, true}, Box{1, false}, Box{5, true},
                                              Box{2, true}, Box{6, false}, Box{3, false}, Box{7, true}));
}

TEST_F(SettingsFile, LoadCopiesFlagsPhasesCrossoverKindsAndOffBytesIntoTheImage) {
    const Bytes store = randomStore(random_);
    load(store);
    const Bytes image = menu_.tuning.image();
    for (std::size_t c = 0; c < 8; ++c) {
        const std::size_t record = 224 + 168 * c;
        const std::size_t block = 36 + 360 * c;
        EXPECT_EQ(image[block + 8], store[record + 152]);
        EXPECT_EQ(image[block + 9], store[record + 153]);
        EXPECT_EQ(image[block + 145], store[record + 129]);
        EXPECT_EQ(image[block + 151], store[record + 135]);
        for (std::size_t b = 0; b < 8; ++b) {
            EXPECT_EQ(image[block + 16 + 16 * b + 12], store[record + 16 * b + 12]);
        }
    }
}

TEST_F(SettingsFile, LoadKeepsModeSetAndSelectionAndSendsNothing) {
    menu_.tuning.state.setFilterMode(2);
    menu_.tuning.state.selectSet(3);
    menu_.tuning.state.setSelectionMask(0x18);
    menu_.tuning.settle();
    load(randomStore(random_));
    EXPECT_EQ(menu_.tuning.state.filterMode(), 2U);
    EXPECT_EQ(menu_.tuning.state.currentSet(), 3U);
    EXPECT_EQ(menu_.tuning.state.selectionMask(), 0x18);
    EXPECT_FALSE(menu_.tuning.state.liveMode());
    EXPECT_FALSE(menu_.tuning.state.updatePending());
}

TEST_F(SettingsFile, LoadTestsTheRecordOfTheCurrentSetAlone) {
    Bytes store = randomStore(random_);
    for (const std::size_t set : {0U, 1U, 3U, 4U}) {
        writeAt(store, setSize * set, std::uint32_t{0xDEADBEEF});
    }
    const Bytes before = menu_.tuning.store();
    const Bytes image = menu_.tuning.image();
    load(store);
    EXPECT_THAT(menu_.texts(), ElementsAre(incompatible)) << "the current set is 0";
    expectUntouched(before, image);

    menu_.boxes.shown.clear();
    menu_.tuning.state.selectSet(2);
    load(store);
    EXPECT_THAT(menu_.texts(), IsEmpty());
    EXPECT_SAME_BYTES(menu_.tuning.store(), store);
}

TEST_F(SettingsFile, LoadTakesAShortFileWithAnIntactRecordAndClearsTheRest) {
    Bytes store = randomStore(random_);
    store.resize(5000);
    load(store);
    EXPECT_THAT(menu_.texts(), IsEmpty());
    store.resize(storeSize, 0);
    EXPECT_SAME_BYTES(menu_.tuning.store(), store);
    EXPECT_EQ(readAt<std::uint32_t>(menu_.tuning.store(), 3 * setSize), 0U);
    EXPECT_EQ(readAt<std::uint32_t>(menu_.tuning.store(), 4 * setSize), 0U);
}

TEST_F(SettingsFile, LoadTakesAFileOfTheFourBytesThatItTests) {
    load(littleEndian(std::uint32_t{2120}));
    EXPECT_THAT(menu_.texts(), IsEmpty());
    Bytes expected(storeSize, 0);
    writeAt(expected, 0, std::uint32_t{2120});
    EXPECT_SAME_BYTES(menu_.tuning.store(), expected);
}

TEST_F(SettingsFile, LoadTakesTheStartOfALongFile) {
    const Bytes store = randomStore(random_);
    Bytes longer = store;
    longer.resize(50000, 0xAA);
    load(longer);
    EXPECT_THAT(menu_.texts(), IsEmpty());
    EXPECT_SAME_BYTES(menu_.tuning.store(), store);
}

TEST_F(SettingsFile, LoadRefusesAnEmptyFile) {
    const Bytes before = menu_.tuning.store();
    const Bytes image = menu_.tuning.image();
    load({});
    EXPECT_THAT(menu_.texts(), ElementsAre(incompatible));
    EXPECT_TRUE(menu_.everyBoxIsAnError());
    expectUntouched(before, image);
}

TEST_F(SettingsFile, LoadRefusesAFileThatEndsWithinTheTestedWordOrBeforeIt) {
    const Bytes before = menu_.tuning.store();
    const Bytes image = menu_.tuning.image();
    load(Bytes{0x48});  // 2120 is 0x0848
    EXPECT_THAT(menu_.texts(), ElementsAre(incompatible));
    expectUntouched(before, image);
    menu_.tuning.state.selectSet(4);
    const Bytes imageOfSet4 = menu_.tuning.image();
    Bytes store = randomStore(random_);
    store.resize(4 * setSize);
    load(store);
    EXPECT_THAT(menu_.texts(), ElementsAre(incompatible, incompatible));
    expectUntouched(before, imageOfSet4);
}

TEST_F(SettingsFile, LoadRefusesAnyOtherRecordSize) {
    Bytes store = randomStore(random_);
    const Bytes before = menu_.tuning.store();
    const Bytes image = menu_.tuning.image();
    for (const std::uint32_t bad : {0U, 2119U, 2121U, 0x00010848U, 0x48080000U, 0xFFFFFFFFU}) {
        menu_.boxes.shown.clear();
        writeAt(store, 0, bad);
        load(store);
        EXPECT_THAT(menu_.texts(), ElementsAre(incompatible)) << bad;
        expectUntouched(before, image);
    }
}

TEST_F(SettingsFile, LoadOfAMissingFileSaysSo) {
    const Bytes before = menu_.tuning.store();
    const Bytes image = menu_.tuning.image();
    menu_.dialogs.answer = folder_ / "nowhere.eqs";
    menu_.commands.loadSettings();
    EXPECT_THAT(menu_.texts(), ElementsAre(cannotOpen));
    EXPECT_TRUE(menu_.everyBoxIsAnError());
    expectUntouched(before, image);
    EXPECT_FALSE(std::filesystem::exists(folder_ / "nowhere.eqs"));
}

TEST_F(SettingsFile, LoadOfAFolderSaysThatItCannotBeOpened) {
    const Bytes before = menu_.tuning.store();
    const Bytes image = menu_.tuning.image();
    menu_.dialogs.answer = folder_.path();
    menu_.commands.loadSettings();
    EXPECT_THAT(menu_.texts(), ElementsAre(cannotOpen));
    expectUntouched(before, image);
}

TEST_F(SettingsFile, CancelledDialogsChangeNothingAndShowNothing) {
    const Bytes before = menu_.tuning.store();
    const Bytes image = menu_.tuning.image();
    menu_.dialogs.answer = folder_ / "kept.eqs";
    menu_.commands.saveSettings();
    menu_.dialogs.answer = std::nullopt;
    menu_.commands.loadSettings();
    menu_.commands.saveSettings();
    menu_.commands.saveSettingsAtExit();
    menu_.commands.exportImage();
    EXPECT_THAT(menu_.texts(), IsEmpty());
    expectUntouched(before, image);
    EXPECT_EQ(menu_.commands.settingsPath(), folder_ / "kept.eqs");
}

TEST_F(SettingsFile, AnEmptyPathStopsWithoutAMessage) {
    const Bytes before = menu_.tuning.store();
    const Bytes image = menu_.tuning.image();
    menu_.dialogs.answer = std::filesystem::path();
    menu_.commands.loadSettings();
    menu_.commands.saveSettings();
    menu_.commands.saveSettingsAtExit();
    menu_.commands.exportImage();
    EXPECT_THAT(menu_.texts(), IsEmpty());
    expectUntouched(before, image);
}

TEST_F(SettingsFile, TheChosenPathIsRememberedEvenWhenItCannotBeOpened) {
    menu_.dialogs.answer = folder_ / "nowhere.eqs";
    menu_.commands.loadSettings();
    EXPECT_EQ(menu_.commands.settingsPath(), folder_ / "nowhere.eqs");
    menu_.dialogs.answer = folder_ / "saved.eqs";
    menu_.commands.saveSettings();
    EXPECT_EQ(menu_.commands.settingsPath(), folder_ / "saved.eqs");
    menu_.dialogs.answer = folder_ / "exit.eqs";
    menu_.commands.saveSettingsAtExit();
    EXPECT_EQ(menu_.commands.settingsPath(), folder_ / "saved.eqs") << "the save at exit is not remembered";
    menu_.dialogs.answer = folder_ / "image.bin";
    menu_.commands.exportImage();
    EXPECT_EQ(menu_.commands.settingsPath(), folder_ / "saved.eqs");
    EXPECT_EQ(menu_.commands.binaryPath(), folder_ / "image.bin");
}

TEST_F(SettingsFile, SaveWritesTheStoreByteForByte) {
    menu_.tuning.load(randomStore(random_), 2);
    for (const bool atExit : {false, true}) {
        menu_.dialogs.answer = folder_ / (atExit ? "exit.eqs" : "out.eqs");
        if (atExit) {
            menu_.commands.saveSettingsAtExit();
        } else {
            EXPECT_TRUE(menu_.commands.saveSettings());
        }
        EXPECT_SAME_BYTES(readFile(*menu_.dialogs.answer), menu_.tuning.store());
    }
    EXPECT_THAT(menu_.texts(), IsEmpty());
    EXPECT_FALSE(menu_.tuning.state.updatePending());
}

TEST_F(SettingsFile, SaveOverALongerFileKeepsItsTail) {
    writeFile(folder_ / "out.eqs", Bytes(12000, 0xC3));
    menu_.dialogs.answer = folder_ / "out.eqs";
    menu_.commands.saveSettings();
    Bytes expected = menu_.tuning.store();
    expected.resize(12000, 0xC3);
    EXPECT_SAME_BYTES(readFile(folder_ / "out.eqs"), expected);
    EXPECT_THAT(menu_.texts(), IsEmpty());
}

TEST_F(SettingsFile, SaveOverAShorterFileMakesItWhole) {
    writeFile(folder_ / "out.eqs", Bytes(100, 0xC3));
    menu_.dialogs.answer = folder_ / "out.eqs";
    menu_.commands.saveSettings();
    EXPECT_SAME_BYTES(readFile(folder_ / "out.eqs"), menu_.tuning.store());
}

TEST_F(SettingsFile, SaveWhereNothingCanBeOpenedGivesTwoMessagesInOrder) {
    const Bytes before = menu_.tuning.store();
    for (const std::filesystem::path& bad :
         {folder_ / "no-such-folder" / "out.eqs", std::filesystem::path(folder_.path())}) {
        menu_.boxes.shown.clear();
        menu_.dialogs.answer = bad;
        menu_.commands.saveSettings();
        EXPECT_THAT(menu_.texts(), ElementsAre(cannotOpen, cannotWrite)) << bad;
        EXPECT_TRUE(menu_.everyBoxIsAnError());
        menu_.boxes.shown.clear();
        menu_.commands.saveSettingsAtExit();
        EXPECT_THAT(menu_.texts(), ElementsAre(cannotOpen, cannotWrite)) << bad;
        menu_.boxes.shown.clear();
        menu_.commands.exportImage();
        EXPECT_THAT(menu_.texts(), ElementsAre(cannotOpenBinary, cannotWrite)) << bad;
        EXPECT_TRUE(menu_.everyBoxIsAnError());
    }
    EXPECT_SAME_BYTES(menu_.tuning.store(), before);
}

TEST_F(SettingsFile, SavedAndLoadedAgainIsTheSameStore) {
    menu_.tuning.load(randomStore(random_), 1);
    const Bytes store = menu_.tuning.store();
    const Bytes image = menu_.tuning.image();
    menu_.dialogs.answer = folder_ / "round.eqs";
    menu_.commands.saveSettings();
    FileMenu other;
    other.tuning.state.selectSet(1);
    other.dialogs.answer = folder_ / "round.eqs";
    other.commands.loadSettings();
    EXPECT_SAME_BYTES(other.tuning.store(), store);
    EXPECT_SAME_BYTES(other.tuning.image(), image);
}

TEST_F(SettingsFile, LoadFromAGivenPathTellsWhetherTheStoreWasReplaced) {
    EXPECT_FALSE(menu_.commands.loadSettingsFrom(folder_ / "nowhere.eqs"));
    EXPECT_THAT(menu_.texts(), ElementsAre(cannotOpen));
    const Bytes store = randomStore(random_);
    writeFile(folder_ / "there.eqs", store);
    EXPECT_TRUE(menu_.commands.loadSettingsFrom(folder_ / "there.eqs"));
    EXPECT_SAME_BYTES(menu_.tuning.store(), store);
    writeFile(folder_ / "bad.eqs", Bytes(storeSize, 1));
    EXPECT_FALSE(menu_.commands.loadSettingsFrom(folder_ / "bad.eqs"));
    EXPECT_SAME_BYTES(menu_.tuning.store(), store);
}

TEST_F(SettingsFile, RandomFilesNeverCrashAndAreTakenOrRefusedWhole) {
    for (int round = 0; round < 60; ++round) {
        Bytes bytes(random_() % 12000);
        for (std::uint8_t& byte : bytes) {
            byte = static_cast<std::uint8_t>(random_());
        }
        if (round % 2 == 0 && bytes.size() >= 4) {
            writeAt(bytes, 0, std::uint32_t{2120});
        }
        const Bytes before = menu_.tuning.store();
        menu_.boxes.shown.clear();
        load(bytes);
        const bool valid = bytes.size() >= 4 && readAt<std::uint32_t>(bytes, 0) == 2120;
        bytes.resize(storeSize, 0);
        ASSERT_SAME_BYTES(menu_.tuning.store(), valid ? bytes : before) << round;
    }
}

TEST_F(SettingsFile, EachCommandResetsTheLocaleOnceWhateverComesOfIt) {
    writeFile(folder_ / "good.eqs", menu_.tuning.store());
    writeFile(folder_ / "bad.eqs", Bytes(storeSize, 1));
    const std::optional<std::filesystem::path> answers[]{
        std::nullopt,        std::filesystem::path(), folder_ / "good.eqs",
        folder_ / "bad.eqs", folder_ / "missing.eqs", folder_ / "no folder" / "a.eqs"};
    const std::function<void()> commands[]{[this] { menu_.commands.loadSettings(); },
                                           [this] { menu_.commands.saveSettings(); },
                                           [this] { menu_.commands.exportImage(); }};
    int resets = 0;
    for (const auto& command : commands) {
        for (const auto& answer : answers) {
            menu_.dialogs.answer = answer;
            command();
            EXPECT_EQ(menu_.dialogs.localeResets, ++resets);
        }
    }
}

TEST_F(SettingsFile, ALoadWithoutADialogResetsTheLocaleToo) {
    writeFile(folder_ / "good.eqs", menu_.tuning.store());
    menu_.commands.loadSettingsFrom(folder_ / "good.eqs");
    EXPECT_EQ(menu_.dialogs.localeResets, 1);
    menu_.commands.loadSettingsFrom(folder_ / "missing.eqs");
    EXPECT_EQ(menu_.dialogs.localeResets, 2);
}

TEST_F(SettingsFile, TheSaveAtTheExitLeavesTheLocaleAlone) {
    const std::optional<std::filesystem::path> answers[]{std::nullopt, folder_ / "exit.eqs",
                                                         folder_ / "no folder" / "exit.eqs"};
    for (const auto& answer : answers) {
        menu_.dialogs.answer = answer;
        menu_.commands.saveSettingsAtExit();
    }
    EXPECT_EQ(menu_.dialogs.asked.size(), 3U);
    EXPECT_EQ(menu_.dialogs.localeResets, 0);
}

TEST(LocaleAfterDialogs, BecomesEnglishWhereThereIsOneAndStaysOtherwise) {
    std::setlocale(LC_ALL, "C");
    const char* english = std::setlocale(LC_ALL, "English");
    const std::string known = english != nullptr ? english : "";
    for (const char* before : {"C.UTF-8", "C"}) {
        const char* set = std::setlocale(LC_ALL, before);
        const std::string expected = !known.empty() ? known : set != nullptr ? set : "C";
        resetLocaleAfterDialog();
        EXPECT_EQ(std::setlocale(LC_ALL, nullptr), expected);
    }
    std::setlocale(LC_ALL, "C");
}

TEST_F(SettingsFile, ExportWritesTheImageWithoutADigest) {
    menu_.dialogs.answer = folder_ / "out.bin";
    menu_.commands.exportImage();
    const Bytes file = readFile(folder_ / "out.bin");
    EXPECT_SAME_BYTES(file, menu_.tuning.image());
    ASSERT_EQ(file.size(), 3384U);
    EXPECT_EQ(readAt<std::uint32_t>(file, 0), 3384U);
    EXPECT_THAT(menu_.texts(), IsEmpty());
}

TEST_F(SettingsFile, ExportOverALongerFileKeepsItsTail) {
    writeFile(folder_ / "out.bin", Bytes(4000, 0x3C));
    menu_.dialogs.answer = folder_ / "out.bin";
    menu_.commands.exportImage();
    Bytes expected = menu_.tuning.image();
    expected.resize(4000, 0x3C);
    EXPECT_SAME_BYTES(readFile(folder_ / "out.bin"), expected);
}

TEST_F(SettingsFile, NamesBeyondAsciiAreFine) {
    menu_.dialogs.answer = folder_.path() / std::filesystem::path(u"\u00E4\u20AC \U0001F600.eqs");
    menu_.commands.saveSettings();
    EXPECT_THAT(menu_.texts(), IsEmpty());
    EXPECT_SAME_BYTES(readFile(*menu_.dialogs.answer), menu_.tuning.store());
    menu_.commands.loadSettings();
    EXPECT_THAT(menu_.texts(), IsEmpty());
}

TEST(ValidRecord, IsToldByItsFirstWordAlone) {
    Bytes bytes(setSize, 0x77);
    writeAt(bytes, 0, std::uint32_t{2120});
    EXPECT_TRUE(isValidRecord(recordOf<ParameterSet>(bytes)));
    bytes[0] ^= 1U;
    EXPECT_FALSE(isValidRecord(recordOf<ParameterSet>(bytes)));
}

}  // namespace
}  // namespace tessavo::test
