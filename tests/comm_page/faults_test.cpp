#include <QTest>

#include "comm_page/page_bench.h"

// Each trouble that the simulated target can make, as a person sees it: the lines of the log and the boxes.

namespace tessavo::testing {
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
    LogLines saved(const LogLines& rest) { return joined({opened("Prepare XModem128 Message"), rest}); }
    LogLines read(const LogLines& rest) { return joined({opened("Prepare XModem2k Message"), rest}); }

    const LogLines sentAndTaken{"TX-->    Send XModem Message", "RX-->    Wait for answer",
                                "RX-->    Answer received"};
    const LogLines askedAndTaken{"TX-->    Send XModem Message", "RX-->    Wait for answer",
                                 "ST-->    Answer received"};
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

TEST_F(Faults, TheCablePulledAtAnyByte) {
    // Wherever it breaks, the exchange ends with an error or had ended before, and nothing else changes.
    plugIn({});
    goLive();
    const auto live = memory().live;
    const struct {
        const char* name;
        bool needsLive;
        int button;
        std::uint64_t bytes;
    } exchanges[]{{"save", true, comm_id::firstSave + 4, 136},
                  {"load", false, comm_id::firstLoad + 4, 6159},
                  {"versions", false, comm_id::update, 6159}};
    std::mt19937 random(7);
    for (const auto& exchange : exchanges) {
        for (int i = 0; i < 20; ++i) {
            const std::uint64_t at = random() % exchange.bytes;
            plugIn({"cable=" + std::to_string(at)});
            tuning.state.setLiveMode(exchange.needsLive);
            const Bytes store = tuning.store();
            click(button(exchange.button));
            EXPECT_THAT(logLines().back(), ::testing::StartsWith("ERR-->   ")) << exchange.name << " " << at;
            EXPECT_EQ(transfers->running(), false);
            if (!exchange.needsLive) {
                EXPECT_SAME_BYTES(tuning.store(), store);
            }
            EXPECT_EQ(memory().live, live);
            EXPECT_THAT(shown, IsEmpty());
        }
    }
    plugIn({});
    click(button(comm_id::update));
    EXPECT_TRUE(page->versionsKnown()) << "with a whole cable everything works again";
}

TEST_F(Faults, TheLiveImageWithTheCablePulledAtAnyByte) {
    std::mt19937 random(11);
    for (int i = 0; i < 20; ++i) {
        plugIn({"cable=" + std::to_string(random() % 4100)});
        shown.clear();
        goLive();
        EXPECT_THAT(shown, ElementsAre("Target received wrong set"));
    }
    plugIn({});
    shown.clear();
    tuning.state.setVolume(-3.0F, true);
    goLive();
    EXPECT_THAT(shown, IsEmpty());
    EXPECT_EQ(memory().live, imageBytes());
}

}  // namespace
}  // namespace tessavo::testing
