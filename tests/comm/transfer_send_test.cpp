// What SendToTarget adds: blocks, padding, the appended CRC and the answers to each block.

#include "support/exchange_fixture.h"

namespace tessavo::test {
namespace {

constexpr std::uint8_t request = 0x43;
constexpr std::uint8_t positive = 0x06;
constexpr std::uint8_t negative = 0x15;

class TransferSend : public ExchangeTest {
 protected:
    // The start of an exchange up to the first block's frame.
    [[nodiscard]] Lines firstBlockWritten() const {
        return joined({opened("Prepare XModem128 Message"), connected(), blockWritten(133)});
    }
    void answerAll(std::size_t blocks) {
        port.answer({request});
        for (std::size_t i = 0; i <= blocks; ++i) {
            port.answer({positive});
        }
    }
    // Payloads of all frames written, one after the other, without the disconnect command.
    [[nodiscard]] Bytes payloads() const {
        Bytes all;
        for (const Bytes& frame : port.written) {
            if (frame.size() > 1) {
                all.insert(all.end(), frame.begin() + 3, frame.end() - 2);
            }
        }
        return all;
    }

    /// Starts a new transcript of an exchange in which that many bytes come before the answer.
    std::vector<Lines> firstBlockAndBytesThatAreNoAnswer(int count) {
        transcript.clear();
        port.answer({request});
        std::vector<Lines> parts{firstBlockWritten()};
        for (int i = 0; i < count; ++i) {
            port.answer({0x43});
            parts.push_back(answerRead("43"));
        }
        return parts;
    }
};

TEST_F(TransferSend, OneBlockOf128Bytes) {
    const Bytes data = randomBytes(128, 1);
    answerAll(1);
    EXPECT_TRUE(engine.SendToTarget(data, MessageType::blocks128));
    expectTranscript({firstBlockWritten(), blockTaken(), disconnected(), closed()});
    EXPECT_THAT(port.written, testing::ElementsAre(frameOf(1, 1, data), Bytes{0x04}));
    EXPECT_EQ(clock.now(), Milliseconds{1 + 200 + 50});
}

TEST_F(TransferSend, A129thByteTakesASecondPaddedBlock) {
    const Bytes data = randomBytes(129, 2);
    Bytes second(128, 0x1A);
    second[0] = data[128];
    answerAll(2);
    EXPECT_TRUE(engine.SendToTarget(data, MessageType::blocks128));
    expectTranscript(
        {firstBlockWritten(), blockTaken(), blockWritten(133), blockTaken(), disconnected(), closed()});
    EXPECT_THAT(port.written, testing::ElementsAre(frameOf(1, 1, std::span(data).first(128)),
                                                   frameOf(1, 2, second), Bytes{0x04}));
    EXPECT_THAT(progress, testing::ElementsAre(testing::Pair(1, 2), testing::Pair(2, 2)));
}

TEST_F(TransferSend, OneByteIsPaddedToABlock) {
    Bytes payload(128, 0x1A);
    payload[0] = 0x99;
    answerAll(1);
    EXPECT_TRUE(engine.SendToTarget(Bytes{0x99}, MessageType::blocks128));
    EXPECT_THAT(port.written, testing::ElementsAre(frameOf(1, 1, payload), Bytes{0x04}));
}

TEST_F(TransferSend, ALiveMessageGoesAsOneBlockOf4096Bytes) {
    Bytes payload = randomBytes(3400, 3);
    const Bytes data = payload;
    payload.resize(4096, 0x1A);
    answerAll(1);
    EXPECT_TRUE(engine.SendToTarget(data, MessageType::blocks4k));
    expectTranscript({opened("Prepare XModem4k Message"), connected(), blockWritten(4101), blockTaken(),
                      disconnected(), closed()});
    EXPECT_THAT(port.written, testing::ElementsAre(frameOf(5, 1, payload), Bytes{0x04}));
}

TEST_F(TransferSend, A4096thByteStillFitsOneBlock) {
    for (const std::size_t size : {4095U, 4096U, 4097U}) {
        port.written.clear();
        const Bytes data = randomBytes(size, 4);
        const std::size_t blocks = size > 4096 ? 2 : 1;
        answerAll(blocks);
        EXPECT_TRUE(engine.SendToTarget(data, MessageType::blocks4k));
        Bytes expected = data;
        expected.resize(4096 * blocks, 0x1A);
        EXPECT_EQ(payloads(), expected);
    }
}

TEST_F(TransferSend, BlockNumbersWrapTo0After255) {
    const Bytes data = randomBytes(520 * 128, 5);
    answerAll(520);
    EXPECT_TRUE(engine.SendToTarget(data, MessageType::blocks128));
    ASSERT_EQ(port.written.size(), 521U);
    for (std::size_t block = 0; block < 520; ++block) {
        const auto number = static_cast<std::uint8_t>((block + 1) % 256);
        ASSERT_EQ(port.written[block], frameOf(1, number, std::span(data).subspan(block * 128, 128)))
            << block;
    }
    EXPECT_EQ(clock.now(), Milliseconds{520 * (1 + 200 + 50)});
    EXPECT_EQ(progress.size(), 520U);
    EXPECT_THAT(progress.back(), testing::Pair(520, 520));
}

class AppendedCrc : public TransferSend, public testing::WithParamInterface<std::size_t> {};

TEST_P(AppendedCrc, IsSentAsFarAsItFallsInsideTheLastBlock) {
    const std::size_t size = GetParam();
    const std::size_t blocks = (size + 1023) / 1024;
    Bytes data = randomBytes(size, static_cast<std::uint32_t>(size));
    const std::uint16_t crc = bitwiseCrc(data);
    answerAll(blocks);
    EXPECT_TRUE(engine.SendToTarget(data, MessageType::blocks1kWithCrc));

    data.push_back(static_cast<std::uint8_t>(crc / 256));
    data.push_back(static_cast<std::uint8_t>(crc % 256));
    data.resize(blocks * 1024, 0x1A);
    ASSERT_EQ(port.written.size(), blocks + 1);
    for (std::size_t block = 0; block < blocks; ++block) {
        const auto number = static_cast<std::uint8_t>((block + 1) % 256);
        ASSERT_EQ(port.written[block], frameOf(2, number, std::span(data).subspan(block * 1024, 1024)));
    }
    EXPECT_EQ(transcript.lines()[1], "ST Prepare XModem1k Message");
}

// Of 1022 bytes the whole CRC fits, of 1023 its high byte, of 1024 nothing.
INSTANTIATE_TEST_SUITE_P(Lengths, AppendedCrc,
                         testing::Values(1, 2, 1021, 1022, 1023, 1024, 1025, 2045, 2046, 2047, 2048, 2049,
                                         10000, 524287, 524288),
                         testing::PrintToStringParamName());

TEST_F(TransferSend, AnEmptySoftwareImageSendsNoBlock) {
    port.answer({request, positive});
    EXPECT_TRUE(engine.SendToTarget({}, MessageType::blocks1kWithCrc));
    EXPECT_THAT(port.written, testing::ElementsAre(Bytes{0x04}));
}

TEST_F(TransferSend, OldInputIsDroppedBeforeEachBlock) {
    port.stale = {0x06, 0x15, 0x43};
    answerAll(1);
    EXPECT_TRUE(engine.SendToTarget(Bytes(128), MessageType::blocks128));
    expectTranscript({opened("Prepare XModem128 Message"),
                      connected(),
                      {"read 1 in 1: 06", "read 1 in 1: 15", "read 1 in 1: 43"},
                      blockWritten(133),
                      blockTaken(),
                      disconnected(),
                      closed()});
}

TEST_F(TransferSend, ALineThatNeverFallsSilentDoesNotHoldItUpForever) {
    port.chatters = true;
    answerAll(1);
    std::size_t reads = 0;
    port.onRead = [&] { ++reads; };
    EXPECT_TRUE(engine.SendToTarget(Bytes(128), MessageType::blocks128));
    EXPECT_EQ(reads, flushLimit + 3);
}

TEST_F(TransferSend, AnAnswerMayComeAfterUpToFourOtherBytes) {
    for (int others = 0; others <= 4; ++others) {
        std::vector<Lines> parts = firstBlockAndBytesThatAreNoAnswer(others);
        port.answer({positive, positive});
        EXPECT_TRUE(engine.SendToTarget(Bytes(128), MessageType::blocks128));
        parts.insert(parts.end(), {blockTaken(), disconnected(), closed()});
        expectTranscript(parts);
    }
}

TEST_F(TransferSend, FiveOtherBytesAreNoAnswer) {
    port.answer({request, 0x43, 0x04, 0x00, 0xFF, 0x16});
    EXPECT_FALSE(engine.SendToTarget(Bytes(128), MessageType::blocks128));
    expectTranscript({firstBlockWritten(),
                      answerRead("43"),
                      answerRead("04"),
                      answerRead("00"),
                      answerRead("FF"),
                      answerRead("16"),
                      {"ERR No answer received"},
                      closed()});
    EXPECT_TRUE(progress.empty());
}

TEST_F(TransferSend, ANegativeAnswerFailsOnEveryAttempt) {
    for (int others = 0; others <= 4; ++others) {
        std::vector<Lines> parts = firstBlockAndBytesThatAreNoAnswer(others);
        port.answer({negative});
        EXPECT_FALSE(engine.SendToTarget(Bytes(128), MessageType::blocks128));
        parts.insert(parts.end(), {answerRead("15"), {"RX Negative answer received"}, closed()});
        expectTranscript(parts);
    }
}

TEST_F(TransferSend, ANegativeAnswerToALaterBlockSendsNoMore) {
    port.answer({request, positive, negative});
    EXPECT_FALSE(engine.SendToTarget(Bytes(128 * 4), MessageType::blocks128));
    expectTranscript({firstBlockWritten(),
                      blockTaken(),
                      blockWritten(133),
                      answerRead("15"),
                      {"RX Negative answer received"},
                      closed()});
    EXPECT_EQ(port.written.size(), 2U);
    EXPECT_THAT(progress, testing::ElementsAre(testing::Pair(1, 4)));
}

TEST_F(TransferSend, NoAnswerIsLoggedAfterThePause) {
    port.answer({request});
    EXPECT_FALSE(engine.SendToTarget(Bytes(128), MessageType::blocks128));
    expectTranscript({firstBlockWritten(), answerRead("time-out"), {"ERR Wait for answer"}, closed()});
    EXPECT_EQ(clock.now(), Milliseconds{1 + 200 + 2500 + 50});
}

TEST_F(TransferSend, SilenceAfterOtherBytesFails) {
    port.answer({request, 0x43});
    EXPECT_FALSE(engine.SendToTarget(Bytes(128), MessageType::blocks128));
    expectTranscript(
        {firstBlockWritten(), answerRead("43"), answerRead("time-out"), {"ERR Wait for answer"}, closed()});
}

TEST_F(TransferSend, OnlyTheAnswerTellsOfAFailedWrite) {
    port.writeResult = serial_result::timeout;
    answerAll(1);
    EXPECT_TRUE(engine.SendToTarget(Bytes(128), MessageType::blocks128));
    expectTranscript({firstBlockWritten(), blockTaken(), disconnected(), closed()});
    transcript.clear();
    port.answer({request});
    EXPECT_FALSE(engine.SendToTarget(Bytes(128), MessageType::blocks128));
    expectTranscript({firstBlockWritten(), answerRead("time-out"), {"ERR Wait for answer"}, closed()});
}

TEST_F(TransferSend, EndsQuietlyInEachPauseWhenTheProgramEnds) {
    port.answer({request});
    clock.interruptAfter(0);
    EXPECT_FALSE(engine.SendToTarget(Bytes(256), MessageType::blocks128));
    expectTranscript({firstBlockWritten(), closed()});
}

TEST_F(TransferSend, EndsQuietlyAfterAnAnswerWhenTheProgramEnds) {
    for (std::size_t pauses = 1; pauses < 4; pauses += 2) {
        VirtualClock ending(transcript);
        ending.interruptAfter(pauses);
        TransferEngine cut({port.maker(), ending, log, boxes, lock, [this] { return portName; }, {}});
        transcript.clear();
        std::vector<Lines> parts{firstBlockWritten()};
        port.answer({request});
        if (pauses == 3) {
            port.answer({positive});
            parts.insert(parts.end(), {blockTaken(), blockWritten(133)});
        }
        port.answer({negative});
        EXPECT_FALSE(cut.SendToTarget(Bytes(256), MessageType::blocks128));
        parts.insert(parts.end(), {answerRead("15"), closed()});
        expectTranscript(parts);
    }
}

struct Failure {
    const char* name;
    std::uint32_t result;
    const char* outcome;
};

class SendCablePulled : public TransferSend,
                        public testing::WithParamInterface<std::tuple<std::size_t, Failure>> {};

TEST_P(SendCablePulled, FailsClosedAndUnlocked) {
    const auto& [intactReads, failure] = GetParam();
    const std::string outcome = failure.outcome;
    const std::uint8_t intact[] = {request, positive, positive, positive};
    for (std::size_t i = 0; i < intactReads; ++i) {
        port.answer({intact[i]});
    }
    port.answers.push_back({failure.result, {}});
    EXPECT_FALSE(engine.SendToTarget(Bytes(256), MessageType::blocks128));

    const Lines block = blockWritten(133);
    switch (intactReads) {
        case 0:
            expectTranscript(
                {opened("Prepare XModem128 Message"),
                 {"RX Wait for REQ", "read 1 in 2500: " + outcome, "ERR Can't connect to Target"},
                 closed()});
            break;
        case 1:
            expectTranscript({firstBlockWritten(), answerRead(outcome), {"ERR Wait for answer"}, closed()});
            break;
        case 2:
            expectTranscript({firstBlockWritten(),
                              blockTaken(),
                              block,
                              answerRead(outcome),
                              {"ERR Wait for answer"},
                              closed()});
            break;
        default:
            expectTranscript({firstBlockWritten(),
                              blockTaken(),
                              block,
                              blockTaken(),
                              {"ST Disconnect from Target"},
                              disconnectTry(outcome),
                              {"ERR Disconnecting failed"},
                              closed()});
    }
}

INSTANTIATE_TEST_SUITE_P(
    AtEveryRead, SendCablePulled,
    testing::Combine(testing::Range(std::size_t{0}, std::size_t{4}),
                     testing::Values(Failure{"DeviceError", serial_result::ioDevice, "error 1117"},
                                     Failure{"ClosedHandle", serial_result::invalidHandle, "error 6"},
                                     Failure{"Cancelled", serial_result::operationAborted, "error 995"},
                                     Failure{"TimeOut", serial_result::timeout, "time-out"},
                                     Failure{"NothingRead", serial_result::success, "0 bytes"})),
    [](const auto& tested) {
        return std::get<1>(tested.param).name + std::to_string(std::get<0>(tested.param));
    });

}  // namespace
}  // namespace tessavo::test
