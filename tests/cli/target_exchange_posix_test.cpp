#include <chrono>
#include <csignal>
#include <gmock/gmock.h>
#include <ostream>
#include <unistd.h>
#include <utility>

#include "cli/target_fixture.h"

// The commands that talk, against the simulated target on a pseudo-terminal, in real time.

namespace tessavo::test {

using namespace cli;

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST_F(TargetExchange, Versions) {
    startTarget();
    const CommandResult result = run({"versions", "--port", port()});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out, "Hardware Version 0x0000ABCD\nSoftware Version 0x12340005\n");
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("ST-->    Prepare XModem2k Message\nST-->    Connecting to Target\n"),
                      HasSubstr("ST-->    Disconnected from Target\n"), Not(HasSubstr("tessavoctl"))));
}

TEST_F(TargetExchange, QuietSaysNothingWhenAllIsWell) {
    startTarget();
    const CommandResult result = run({"--quiet", "versions", "--port", target_->path()});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(TargetExchange, Clip) {
    startTarget();
    ClipBytes state{};
    state[1] = 1;
    state[16] = 1;
    state[32] = 1;
    target_->holdClipState(state);
    const CommandResult result = run({"clip", "--port", port()});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out,
              "ADC                Vorne Rechts\nInput EQ           -\nSignal Processing  Kanal 4\n"
              "Output EQ          -\nAmplifier 1        clipping\nAmplifier 2        -\n");
}

TEST_F(TargetExchange, LiveSendsTheSetsImage) {
    startTarget();
    const CommandResult result = run({"live", tuned(), "--set", "2", "--port", port()});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(result.out, "set 2 was sent live and confirmed\n");
    const TargetMemory memory = target_->memory();
    EXPECT_EQ(bytesOf(memory.live), read(path("tuned.bin")));
    EXPECT_EQ(memory.sets[2], factoryImage());
}

TEST_F(TargetExchange, LiveUsesTheFilterMethod) {
    startTarget();
    const std::string file = tuned();
    ASSERT_EQ(run({"export", file, "--set", "2", "--filter-mode", "MZT", "--output", path("mzt.bin")}).code,
              0);
    ASSERT_EQ(run({"live", file, "--set", "2", "--filter-mode", "MZT", "--port", port()}).code, 0);
    EXPECT_EQ(bytesOf(target_->memory().live), read(path("mzt.bin")));
    EXPECT_NE(read(path("mzt.bin")), read(path("tuned.bin")));
}

TEST_F(TargetExchange, LiveAndWriteSetSwitchTheInputEqualizerAsAskedAndOnOtherwise) {
    startTarget();
    const std::string file = tuned();  // says off
    const auto note = HasSubstr("set 2 of " + file + " has the input equalizer off, its image has it on");
    CommandResult result = run({"live", file, "--set", "2", "--port", port()});
    ASSERT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.err, note);
    EXPECT_EQ(target_->memory().live[6], 0);
    result = run({"live", file, "--set", "2", "--input-eq", "stored", "--port", port()});
    ASSERT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.err, Not(note));
    EXPECT_EQ(target_->memory().live[6], 1);
    EXPECT_EQ(target_->memory().live[22], 1);
    result = run({"write-set", "3", file, "--set", "2", "--input-eq", "on", "--port", port()});
    ASSERT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.err, Not(note));
    EXPECT_EQ(target_->memory().sets[3][6], 0);
    result = run({"write-set", "3", file, "--set", "2", "--input-eq", "off", "--port", port()});
    ASSERT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(target_->memory().sets[3][6], 1);
    EXPECT_EQ(target_->memory().sets[3][22], 1);
}

TEST_F(TargetExchange, WriteSetAndReadSetGoThereAndBack) {
    startTarget();
    const std::string file = tuned();
    for (const auto& [name, index] : {std::pair<std::string, std::size_t>{"3", 3}, {"default", 0}}) {
        CommandResult result = run({"write-set", name, file, "--set", "2", "--port", port()});
        ASSERT_EQ(result.code, 0) << result.err;
        EXPECT_EQ(bytesOf(target_->memory().sets[index]), read(path("tuned.bin")));
        result = run(
            {"read-set", name, "--into", file, "--set", "2", "--output", path("back.eqs"), "--port", port()});
        ASSERT_EQ(result.code, 0) << result.err;
        // The same as the image taken from a file.
        ASSERT_EQ(
            run({"import", path("tuned.bin"), "--into", file, "--set", "2", "--output", path("import.eqs")})
                .code,
            0);
        EXPECT_EQ(read(path("back.eqs")), read(path("import.eqs")));
    }
    EXPECT_EQ(target_->memory().sets[1], factoryImage());
}

TEST_F(TargetExchange, ReadSetMayWriteOverItsOwnInput) {
    startTarget();
    const std::string file = fresh();
    Bytes bytes = read(file);
    bytes.resize(11111, 0x66);
    write(file, bytes);
    const CommandResult result =
        run({"read-set", "1", "--into", file, "--set", "5", "--output", file, "--port", port()});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(result.out, "set 1 of the target was read into set 5\n");
    EXPECT_EQ(read(file).size(), 11111U);
}

TEST_F(TargetExchange, FlashSendsTheFileAndShowsProgressOnATerminalOnly) {
    startTarget();
    Bytes software(2500);
    for (std::size_t i = 0; i < software.size(); ++i) {
        software[i] = static_cast<std::uint8_t>(i * 7 % 251);
    }
    write(path("software.bin"), software);
    CommandResult result = run({"flash", path("software.bin"), "--port", port()});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(target_->memory().software, software);
    EXPECT_THAT(result.err, Not(HasSubstr("[####")));

    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(runCommandLine({"flash", path("software.bin"), "--port", port()}, {out, err, in, true}), 0);
    EXPECT_THAT(err.str(),
                AllOf(HasSubstr("[#############...........................] 1/3"), HasSubstr("] 2/3")));
}

// --- trouble
// -----------------------------------------------------------------------------------------------------

struct Trouble {
    const char* fault;
    const char* logLine;
};

void PrintTo(const Trouble& trouble, std::ostream* out) {
    *out << trouble.fault;
}

class RequestTrouble : public TargetExchange, public testing::WithParamInterface<Trouble> {};

TEST_P(RequestTrouble, FailsWithItsLogLineAndAMessage) {
    startTarget({GetParam().fault});
    const CommandResult result = run({"versions", "--quiet", "--port", port()});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(result.err, std::string(GetParam().logLine) + "tessavoctl: " + port() +
                              ": the exchange with the target failed; the versions are not known\n");
}

INSTANTIATE_TEST_SUITE_P(Faults, RequestTrouble,
                         testing::Values(Trouble{"no-request", "ERR-->   Can't connect to Target\n"},
                                         Trouble{"wrong-request=5", "ERR-->   No REQ received\n"},
                                         Trouble{"silence=1", "ERR-->   Can't connect to Target\n"},
                                         Trouble{"negative=1", "ERR-->   Can't connect to Target\n"},
                                         Trouble{"junk=5", "ERR-->   No answer received\n"},
                                         Trouble{"damaged-reply", "ERR-->   Invalid message received\n"},
                                         Trouble{"wrong-complement", "ERR-->   Invalid message received\n"},
                                         Trouble{"truncated-reply", "ERR-->   Can't connect to Target\n"},
                                         Trouble{"cable=3000", "ERR-->   Can't connect to Target\n"},
                                         Trouble{"no-disconnect", "ERR-->   Disconnecting failed\n"}));

class BearableTrouble : public TargetExchange, public testing::WithParamInterface<std::string> {};

TEST_P(BearableTrouble, IsGotOver) {
    startTarget({GetParam()});
    const CommandResult result = run({"versions", "--port", port()});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("0x12340005"));
}

INSTANTIATE_TEST_SUITE_P(Faults, BearableTrouble, testing::Values("junk=4", "late=300"));

TEST_F(TargetExchange, ALiveImageThatIsNotConfirmed) {
    startTarget({"wrong-confirmation"});
    const CommandResult result = run({"live", tuned(), "--set", "2", "--quiet", "--port", port()});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(result.err, "tessavoctl: Target received wrong set\ntessavoctl: " + port() +
                              ": the target did not confirm the image; what it plays now is not known\n");
}

TEST_F(TargetExchange, AnUnconfirmedSetIsNotSaved) {
    startTarget({"wrong-confirmation"});
    const CommandResult result = run({"write-set", "4", tuned(), "--set", "2", "--port", port()});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("set 4 of the target is unchanged"), Not(HasSubstr("XModem128"))));
    EXPECT_EQ(target_->memory().sets[4], factoryImage());
}

TEST_F(TargetExchange, ARefusedImageIsNotConfirmedEither) {
    startTarget({"negative=1"});
    const CommandResult result = run({"live", tuned(), "--set", "2", "--port", port()});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, AllOf(HasSubstr("RX-->    Negative answer received\n"),
                                  HasSubstr(port() + ": the target did not take the image")));
    EXPECT_EQ(target_->memory().live, factoryImage());
}

TEST_F(TargetExchange, AnUnansweredConfirmationRequest) {
    startTarget({"damaged-reply"});
    const CommandResult result = run({"live", tuned(), "--set", "2", "--quiet", "--port", port()});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("took the image but did not answer the confirmation request"));
}

TEST_F(TargetExchange, ATargetThatGoesAwayBeforeSaving) {
    startTarget();
    const CommandResult result = runWatched({"write-set", "4", tuned(), "--set", "2", "--port", port()},
                                            "Prepare XModem128 Message", [this] { target_->stop(); });
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, AllOf(HasSubstr("Cannot open COM port!"),
                                  HasSubstr("set 4 of the target is unchanged"), Not(HasSubstr("nothing"))));
}

TEST_F(TargetExchange, ATargetThatGoesAwayWithinTheImageIsNotSaidToHaveGotNothing) {
    startTarget({"cable=2000"});
    const CommandResult result = run({"live", tuned(), "--set", "2", "--port", port()});
    EXPECT_EQ(result.code, 1);
    // Whether the port can be opened again is not this test's: its number may have gone to another program's.
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("what it plays now is not known"), Not(HasSubstr("nothing was sent"))));
}

TEST_F(TargetExchange, ATargetThatGoesAwayWhileSaving) {
    startTarget();
    bool saving = false;
    const CommandResult result =
        runWatched({"write-set", "4", tuned(), "--set", "2", "--port", port()},
                   "Prepare XModem128 Message\nST-->    Connecting to Target\nRX-->    Wait for REQ\n"
                   "ST-->    Connected to Target\n",
                   [&] {
                       saving = true;
                       target_->stop();
                   });
    EXPECT_TRUE(saving);
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("whether set 4 of the target has changed is not known"));
}

TEST_F(TargetExchange, ASetWithAWrongDigestIsNotTaken) {
    startTarget({"wrong-digest"});
    const std::string file = fresh();
    const CommandResult result = run({"read-set", "2", "--into", file, "--set", "1", "--output",
                                      path("out.eqs"), "--quiet", "--port", port()});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.err, "tessavoctl: The Parameterset is not right. MD5 checksum failed!\ntessavoctl: " +
                              port() + ": the set could not be read; no file was written\n");
    EXPECT_THAT(files(), testing::ElementsAre("fresh.eqs"));
}

TEST_F(TargetExchange, ASoftwareImageThatIsNotTakenWhole) {
    startTarget({"silence=2"});
    write(path("software.bin"), Bytes(4000, 9));
    const CommandResult result = run({"flash", path("software.bin"), "--port", port()});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, AllOf(HasSubstr("ERR-->   Wait for answer\n"),
                                  HasSubstr("the target may hold a part of it, so send it again")));
    EXPECT_THAT(target_->memory().software, IsEmpty());
}

TEST_F(TargetExchange, CtrlCBetweenBlocksEndsCleanly) {
    startTarget();
    write(path("software.bin"), Bytes(200000, 9));
    const auto start = std::chrono::steady_clock::now();
    const CommandResult result = runWatched({"flash", path("software.bin"), "--port", port()},
                                            "Answer received", [] { ::kill(::getpid(), SIGINT); });
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr(port() + ": interrupted; the target may hold a part of it"));
    EXPECT_EQ(run({"versions", "--port", port()}).code, 0) << "the port was left open";
}

TEST_F(TargetExchange, CtrlCInTheMiddleOfALiveTransferDoesNotAskForConfirmation) {
    startTarget();
    const CommandResult result = runWatched({"live", tuned(), "--set", "2", "--port", port()},
                                            "Send XModem Message", [] { ::kill(::getpid(), SIGINT); });
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("interrupted"), Not(HasSubstr("XModem2k")), Not(HasSubstr("COM port"))));
}

}  // namespace
}  // namespace tessavo::test
