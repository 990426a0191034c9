#include <QApplication>
#include <QTest>
#include <algorithm>
#include <cstring>

#include "comm/page/line_watcher.h"
#include "comm/page/page_bench.h"
#include "controls/skin_group_box.h"

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Commands : public PageBench {
 protected:
    void chooseImage(const std::filesystem::path& path) {
        dialogs.answer = path;
        click(button(comm_id::selectImage));
    }
};

TEST_F(Commands, SavingASetNeedsLiveMode) {
    for (int set = 0; set <= 5; ++set) {
        shown.clear();
        click(saveButton(set));
        EXPECT_THAT(shown, ElementsAre("Please turn on Live Mode")) << set;
    }
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(Commands, LoadingASetNeedsLiveModeOff) {
    tuning.state.setLiveMode(true);
    for (int set = 0; set <= 5; ++set) {
        shown.clear();
        click(loadButton(set));
        EXPECT_THAT(shown, ElementsAre("Please turn off Live Mode")) << set;
    }
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(Commands, EachButtonSavesToItsSetOnly) {
    for (int set = 0; set <= 5; ++set) {
        tuning.state.setVolume(static_cast<float>(-set), true);
        goLive();
        click(button(comm_id::clearLog));
        auto expected = memory().sets;
        expected[static_cast<std::size_t>(set)] = imageBytes();
        click(saveButton(set));
        EXPECT_EQ(memory().sets, expected) << set;
        EXPECT_EQ(
            logLines(),
            joined({opened("Prepare XModem128 Message"),
                    {"TX-->    Send XModem Message", "RX-->    Wait for answer", "RX-->    Answer received"},
                    disconnected()}));
    }
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(Commands, EachButtonLoadsItsSetAndRefreshesThePages) {
    for (int set = 0; set <= 5; ++set) {
        tuning.state.setVolume(static_cast<float>(-1 - set), true);
        goLive();
        click(saveButton(set));
    }
    tuning.state.setLiveMode(false);
    const ParameterStore before = tuning.state.store();
    for (int set = 0; set <= 5; ++set) {
        refreshes = 0;
        click(button(comm_id::clearLog));
        click(loadButton(set));
        EXPECT_EQ(refreshes, 1) << set;
        EXPECT_EQ(imageBytes(), memory().sets[static_cast<std::size_t>(set)]);
        // The first page position is record channel 7.
        EXPECT_FLOAT_EQ(tuning.state.currentParameterSet().channels[7].volumeDb,
                        static_cast<float>(-1 - set));
        EXPECT_EQ(logLines(), joined({opened("Prepare XModem2k Message"),
                                      {"TX-->    Send XModem Message", "RX-->    Wait for answer",
                                       "ST-->    Answer received", "RX-->    Receiving XModem message",
                                       "RX-->    Message received"},
                                      disconnected()}));
    }
    for (std::size_t other = 1; other < 5; ++other) {
        EXPECT_EQ(std::memcmp(&tuning.state.store().sets[other], &before.sets[other], sizeof(ParameterSet)),
                  0)
            << "only the current set changes";
    }
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(Commands, DefaultSetIsSetNumberZeroBothWays) {
    // Found as a person finds them: by the caption, inside the group of that title.
    const auto defaultSetOf = [&](int groupId) -> CxSkinButton* {
        CxSkinButton* found = nullptr;
        for (CxSkinButton* each : page->findChildren<CxSkinButton*>()) {
            if (each->text() == QStringLiteral("Default Set") &&
                control<SkinGroupBox>(groupId).isAncestorOf(each)) {
                EXPECT_EQ(found, nullptr) << "once only";
                found = each;
            }
        }
        return found;
    };
    ASSERT_EQ(control<SkinGroupBox>(comm_id::saveGroup).title(), QStringLiteral("Save Set In RAM To"));
    ASSERT_EQ(control<SkinGroupBox>(comm_id::loadGroup).title(), QStringLiteral("Load Set from RAM"));
    CxSkinButton* save = defaultSetOf(comm_id::saveGroup);
    CxSkinButton* load = defaultSetOf(comm_id::loadGroup);
    ASSERT_NE(save, nullptr);
    ASSERT_NE(load, nullptr);
    tuning.state.setVolume(-5.0F, true);
    goLive();
    auto expected = memory().sets;
    expected[0] = imageBytes();
    ASSERT_NE(expected, memory().sets);
    click(*save);
    EXPECT_EQ(memory().sets, expected) << "set 0 and no other";
    tuning.state.setLiveMode(false);
    tuning.state.setVolume(-3.0F, true);
    click(*load);
    EXPECT_EQ(imageBytes(), expected[0]);
    EXPECT_FLOAT_EQ(tuning.state.currentParameterSet().channels[7].volumeDb, -5.0F);
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(Commands, ASetWithAWrongDigestIsToldAndLeavesTheCurrentSet) {
    plugIn({"wrong-digest"});
    tuning.state.setVolume(-12.5F, true);
    const Bytes store = tuning.store();
    click(loadButton(3));
    EXPECT_THAT(shown, ElementsAre("The Parameterset is not right.\n MD5 checksum failed!"));
    EXPECT_EQ(refreshes, 0);
    EXPECT_SAME_BYTES(tuning.store(), store);
    EXPECT_EQ(imageBytes(), memory().sets[3]) << "the image keeps the received bytes";
}

TEST_F(Commands, VersionsAreShownInHexadecimal) {
    click(button(comm_id::update));
    EXPECT_EQ(field(comm_id::hardwareVersion).text(), QStringLiteral("0x00000102"));
    EXPECT_EQ(field(comm_id::softwareVersion).text(), QStringLiteral("0x00010006"));
    EXPECT_TRUE(page->versionsKnown());
    EXPECT_EQ(line().phase(), TransferLine::Phase::idle) << "one block needs no line";
}

TEST_F(Commands, VersionsStayUnknownAfterAFailure) {
    plugIn({"no-request"});
    click(button(comm_id::update));
    EXPECT_FALSE(page->versionsKnown());
    EXPECT_EQ(field(comm_id::hardwareVersion).text(), QString());
}

TEST_F(Commands, TheChosenImageFileStandsInTheField) {
    chooseImage(folder / "software.bin");
    ASSERT_EQ(dialogs.asked.size(), 1U);
    EXPECT_FALSE(dialogs.asked[0].save);
    EXPECT_EQ(dialogs.asked[0].filter, "Velmira Software Image File (*.bin)|*.bin||");
    EXPECT_EQ(dialogs.asked[0].extension, "bin");
    const QString path = field(comm_id::imagePath).text();
    EXPECT_TRUE(path.endsWith(QStringLiteral("software.bin")));
    dialogs.answer.reset();
    click(button(comm_id::selectImage));
    EXPECT_EQ(field(comm_id::imagePath).text(), path) << "cancelled";
}

TEST_F(Commands, FlashingNothingDoesNothing) {
    click(button(comm_id::flashFile));
    EXPECT_TRUE(button(comm_id::flashFile).isEnabled());
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(Commands, TheLargestImageIsFlashedWithEveryBlockTold) {
    constexpr int blocks = 512;
    chooseImage(imageFile("full.bin", 524288));
    bool enabledMeanwhile = true;
    QString first;
    const auto watch = QObject::connect(transfers.get(), &ForegroundTransfers::started, page, [&] {
        enabledMeanwhile = button(comm_id::flashFile).isEnabled();
        first = line().text();
    });
    LineWatcher watcher(line());
    const auto before = clock.now();
    click(button(comm_id::flashFile));
    QObject::disconnect(watch);
    EXPECT_FALSE(enabledMeanwhile);
    EXPECT_TRUE(button(comm_id::flashFile).isEnabled());
    EXPECT_EQ(first, QStringLiteral("Block 0 of 512, 0 %"));
    EXPECT_EQ(memory().software.size(), 524288U);
    EXPECT_EQ(memory().software, readFile(folder / "full.bin"));
    // 250 ms of pauses for each of the 512 blocks.
    EXPECT_GE(clock.now() - before, std::chrono::milliseconds(blocks * 250));
    const std::vector<std::string> texts = watcher.texts();
    ASSERT_EQ(texts.size(), static_cast<std::size_t>(blocks) + 2U) << "0 to 512, then the end";
    for (int sent = 1; sent <= blocks; ++sent) {
        const std::string& text = texts[static_cast<std::size_t>(sent)];
        const std::string share = std::to_string(sent * 100 / blocks);
        const std::string told = "Block " + std::to_string(sent) + " of 512, " + share + " %";
        // Time left from the fourth block on; 251 ms for each block that is still to come.
        if (sent < 4) {
            EXPECT_EQ(text, told);
        } else {
            ASSERT_THAT(text, ::testing::StartsWith(told + ", "));
            ASSERT_THAT(text, ::testing::EndsWith(" left"));
            const std::string left = text.substr(told.size() + 2);
            const auto colon = left.find(':');
            ASSERT_NE(colon, std::string::npos) << text;
            const double seconds = 60.0 * std::stoi(left) + std::stoi(left.substr(colon + 1));
            EXPECT_NEAR(seconds, 0.251 * (blocks - sent), 1.01) << text;
        }
        EXPECT_EQ(watcher.blocks()[static_cast<std::size_t>(sent)], sent);
    }
    EXPECT_EQ(texts.back(), "Done, 512 blocks");
    EXPECT_EQ(line().phase(), TransferLine::Phase::done);
    const LogLines lines = logLines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "TX-->    Send XModem Message"), blocks);
    EXPECT_EQ(lines.front(), "ST-->    Prepare XModem1k Message");
    EXPECT_EQ(lines.back(), "ST-->    Disconnected from Target");
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(Commands, TheTimeLeftComesFromTheMeanOfTheBlocksSoFar) {
    emit transfers->started(512);
    EXPECT_EQ(line().text(), QStringLiteral("Block 0 of 512, 0 %"));
    page->blockSent(1, 512, Milliseconds{10000});
    page->blockSent(2, 512, Milliseconds{10250});
    page->blockSent(3, 512, Milliseconds{10500});
    EXPECT_EQ(line().text(), QStringLiteral("Block 3 of 512, 0 %"));
    page->blockSent(4, 512, Milliseconds{10750});
    // 508 blocks of 250 ms.
    EXPECT_EQ(line().text(), QStringLiteral("Block 4 of 512, 0 %, 2:07 left"));
    page->blockSent(256, 512, Milliseconds{10000 + 255 * 250});
    EXPECT_EQ(line().text(), QStringLiteral("Block 256 of 512, 50 %, 1:04 left"));
    emit transfers->ended(false);
    EXPECT_EQ(line().phase(), TransferLine::Phase::stopped);
    EXPECT_EQ(line().text(), QStringLiteral("Stopped at block 256 of 512"));
    emit transfers->started(1);
    EXPECT_EQ(line().text(), QStringLiteral("No transfer"));
    emit transfers->ended(true);
    EXPECT_EQ(line().text(), QStringLiteral("No transfer"));
}

TEST_F(Commands, ABlockOfAnotherTransferDoesNotMoveTheLine) {
    page->blockSent(1, 1, Milliseconds{5});
    page->blockSent(3, 9, Milliseconds{5});
    EXPECT_EQ(line().text(), QStringLiteral("No transfer"));
}

TEST_F(Commands, OneByteTooManyIsRefused) {
    chooseImage(imageFile("large.bin", 524289));
    click(button(comm_id::flashFile));
    EXPECT_THAT(shown, ElementsAre("File size too large!"));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_TRUE(button(comm_id::flashFile).isEnabled());
    EXPECT_EQ(line().phase(), TransferLine::Phase::idle);
}

TEST_F(Commands, AFileThatCannotBeReadIsTold) {
    chooseImage(folder / "gone.bin");
    click(button(comm_id::flashFile));
    EXPECT_THAT(shown, ElementsAre("Error reading file!"));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_TRUE(button(comm_id::flashFile).isEnabled());
}

TEST_F(Commands, AFlashThatStopsShowsWhere) {
    plugIn({"silence=3"});
    chooseImage(imageFile("three.bin", 5000));
    click(button(comm_id::flashFile));
    EXPECT_EQ(line().phase(), TransferLine::Phase::stopped);
    EXPECT_EQ(line().text(), QStringLiteral("Stopped at block 2 of 5"));
    EXPECT_TRUE(button(comm_id::flashFile).isEnabled());
    EXPECT_EQ(logLines().back(), "ERR-->   Wait for answer");
}

TEST_F(Commands, FlashingLeavesTheFocusWhereItWas) {
    chooseImage(imageFile("small.bin", 3000));
    QWidget* meanwhile = &button(comm_id::flashFile);
    const auto watch = QObject::connect(transfers.get(), &ForegroundTransfers::started, page,
                                        [&] { meanwhile = QApplication::focusWidget(); });
    button(comm_id::flashFile).setFocus();
    QTest::keyClick(&button(comm_id::flashFile), Qt::Key_Space);
    QObject::disconnect(watch);
    EXPECT_EQ(meanwhile, page) << "no other control has it";
    EXPECT_EQ(QApplication::focusWidget(), &button(comm_id::flashFile));
}

TEST_F(Commands, TheKeyboardStartsACommandToo) {
    button(comm_id::update).setFocus();
    QTest::keyClick(&button(comm_id::update), Qt::Key_Space);
    EXPECT_TRUE(page->versionsKnown());
}

}  // namespace
}  // namespace tessavo::test
