#include <algorithm>
#include <random>

#include "comm/page/line_bench_posix.h"
#include "controls/read_only_edit.h"

// Each trouble of the simulated target on a real line, with the real time-outs: the lines of the log, the
// box, the status bar.

namespace tessavo::test {
namespace {

using ::testing::AnyOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using Light = TargetStatus::Light;

class FaultsOnALine : public OnALine {
 protected:
    LogLines logLines() {
        LogLines lines;
        for (int row = 0; row < log().lineCount(); ++row) {
            lines.push_back(log().line(row).toStdString());
        }
        return lines;
    }
    /// Reads the versions from a target with this trouble.
    LogLines readVersions(const std::string& fault) {
        startTarget({fault});
        click(comm_id::clearLog);
        click(comm_id::update);
        return logLines();
    }
    /// Sends a live image to a sound target and leaves Live Mode on.
    void sendLive() {
        startTarget();
        tuning.setVolume(-5.0F, true);
        toggleLiveMode();
        ASSERT_TRUE(becomesConfirmed());
    }
    /// Saves to set 2 of a target with this trouble, which the live image has reached before.
    LogLines saveSet(const std::string& fault) {
        startTarget({fault});
        click(comm_id::clearLog);
        click(comm_id::firstSave + 2);
        return logLines();
    }
    bool isSaved() {
        const TargetMemory memory = target->memory();
        return memory.sets[2] == memory.live;
    }
    /// \param said what the status bar tells of it, in front of the time
    void expectNoBox(const std::string& said) {
        EXPECT_THAT(shownTexts(), IsEmpty());
        EXPECT_EQ(light(), Light::trouble);
        EXPECT_THAT(words(), ::testing::MatchesRegex(said + " ..:..:..(, not sent)?"));
        EXPECT_EQ(control<CReadOnlyEdit>(comm_id::hardwareVersion).text(), QString());
    }

    const LogLines askAndWait{"TX-->    Send XModem Message", "RX-->    Wait for answer"};
    const LogLines fiveWaits = LogLines(5, "RX-->    Wait for answer");
};

TEST_F(FaultsOnALine, WrongRequests) {
    const LogLines start{"ST-->    Prepare XModem2k Message", "ST-->    Connecting to Target"};
    EXPECT_EQ(readVersions("wrong-request=5"),
              joined({start, LogLines(5, "RX-->    Wait for REQ"), {"ERR-->   No REQ received"}}));
    expectNoBox("no answer: versions not read");
    EXPECT_EQ(readVersions("wrong-request=2"),
              joined({start, LogLines(3, "RX-->    Wait for REQ"), {"ERR-->   Can't connect to Target"}}));
    expectNoBox("no answer: versions not read");
}

TEST_F(FaultsOnALine, ANegativeAnswer) {
    sendLive();
    EXPECT_EQ(saveSet("negative=1"), saved(joined({askAndWait, {"RX-->    Negative answer received"}})));
    expectNoBox("refused: set 2 not saved");
    EXPECT_FALSE(isSaved());
    EXPECT_EQ(readVersions("negative=1"),
              read(joined({askAndWait,
                           {"RX-->    Negative answer received", "RX-->    Wait for answer",
                            "ERR-->   Can't connect to Target"}})));
    expectNoBox("refused: versions not read");
}

TEST_F(FaultsOnALine, Silence) {
    sendLive();
    EXPECT_EQ(saveSet("silence=1"), saved(joined({askAndWait, {"ERR-->   Wait for answer"}})));
    expectNoBox("no answer: set 2 may not be saved");
    EXPECT_FALSE(isSaved());
    EXPECT_EQ(readVersions("silence=1"), read(joined({askAndWait, {"ERR-->   Can't connect to Target"}})));
    expectNoBox("no answer: versions not read");
}

TEST_F(FaultsOnALine, JunkBeforeTheAnswers) {
    sendLive();
    const LogLines tooMuch =
        joined({{"TX-->    Send XModem Message"}, fiveWaits, {"ERR-->   No answer received"}});
    EXPECT_EQ(saveSet("junk=5"), saved(tooMuch));
    EXPECT_EQ(readVersions("junk=5"), read(tooMuch));
    expectNoBox("no answer: versions not read");
    EXPECT_EQ(saveSet("junk=1"),
              saved(joined({askAndWait,
                            {"RX-->    Wait for answer", "RX-->    Answer received",
                             "ST-->    Disconnect from Target", "TX-->    Send Disconnect Command",
                             "RX-->    Wait for answer", "TX-->    Send Disconnect Command",
                             "RX-->    Wait for answer", "ST-->    Disconnected from Target"}})));
    EXPECT_TRUE(isSaved());
    EXPECT_NE(light(), Light::trouble) << "a little is skipped";
}

TEST_F(FaultsOnALine, ADamagedReply) {
    const LogLines invalid = read(
        joined({askedAndTaken, {"RX-->    Receiving XModem message", "ERR-->   Invalid message received"}}));
    EXPECT_EQ(readVersions("damaged-reply"), invalid);
    expectNoBox("damaged answer: versions not read");
    EXPECT_EQ(readVersions("wrong-complement"), invalid);
    expectNoBox("damaged answer: versions not read");
}

TEST_F(FaultsOnALine, ATruncatedReply) {
    EXPECT_EQ(readVersions("truncated-reply=4000"),
              read(joined({askedAndTaken,
                           {"RX-->    Receiving XModem message", "ERR-->   Can't connect to Target"}})));
    expectNoBox("damaged answer: versions not read");
}

TEST_F(FaultsOnALine, ALateReply) {
    EXPECT_EQ(readVersions("late=12000"),
              read(joined({askedAndTaken,
                           {"RX-->    Receiving XModem message", "ERR-->   Can't connect to Target"}})));
    expectNoBox("no answer: versions not read");
}

TEST_F(FaultsOnALine, ARefusedDisconnect) {
    sendLive();
    EXPECT_EQ(saveSet("no-disconnect"),
              saved(joined({sentAndTaken,
                            {"ST-->    Disconnect from Target", "TX-->    Send Disconnect Command",
                             "RX-->    Wait for answer", "ERR-->   Disconnecting failed"}})));
    EXPECT_TRUE(isSaved()) << "the set was taken before";
    expectNoBox("not disconnected: set 2 may not be saved");
}

TEST_F(FaultsOnALine, AWrongDigest) {
    startTarget({"wrong-digest"});
    tuning.setVolume(-5.0F, true);
    const ParameterStore before = tuning.store();
    click(comm_id::firstLoad + 1);
    EXPECT_THAT(shownTexts(), ElementsAre("The Parameterset is not right.\n MD5 checksum failed!"));
    EXPECT_EQ(logLines(), read(joined({askedAndTaken,
                                       {"RX-->    Receiving XModem message", "RX-->    Message received"},
                                       disconnected()})))
        << "the exchange itself was sound";
    EXPECT_EQ(std::memcmp(&tuning.store(), &before, sizeof before), 0);
    EXPECT_THAT(words(), StartsWith("checksum failed: set 1 not read "));
    EXPECT_EQ(light(), Light::trouble);
}

TEST_F(FaultsOnALine, AWrongConfirmation) {
    startTarget({"wrong-confirmation"});
    tuning.setVolume(-5.0F, true);
    toggleLiveMode();
    ASSERT_TRUE(passEventsUntil([&] { return !shown.empty(); }));
    EXPECT_THAT(shownTexts(), ElementsAre("Target received wrong set"));
    EXPECT_EQ(logLines(),
              joined({opened("Prepare XModem4k Message"), sentAndTaken, disconnected(),
                      read(joined({askedAndTaken,
                                   {"RX-->    Receiving XModem message", "RX-->    Message received"},
                                   disconnected()}))}));
    EXPECT_TRUE(targetHoldsTheImage());
    EXPECT_THAT(words(), StartsWith("wrong set "));
    EXPECT_EQ(light(), Light::trouble);
}

/// Where the cable is pulled is counted from 1, in both directions together.
class CableOnALine : public FaultsOnALine {
 protected:
    void startPulledAt(std::uint64_t byte) {
        startTarget({"cable=" + std::to_string(byte)});
        click(comm_id::clearLog);
    }
    std::uint64_t drawByte(std::uint64_t first, std::uint64_t last) {
        return first + random_() % (last - first + 1);
    }
    void expectErrorAndALivingWindow(std::uint64_t at) {
        EXPECT_THAT(logLines().back(), StartsWith("ERR-->   ")) << at;
        EXPECT_EQ(light(), Light::trouble);
        EXPECT_TRUE(frame->isVisible());
        EXPECT_FALSE(link.foreground().running());
    }

 private:
    std::mt19937 random_{99};
};

TEST_F(CableOnALine, PulledAtTwentyPlacesOfASave) {
    constexpr std::uint64_t wholeFrame = 1 + 128 + 5;
    sendLive();
    for (int i = 0; i < 20; ++i) {
        const std::uint64_t at = i == 0 ? wholeFrame + 2 : drawByte(1, wholeFrame + 2);
        const bool savedBefore = isSaved();
        startPulledAt(at);
        click(comm_id::firstSave + 2);
        expectErrorAndALivingWindow(at);
        EXPECT_EQ(isSaved(), savedBefore || at >= wholeFrame) << at;
        EXPECT_THAT(shownTexts(), IsEmpty());
    }
    startTarget();
    click(comm_id::firstSave + 3);
    EXPECT_EQ(target->memory().sets[3], target->memory().live) << "with a whole cable everything works again";
}

TEST_F(CableOnALine, PulledAtTwentyPlacesOfALoad) {
    startTarget();
    tuning.setVolume(-5.0F, true);
    const ParameterStore store = tuning.store();
    const ParameterImage image = tuning.image();
    for (int i = 0; i < 20; ++i) {
        const std::uint64_t at = i == 0 ? 6157 : drawByte(1, 6157);
        startPulledAt(at);
        click(comm_id::firstLoad + 4);
        expectErrorAndALivingWindow(at);
        EXPECT_EQ(std::memcmp(&tuning.store(), &store, sizeof store), 0) << at;
        EXPECT_EQ(std::memcmp(&tuning.image(), &image, sizeof image), 0) << at;
        EXPECT_THAT(shownTexts(), IsEmpty());
    }
    startTarget();
    click(comm_id::firstLoad + 4);
    EXPECT_NE(std::memcmp(&tuning.image(), &image, sizeof image), 0);
    EXPECT_EQ(light(), Light::off);
}

TEST_F(CableOnALine, PulledAtTwentyPlacesOfALiveTransfer) {
    // The image with its digest and the disconnect, then the confirmation up to its reply.
    constexpr std::uint64_t wholeFrame = 1 + 4096 + 5;
    constexpr std::uint64_t sent = wholeFrame + 3;
    constexpr std::uint64_t lastOfTheReply = sent + 1 + 2053 + 1 + 4101;
    int results = 0;
    QObject::connect(&link, &CommLink::workerState, &link, [&](LiveWorker::State state) {
        results += state == LiveWorker::State::sending ? 0 : 1;
        EXPECT_NE(state, LiveWorker::State::wrongSet);
    });
    startTarget();
    for (int i = 0; i < 20; ++i) {
        const std::uint64_t at = i % 2 == 0 ? drawByte(1, sent - 1) : drawByte(sent, lastOfTheReply - 1);
        startPulledAt(at);
        shown.clear();
        const ImageBytes before = target->memory().live;
        tuning.setVolume(static_cast<float>(i - 5), true);
        if (i == 0) {
            toggleLiveMode();
        }
        ASSERT_TRUE(passEventsUntil([&] {
            return results == i + 1 && !shown.empty() && shown.back().text == "Target received wrong set";
        })) << at
            << ", " << results << " results, box: " << (shown.empty() ? std::string() : shown.back().text)
            << ", log: " << logLines().back();
        // Pulled during the send, the port is gone when the confirmation is asked for.
        EXPECT_THAT(shownTexts(), Each(AnyOf("Target received wrong set", "Cannot open COM port!"))) << at;
        EXPECT_TRUE(std::ranges::any_of(logLines(), [](const std::string& line) {
            return line.starts_with("ERR-->   ");
        })) << at;
        if (at < wholeFrame) {
            EXPECT_EQ(target->memory().live, before) << at;
        } else {
            EXPECT_TRUE(targetHoldsTheImage()) << at;
        }
        EXPECT_EQ(light(), Light::trouble);
        EXPECT_FALSE(link.confirmedImage().has_value());
        EXPECT_TRUE(frame->isVisible());
    }
    startTarget();
    shown.clear();
    tuning.setVolume(17.0F, true);
    ASSERT_TRUE(becomesConfirmed());
    EXPECT_TRUE(targetHoldsTheImage());
    EXPECT_THAT(shownTexts(), IsEmpty());
}

}  // namespace
}  // namespace tessavo::test
