#include <algorithm>
#include <random>

#include "comm/page/page_bench.h"

// Each trouble that the simulated target can make, as a person sees it: the lines of the log and the boxes.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Faults : public PageBench {
 protected:
    /// Reads the versions from a target with this trouble.
    LogLines readVersions(const std::vector<std::string>& faults) {
        plugIn(faults);
        click(button(comm_id::update));
        return logLines();
    }
    /// Saves to set 2 of a target with this trouble, which the live image has reached before.
    LogLines saveSet(const std::vector<std::string>& faults) {
        plugIn({});
        tuning.state.setVolume(tuning.state.currentParameterSet().channels[7].volumeDb - 1.0F, true);
        goLive();
        plugIn(faults);
        click(saveButton(2));
        return logLines();
    }
};

TEST_F(Faults, NoRequest) {
    EXPECT_THAT(readVersions({"no-request"}),
                ElementsAre("ST-->    Prepare XModem2k Message", "ST-->    Connecting to Target",
                            "RX-->    Wait for REQ", "ERR-->   Can't connect to Target"));
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(Faults, WrongRequests) {
    const LogLines wait{"RX-->    Wait for REQ"};
    EXPECT_EQ(readVersions({"wrong-request=5"}),
              joined({{"ST-->    Prepare XModem2k Message", "ST-->    Connecting to Target"},
                      wait,
                      wait,
                      wait,
                      wait,
                      wait,
                      {"ERR-->   No REQ received"}}));
    EXPECT_THAT(readVersions({"wrong-request=4"}).back(), "ERR-->   Can't connect to Target")
        << "the right one never comes";
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(Faults, NegativeAnswerToABlock) {
    EXPECT_EQ(saveSet({"negative=1"}), saved({"TX-->    Send XModem Message", "RX-->    Wait for answer",
                                              "RX-->    Negative answer received"}));
    EXPECT_NE(memory().sets[2], memory().live);
}

TEST_F(Faults, NegativeAnswerToARequestIsFollowedByASecondWait) {
    EXPECT_EQ(
        readVersions({"negative=1"}),
        read({"TX-->    Send XModem Message", "RX-->    Wait for answer", "RX-->    Negative answer received",
              "RX-->    Wait for answer", "ERR-->   Can't connect to Target"}));
    EXPECT_FALSE(page->versionsKnown());
}

TEST_F(Faults, SilenceAfterABlock) {
    EXPECT_EQ(saveSet({"silence=1"}), saved({"TX-->    Send XModem Message", "RX-->    Wait for answer",
                                             "ERR-->   Wait for answer"}));
    EXPECT_EQ(readVersions({"silence=1"}), read({"TX-->    Send XModem Message", "RX-->    Wait for answer",
                                                 "ERR-->   Can't connect to Target"}));
}

TEST_F(Faults, JunkBeforeTheAnswers) {
    const LogLines tries(5, "RX-->    Wait for answer");
    EXPECT_EQ(saveSet({"junk=5"}),
              saved(joined({{"TX-->    Send XModem Message"}, tries, {"ERR-->   No answer received"}})));
    EXPECT_EQ(readVersions({"junk=5"}),
              read(joined({{"TX-->    Send XModem Message"}, tries, {"ERR-->   No answer received"}})));
}

TEST_F(Faults, ALittleJunkIsSkipped) {
    const LogLines skipped{"TX-->    Send XModem Message", "RX-->    Wait for answer",
                           "RX-->    Wait for answer"};
    EXPECT_EQ(saveSet({"junk=1"}),
              saved(joined({skipped,
                            {"RX-->    Answer received", "ST-->    Disconnect from Target",
                             "TX-->    Send Disconnect Command", "RX-->    Wait for answer",
                             "TX-->    Send Disconnect Command", "RX-->    Wait for answer",
                             "ST-->    Disconnected from Target"}})));
    EXPECT_EQ(memory().sets[2], memory().live);
}

TEST_F(Faults, ADamagedReply) {
    const LogLines invalid = read(
        joined({askedAndTaken, {"RX-->    Receiving XModem message", "ERR-->   Invalid message received"}}));
    EXPECT_EQ(readVersions({"damaged-reply"}), invalid);
    EXPECT_EQ(readVersions({"wrong-complement"}), invalid);
    EXPECT_FALSE(page->versionsKnown());
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(Faults, ATruncatedOrLateReply) {
    const LogLines missing = read(
        joined({askedAndTaken, {"RX-->    Receiving XModem message", "ERR-->   Can't connect to Target"}}));
    EXPECT_EQ(readVersions({"truncated-reply=4000"}), missing);
    EXPECT_EQ(readVersions({"late=10500"}), missing);
    EXPECT_FALSE(page->versionsKnown());
    readVersions({"late=9000"});
    EXPECT_TRUE(page->versionsKnown());
}

TEST_F(Faults, ARefusedDisconnect) {
    EXPECT_EQ(saveSet({"no-disconnect"}),
              saved(joined({sentAndTaken,
                            {"ST-->    Disconnect from Target", "TX-->    Send Disconnect Command",
                             "RX-->    Wait for answer", "ERR-->   Disconnecting failed"}})));
    EXPECT_EQ(memory().sets[2], memory().live) << "the set was taken before";
}

TEST_F(Faults, AWrongConfirmation) {
    plugIn({"wrong-confirmation"});
    goLive();
    EXPECT_THAT(shown, ElementsAre("Target received wrong set"));
}

TEST_F(Faults, AWrongDigest) {
    plugIn({"wrong-digest"});
    click(loadButton(1));
    EXPECT_THAT(shown, ElementsAre("The Parameterset is not right.\n MD5 checksum failed!"));
    EXPECT_EQ(logLines().back(), "ST-->    Disconnected from Target") << "the exchange itself was sound";
}

TEST_F(Faults, APortThatDoesNotOpen) {
    portOpens = false;
    plugIn({});
    for (int set = 0; set <= 5; ++set) {
        shown.clear();
        click(loadButton(set));
        EXPECT_THAT(shown, ElementsAre("Cannot open COM port!"));
    }
    const LogLines lines = logLines();
    EXPECT_THAT(lines, ::testing::Each("ST-->    Prepare XModem2k Message"));
    EXPECT_EQ(lines.size(), 6U);
}

/// Where in an exchange the cable is pulled. Bytes are counted from 1 in both directions together: the
/// target's request byte is the first.
class PulledCable : public Faults {
 protected:
    // Sizes of what passes, in the order in which it does.
    static constexpr std::uint64_t requestByte = 1;
    static constexpr std::uint64_t answerByte = 1;
    static constexpr std::uint64_t disconnectByte = 1;
    static constexpr std::uint64_t overhead = 5;  ///< of a frame, beside its payload
    static constexpr std::uint64_t saveFrame = requestByte + 128 + overhead;
    static constexpr std::uint64_t liveFrame = requestByte + 4096 + overhead;
    static constexpr std::uint64_t reply = requestByte + 2048 + overhead + answerByte + 4096 + overhead;

    /// Twenty places at random, and the first and the last.
    std::vector<std::uint64_t> drawBytes(std::uint64_t first, std::uint64_t last) {
        std::vector<std::uint64_t> all{first, last};
        for (int i = 0; i < 20; ++i) {
            all.push_back(first + random_() % (last - first + 1));
        }
        return all;
    }
    void pullAt(std::uint64_t byte) { plugIn({"cable=" + std::to_string(byte)}); }
    void expectError(std::uint64_t at) {
        EXPECT_THAT(logLines().back(), ::testing::StartsWith("ERR-->   ")) << at;
        EXPECT_FALSE(transfers->running());
        EXPECT_TRUE(device->cablePulled()) << at;
    }
    /// Another volume than before.
    void edit() {
        volume_ = volume_ == 12.0F ? -5.0F : volume_ + 1.0F;
        tuning.state.setVolume(volume_, true);
    }
    /// One live transfer by a worker that has seen nothing yet.
    LiveWorker::State sendLive() {
        auto result = LiveWorker::State::idle;
        tuning.state.setLiveMode(true);
        LiveWorker worker(tuning.state, *engine, clock, boxes,
                          [&](LiveWorker::State state, const ParameterImage&) { result = state; });
        worker.step();
        return result;
    }

 private:
    std::mt19937 random_{7};
    float volume_ = -5.0F;
};

TEST_F(PulledCable, DuringASave) {
    for (const std::uint64_t at : drawBytes(1, saveFrame + answerByte + disconnectByte)) {
        plugIn({});
        edit();
        goLive();
        auto expected = memory().sets;
        if (at >= saveFrame) {
            expected[4] = memory().live;
        }
        pullAt(at);
        click(saveButton(4));
        expectError(at);
        EXPECT_EQ(memory().sets, expected) << at;
        EXPECT_THAT(shown, IsEmpty());
    }
    plugIn({});
    click(saveButton(4));
    EXPECT_EQ(memory().sets[4], imageBytes()) << "with a whole cable everything works again";
}

TEST_F(PulledCable, WhileASetIsRead) {
    const TargetMemory before = memory();
    for (const std::uint64_t at : drawBytes(1, reply + disconnectByte)) {
        edit();
        const Bytes store = tuning.store();
        const ImageBytes image = imageBytes();
        pullAt(at);
        click(loadButton(4));
        expectError(at);
        EXPECT_SAME_BYTES(tuning.store(), store);
        EXPECT_EQ(imageBytes(), image);
        EXPECT_EQ(refreshes, 0);
        EXPECT_THAT(shown, IsEmpty());
    }
    plugIn({});
    click(loadButton(4));
    EXPECT_EQ(imageBytes(), before.sets[4]);
}

TEST_F(PulledCable, WhileTheVersionsAreRead) {
    for (const std::uint64_t at : drawBytes(1, reply + disconnectByte)) {
        pullAt(at);
        click(button(comm_id::update));
        expectError(at);
        EXPECT_FALSE(page->versionsKnown());
        EXPECT_EQ(field(comm_id::hardwareVersion).text(), QString());
        EXPECT_THAT(shown, IsEmpty());
    }
    plugIn({});
    click(button(comm_id::update));
    EXPECT_TRUE(page->versionsKnown());
}

TEST_F(PulledCable, WhileASoftwareImageIsSent) {
    constexpr std::uint64_t block = 1024 + overhead;
    constexpr std::uint64_t blocks = 3;
    constexpr std::uint64_t taken = requestByte + blocks * (block + answerByte) + disconnectByte;
    std::size_t size = 2100;
    for (const std::uint64_t at : drawBytes(1, taken)) {
        const auto before = memory().software;
        dialogs.answer = imageFile("software.bin", ++size);
        pullAt(at);
        click(button(comm_id::selectImage));
        click(button(comm_id::flashFile));
        expectError(at);
        // The target takes an image when it is told that all of it has come.
        EXPECT_EQ(memory().software == before, at < taken) << at;
        const std::uint64_t answered = std::min(blocks, (at - requestByte) / (block + answerByte));
        EXPECT_EQ(line().text().toStdString(), "Stopped at block " + std::to_string(answered) + " of 3")
            << at;
        EXPECT_TRUE(button(comm_id::flashFile).isEnabled());
        EXPECT_THAT(shown, IsEmpty());
    }
    const auto before = memory().software;
    dialogs.answer = imageFile("software.bin", ++size);
    plugIn({});
    click(button(comm_id::selectImage));
    click(button(comm_id::flashFile));
    EXPECT_EQ(line().text(), QStringLiteral("Done, 3 blocks"));
    EXPECT_NE(memory().software, before);
}

TEST_F(PulledCable, WhileTheClipStateIsRead) {
    TargetCommands commands(tuning.state, *engine, boxes);
    for (const std::uint64_t at : drawBytes(1, reply + disconnectByte)) {
        pullAt(at);
        EXPECT_EQ(commands.ReadClipState(), std::nullopt) << at;
        expectError(at);
        EXPECT_THAT(shown, IsEmpty());
    }
    plugIn({});
    EXPECT_NE(commands.ReadClipState(), std::nullopt);
}

TEST_F(PulledCable, WhileTheLiveImageIsSent) {
    for (const std::uint64_t at : drawBytes(1, liveFrame + answerByte + disconnectByte)) {
        edit();
        const ImageBytes before = memory().live;
        pullAt(at);
        shown.clear();
        EXPECT_EQ(sendLive(), LiveWorker::State::failed) << at;
        expectError(at);
        EXPECT_EQ(memory().live, at < liveFrame ? before : imageBytes()) << at;
        EXPECT_THAT(shown, ElementsAre("Target received wrong set")) << at;
    }
    plugIn({});
    shown.clear();
    EXPECT_EQ(sendLive(), LiveWorker::State::confirmed);
    EXPECT_THAT(shown, IsEmpty());
    EXPECT_EQ(memory().live, imageBytes());
}

TEST_F(PulledCable, WhileTheLiveImageIsConfirmed) {
    constexpr std::uint64_t sent = liveFrame + answerByte + disconnectByte + answerByte;
    for (const std::uint64_t at : drawBytes(sent, sent + reply + disconnectByte)) {
        edit();
        pullAt(at);
        shown.clear();
        EXPECT_EQ(sendLive(), LiveWorker::State::failed) << at;
        expectError(at);
        EXPECT_EQ(memory().live, imageBytes()) << "the target has it by then";
        if (at < sent + reply) {
            EXPECT_THAT(shown, ElementsAre("Target received wrong set")) << at;
        } else {
            EXPECT_THAT(shown, IsEmpty()) << "the confirmation had come: " << at;
        }
    }
    plugIn({"cable=" + std::to_string(sent + reply + disconnectByte + answerByte)});
    shown.clear();
    edit();
    EXPECT_EQ(sendLive(), LiveWorker::State::confirmed) << "pulled behind the last byte";
    EXPECT_TRUE(device->cablePulled());
    EXPECT_THAT(shown, IsEmpty());
}

}  // namespace
}  // namespace tessavo::test
