#include "comm/target_commands.h"

#include <cstring>
#include <fstream>

#include "comm/live_worker.h"
#include "comm/target_commands_fixture.h"
#include "params/image_digest.h"

namespace tessavo::test {
namespace {

namespace fs = std::filesystem;

TEST_F(TargetCommandsTest, SavesTheLiveSetIntoEverySet) {
    tuning.setLiveMode(true);
    for (std::uint8_t set = 0; set <= 5; ++set) {
        port.written.clear();
        targetTakes(1);
        EXPECT_TRUE(commands.SaveSetToRam(set));
        Bytes payload = concatenated(Bytes{1, set}, md5(bytesOf(tuning.image())));
        ASSERT_EQ(payload.size(), 18U);
        payload.resize(128, 0x1A);
        EXPECT_THAT(port.written, testing::ElementsAre(frameOf(1, 1, payload), Bytes{0x04}));
    }
}

TEST_F(TargetCommandsTest, SavingIsOneExchangeInBlocksOf128Bytes) {
    tuning.setLiveMode(true);
    targetTakes(1);
    EXPECT_TRUE(commands.SaveSetToRam(3));
    expectTranscript({opened("Prepare XModem128 Message"), connected(), blockWritten(133), blockTaken(),
                      disconnected(), closed()});
}

TEST_F(TargetCommandsTest, SavingNeedsLiveMode) {
    for (std::uint8_t set = 0; set <= 5; ++set) {
        EXPECT_FALSE(commands.SaveSetToRam(set));
    }
    expectNothingSent(Lines(6, "box: Please turn on Live Mode"));
}

TEST_F(TargetCommandsTest, AFailedSaveIsInTheLogOnly) {
    tuning.setLiveMode(true);
    port.answer({0x43, 0x15});
    EXPECT_FALSE(commands.SaveSetToRam(1));
    EXPECT_THAT(transcript.lines(), testing::Contains("RX Negative answer received"));
    EXPECT_THAT(transcript.lines(), testing::Not(testing::Contains(testing::HasSubstr("box"))));
}

TEST_F(TargetCommandsTest, SetsTheTargetDoesNotHaveAreNotAskedFor) {
    for (const bool live : {false, true}) {
        tuning.setLiveMode(live);
        for (unsigned set = 6; set < 256; ++set) {
            EXPECT_FALSE(commands.SaveSetToRam(static_cast<std::uint8_t>(set)));
            EXPECT_FALSE(load(static_cast<std::uint8_t>(set)));
        }
    }
    expectNothingSent();
}

TEST_F(TargetCommandsTest, LoadsEverySetIntoTheCurrentOne) {
    const ParameterImage received = otherImage();
    for (std::uint8_t set = 0; set <= 5; ++set) {
        port.written.clear();
        targetReplies(setReply(received));
        EXPECT_TRUE(load(set));
        EXPECT_THAT(port.written, testing::ElementsAre(requestFrame({4, set}), Bytes{0x04}));
    }
    EXPECT_EQ(refreshes, 6);
}

TEST_F(TargetCommandsTest, ALoadedSetReachesTheCurrentRecordAndImage) {
    tuning.selectSet(2);
    const Bytes firstSet = bytesOf(tuning.store().sets[0].channels);
    const ParameterImage received = otherImage();
    targetReplies(setReply(received));
    float volumeAtRefresh = 0;
    EXPECT_TRUE(commands.LoadSetFromRam(
        1, [&] { volumeAtRefresh = tuning.currentParameterSet().channels[0].volumeDb; }));
    EXPECT_FLOAT_EQ(volumeAtRefresh, 4.5F);
    EXPECT_EQ(tuning.currentSet(), 2U);
    for (const OutputChannelParams& channel : tuning.currentParameterSet().channels) {
        EXPECT_FLOAT_EQ(channel.volumeDb, 4.5F);
        EXPECT_EQ(channel.bands[2].frequencyHz, 1234);
    }
    EXPECT_EQ(tuning.currentParameterSet().routerSource[3], 5U);
    EXPECT_EQ(bytesOf(tuning.image().channels[0].bands), bytesOf(received.channels[0].bands));
    EXPECT_EQ(bytesOf(tuning.store().sets[0].channels), firstSet);
}

TEST_F(TargetCommandsTest, LoadingIsOneReceive) {
    targetReplies(setReply(tuning.image()));
    EXPECT_TRUE(load(5));
    expectTranscript(
        {opened("Prepare XModem2k Message"),
         connected(),
         requestWritten(),
         requestTaken(),
         {"RX Receiving XModem message", "read 4101 in 10000: 4101 bytes", "RX Message received"},
         disconnected(),
         closed()});
}

TEST_F(TargetCommandsTest, GoingLiveRightAfterALoadSendsTheReceivedBytes) {
    ParameterImage received = otherImage();
    received.channels[4].gainWord = 0x01234567;
    received.channels[4].delaySamples = 149;
    received.groupGainTenthDb[4] = -35;
    received.groupDelayTenthMs[4] = 20;
    received.channels[2].bandWords[3] = {1, 2, 3, 4, 5};
    received.spare2998.fill(0xEE);
    received.inputRow0.bypass = 1;
    targetReplies(setReply(received));
    ASSERT_TRUE(load(4));
    EXPECT_EQ(bytesOf(tuning.image()), bytesOf(received));
    port.written.clear();
    tuning.setLiveMode(true);
    targetTakes(1);
    targetReplies(Bytes(10, 0x11));
    LiveWorker(tuning, engine, clock, boxes).step();
    Bytes payload = concatenated(bytesOf(received), md5Image(received));
    payload.resize(4096, 0x1A);
    ASSERT_FALSE(port.written.empty());
    EXPECT_EQ(port.written[0], frameOf(5, 1, payload));
}

TEST_F(TargetCommandsTest, TheDigestIsJudgedBeforeTheSizeIsSetRight) {
    ParameterImage received = otherImage();
    received.imageSize = 77;
    targetReplies(setReply(received));
    EXPECT_TRUE(load(4));
    ParameterImage expected = received;
    expected.imageSize = 3384;
    EXPECT_EQ(bytesOf(tuning.image()), bytesOf(expected));
}

TEST_F(TargetCommandsTest, LoadsWithoutAnybodyToRefresh) {
    targetReplies(setReply(otherImage()));
    EXPECT_TRUE(commands.LoadSetFromRam(1));
    EXPECT_FLOAT_EQ(tuning.currentParameterSet().channels[0].volumeDb, 4.5F);
}

TEST_F(TargetCommandsTest, LoadingNeedsLiveModeOff) {
    tuning.setLiveMode(true);
    for (std::uint8_t set = 0; set <= 5; ++set) {
        EXPECT_FALSE(load(set));
    }
    expectNothingSent(Lines(6, "box: Please turn off Live Mode"));
    EXPECT_EQ(refreshes, 0);
}

TEST_F(TargetCommandsTest, AFailedLoadChangesNothing) {
    const Bytes image = bytesOf(tuning.image());
    const Bytes store = bytesOf(tuning.store());
    Bytes damaged = replyFrame(setReply(otherImage()));
    damaged.back() ^= 1;
    port.answer({0x43, 0x06});
    port.answer(damaged);
    EXPECT_FALSE(load(1));
    EXPECT_EQ(bytesOf(tuning.image()), image);
    EXPECT_EQ(bytesOf(tuning.store()), store);
    EXPECT_EQ(refreshes, 0);
    EXPECT_THAT(transcript.lines(), testing::Not(testing::Contains(testing::HasSubstr("box"))));
}

TEST_F(TargetCommandsTest, ALoadWhoseDisconnectFailsChangesNothing) {
    const Bytes image = bytesOf(tuning.image());
    const Bytes store = bytesOf(tuning.store());
    port.answer({0x43, 0x06});
    port.answer(replyFrame(setReply(otherImage())));
    EXPECT_FALSE(load(1));
    EXPECT_EQ(bytesOf(tuning.image()), image);
    EXPECT_EQ(bytesOf(tuning.store()), store);
}

class WrongDigest : public TargetCommandsTest, public testing::WithParamInterface<std::size_t> {};

TEST_P(WrongDigest, KeepsTheSetAndTheReceivedImage) {
    const Bytes store = bytesOf(tuning.store());
    Bytes reply = setReply(otherImage());
    reply[GetParam()] ^= 0x20;
    targetReplies(reply);
    EXPECT_FALSE(load(1));
    EXPECT_EQ(transcript.lines().back(), "box: The Parameterset is not right.\n MD5 checksum failed!");
    EXPECT_EQ(bytesOf(tuning.store()), store);
    // The size alone is no matter of what arrives.
    Bytes expected(reply.begin(), reply.begin() + 3384);
    expected[0] = 0x38;
    EXPECT_EQ(bytesOf(tuning.image()), expected);
    EXPECT_EQ(refreshes, 0);
}

// First and last byte of the image and of the digest.
INSTANTIATE_TEST_SUITE_P(DamagedAt, WrongDigest, testing::Values(0, 1700, 3383, 3404, 3411, 3419),
                         testing::PrintToStringParamName());

TEST_F(TargetCommandsTest, BytesAroundTheDigestMeanNothing) {
    Bytes reply = setReply(otherImage());
    for (std::size_t i = 3384; i < 3404; ++i) {
        reply[i] = static_cast<std::uint8_t>(i);
    }
    reply.resize(4096, 0x5A);
    targetReplies(reply);
    EXPECT_TRUE(load(1));
}

TEST_F(TargetCommandsTest, AnEmptyReplyIsAWrongDigest) {
    Bytes frame = frameOf(4, 1, {});
    frame.resize(4101);
    port.answer({0x43, 0x06});
    port.answer(frame);
    port.answer({0x06});
    const Bytes store = bytesOf(tuning.store());
    EXPECT_FALSE(load(1));
    EXPECT_EQ(bytesOf(tuning.store()), store);
    Bytes expected(3384);
    expected[0] = 0x38;
    expected[1] = 0x0D;
    EXPECT_EQ(bytesOf(tuning.image()), expected);
}

TEST_F(TargetCommandsTest, ReadsVersionsLeastSignificantByteFirst) {
    Bytes reply = randomBytes(64, 30);
    const std::uint8_t versions[] = {0x04, 0x03, 0x02, 0x01, 0xEF, 0xCD, 0xAB, 0x00};
    std::copy(std::begin(versions), std::end(versions), reply.begin() + 12);
    for (const bool live : {false, true}) {
        tuning.setLiveMode(live);
        port.written.clear();
        targetReplies(reply);
        const auto read = commands.ReadVersions();
        ASSERT_TRUE(read);
        EXPECT_EQ(read->hardware, 0x01020304U);
        EXPECT_EQ(read->software, 0x00ABCDEFU);
        EXPECT_THAT(port.written, testing::ElementsAre(requestFrame({5}), Bytes{0x04}));
    }
}

TEST_F(TargetCommandsTest, VersionsAreUnknownAfterAFailedExchange) {
    EXPECT_FALSE(commands.ReadVersions());
    EXPECT_THAT(transcript.lines(), testing::Not(testing::Contains(testing::HasSubstr("box"))));
}

TEST(VersionText, HasEightUpperCaseDigits) {
    EXPECT_EQ(versionText(0), "0x00000000");
    EXPECT_EQ(versionText(0x00ABCDEF), "0x00ABCDEF");
    EXPECT_EQ(versionText(0x01020304), "0x01020304");
    EXPECT_EQ(versionText(0xFFFFFFFF), "0xFFFFFFFF");
    EXPECT_EQ(versionText(0x9), "0x00000009");
}

TEST_F(TargetCommandsTest, ReadsTheClipState) {
    const Bytes reply = randomBytes(34, 31);
    for (const bool live : {false, true}) {
        tuning.setLiveMode(live);
        port.written.clear();
        targetReplies(reply);
        const auto state = commands.ReadClipState();
        ASSERT_TRUE(state);
        for (std::size_t group = 0; group < 4; ++group) {
            for (std::size_t i = 0; i < 8; ++i) {
                EXPECT_EQ(state->groups[group][i], reply[8 * group + i]);
            }
        }
        EXPECT_EQ(state->amplifiers[0], reply[32]);
        EXPECT_EQ(state->amplifiers[1], reply[33]);
        EXPECT_THAT(port.written, testing::ElementsAre(requestFrame({6}), Bytes{0x04}));
    }
}

TEST_F(TargetCommandsTest, TheClipStateIsUnknownAfterAFailedExchange) {
    EXPECT_FALSE(commands.ReadClipState());
    EXPECT_THAT(transcript.lines(), testing::Not(testing::Contains(testing::HasSubstr("box"))));
}

class FlashFileTest : public TargetCommandsTest {
 protected:
    fs::path folder =
        fs::path(testing::TempDir()) /
        (std::string("tessavo-flash-") + testing::UnitTest::GetInstance()->current_test_info()->name());

    void SetUp() override {
        TargetCommandsTest::SetUp();
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    void TearDown() override { fs::remove_all(folder); }

    [[nodiscard]] fs::path fileOf(const Bytes& bytes) const {
        const fs::path path = folder / "image.bin";
        std::ofstream file(path, std::ios::binary);
        for (const std::uint8_t byte : bytes) {
            file.put(static_cast<char>(byte));
        }
        return path;
    }
    void expectSent(Bytes image) const {
        const std::size_t blocks = (image.size() + 1023) / 1024;
        const std::uint16_t crc = bitwiseCrc(image);
        image.push_back(static_cast<std::uint8_t>(crc / 256));
        image.push_back(static_cast<std::uint8_t>(crc % 256));
        image.resize(blocks * 1024, 0x1A);
        ASSERT_EQ(port.written.size(), blocks + 1);
        for (std::size_t block = 0; block < blocks; ++block) {
            ASSERT_EQ(port.written[block], frameOf(2, static_cast<std::uint8_t>((block + 1) % 256),
                                                   std::span(image).subspan(block * 1024, 1024)));
        }
    }
    // A file as a reader of the test's own gives it.
    bool flashAs(std::optional<FileStart> file) {
        TargetCommands odd(tuning, engine, boxes, [&](const fs::path&, std::size_t) { return file; });
        return odd.FlashFile("image.bin");
    }
};

TEST_F(FlashFileTest, SendsTheFileInBlocksOf1024Bytes) {
    const Bytes image = randomBytes(2500, 40);
    for (const bool live : {false, true}) {
        tuning.setLiveMode(live);
        port.written.clear();
        targetTakes(3);
        EXPECT_TRUE(commands.FlashFile(fileOf(image)));
        expectSent(image);
    }
    EXPECT_THAT(progress, testing::SizeIs(6));
}

TEST_F(FlashFileTest, AcceptsTheLargestImage) {
    const Bytes image = randomBytes(524288, 41);
    targetTakes(512);
    EXPECT_TRUE(commands.FlashFile(fileOf(image)));
    expectSent(image);
    EXPECT_THAT(transcript.lines(), testing::Not(testing::Contains(testing::HasSubstr("box"))));
}

TEST_F(FlashFileTest, RefusesOneByteMore) {
    EXPECT_FALSE(commands.FlashFile(fileOf(Bytes(524289))));
    expectNothingSent({"error box: File size too large!"});
}

TEST_F(FlashFileTest, AnEmptyPathDoesNothing) {
    EXPECT_FALSE(commands.FlashFile({}));
    expectNothingSent();
}

TEST_F(FlashFileTest, AnEmptyFileConnectsAndDisconnects) {
    targetTakes(0);
    EXPECT_TRUE(commands.FlashFile(fileOf({})));
    expectTranscript({opened("Prepare XModem1k Message"), connected(), disconnected(), closed()});
}

TEST_F(FlashFileTest, AFileThatIsNotThereCannotBeRead) {
    EXPECT_FALSE(commands.FlashFile(folder / "missing.bin"));
    expectNothingSent({"error box: Error reading file!"});
}

TEST_F(FlashFileTest, AFolderCannotBeRead) {
    EXPECT_FALSE(commands.FlashFile(folder));
    expectNothingSent({"error box: Error reading file!"});
}

TEST_F(FlashFileTest, AFileThatEndsEarlyCannotBeRead) {
    EXPECT_FALSE(flashAs(FileStart{Bytes(999), 1000}));
    expectNothingSent({"error box: Error reading file!"});
}

TEST_F(FlashFileTest, ALengthAboveTheLimitIsToldBeforeAnEarlyEnd) {
    EXPECT_FALSE(flashAs(FileStart{Bytes(10), 524289}));
    expectNothingSent({"error box: File size too large!"});
}

TEST_F(FlashFileTest, AFileThatHidesItsLengthIsMeasuredByItsBytes) {
    EXPECT_FALSE(flashAs(FileStart{Bytes(524289), 0}));
    expectNothingSent({"error box: File size too large!"});
    transcript.clear();
    const Bytes image = randomBytes(1025, 42);
    targetTakes(2);
    EXPECT_TRUE(flashAs(FileStart{image, 0}));
    expectSent(image);
}

TEST_F(FlashFileTest, AFailedTransferIsInTheLogOnly) {
    port.answer({0x43, 0x06, 0x15});
    EXPECT_FALSE(commands.FlashFile(fileOf(Bytes(4000))));
    EXPECT_EQ(port.written.size(), 2U);
    EXPECT_THAT(transcript.lines(), testing::Not(testing::Contains(testing::HasSubstr("box"))));
}

class OneDialog final : public IFileDialogs {
 public:
    std::optional<fs::path> askOpenPath(const FileFilter& filter) override {
        asked = filter;
        return answer;
    }
    std::optional<fs::path> askSavePath(const FileFilter&) override {
        ADD_FAILURE() << "a software image is never saved";
        return std::nullopt;
    }

    void resetLocale() override { ++localeResets; }

    FileFilter asked{};
    std::optional<fs::path> answer;
    int localeResets = 0;
};

TEST(SelectImageFile, OffersSoftwareImages) {
    OneDialog dialogs;
    EXPECT_FALSE(TargetCommands::SelectImageFile(dialogs));
    EXPECT_EQ(dialogs.localeResets, 1) << "cancelled or not";
    EXPECT_EQ(dialogs.asked.filter, "Velmira Software Image File (*.bin)|*.bin||");
    EXPECT_EQ(dialogs.asked.defaultExtension, "bin");
    dialogs.answer = "new.bin";
    EXPECT_EQ(TargetCommands::SelectImageFile(dialogs), fs::path("new.bin"));
    EXPECT_EQ(dialogs.localeResets, 2);
}

}  // namespace
}  // namespace tessavo::test
