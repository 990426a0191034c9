// What ReceiveFromTarget adds: the request frame, its answers, and the reply.

#include "support/exchange_fixture.h"

namespace tessavo::test {
namespace {

constexpr std::uint8_t request = 0x43;
constexpr std::uint8_t positive = 0x06;
constexpr std::uint8_t negative = 0x15;

class TransferReceive : public ExchangeTest {
 protected:
    Bytes reply = Bytes(4101, 0xEE);

    [[nodiscard]] Lines requested() const {
        return joined({opened("Prepare XModem2k Message"), connected(), requestWritten()});
    }
    static Lines tried(const std::string& outcome) {
        return {"RX Wait for answer", "read 1 in 2500: " + outcome};
    }
    static Lines replyRead(const std::string& outcome) {
        return {"RX Receiving XModem message", "read 4101 in 10000: " + outcome};
    }
    static Bytes requestFrame(std::span<const std::uint8_t> command) {
        Bytes payload(command.begin(), command.end());
        payload.resize(2048);
        return frameOf(3, 1, payload);
    }
    void expectReplyUntouched() const { EXPECT_THAT(reply, testing::Each(0xEE)); }

    /// After these stretches the request is taken, and the reply comes.
    void expectReplyAfter(std::vector<Lines> parts) {
        port.answer({positive});
        port.answer(replyFrame({}));
        port.answer({positive});
        EXPECT_TRUE(engine.ReceiveFromTarget(reply, Bytes{8}));
        parts.insert(
            parts.end(),
            {requestTaken(), replyRead("4101 bytes"), {"RX Message received"}, disconnected(), closed()});
        expectTranscript(parts);
    }
};

TEST_F(TransferReceive, AReplyOf4096Bytes) {
    const Bytes payload = randomBytes(4096, 1);
    port.answer({request, positive});
    port.answer(frameOf(5, 1, payload));
    port.answer({positive});
    EXPECT_TRUE(engine.ReceiveFromTarget(reply, Bytes{4, 3}));
    expectTranscript({requested(),
                      requestTaken(),
                      replyRead("4101 bytes"),
                      {"RX Message received"},
                      disconnected(),
                      closed()});
    EXPECT_THAT(port.written, testing::ElementsAre(requestFrame(Bytes{4, 3}), Bytes{0x04}));
    EXPECT_THAT(std::span(reply).first(4096), testing::ElementsAreArray(payload));
    EXPECT_THAT(std::span(reply).subspan(4096), testing::Each(0xEE));
    // No pauses here: all that passed is the quiet millisecond that ends the flush.
    EXPECT_EQ(clock.now(), Milliseconds{1});
    EXPECT_TRUE(progress.empty());
}

TEST_F(TransferReceive, ShorterReplyTypesCopyTheirOwnPayloadOnly) {
    for (const std::uint8_t type : {std::uint8_t{1}, std::uint8_t{2}, std::uint8_t{3}}) {
        const Bytes payload = randomBytes(payloadSize(type), type);
        Bytes frame = frameOf(type, 9, payload);
        frame.resize(4101, 0x1A);
        reply.assign(4101, 0xEE);
        port.answer({request, positive});
        port.answer(frame);
        port.answer({positive});
        EXPECT_TRUE(engine.ReceiveFromTarget(reply, Bytes{5}));
        EXPECT_THAT(std::span(reply).first(payload.size()), testing::ElementsAreArray(payload));
        EXPECT_THAT(std::span(reply).subspan(payload.size()), testing::Each(0xEE));
    }
}

TEST_F(TransferReceive, AValidReplyOfAnUnknownTypeIsEmpty) {
    Bytes frame = frameOf(4, 1, {});
    frame.resize(4101);
    port.answer({request, positive});
    port.answer(frame);
    port.answer({positive});
    EXPECT_TRUE(engine.ReceiveFromTarget(reply, Bytes{5}));
    expectReplyUntouched();
}

TEST_F(TransferReceive, AReplyIsCutToTheBuffer) {
    const Bytes payload = randomBytes(4096, 6);
    port.answer({request, positive});
    port.answer(frameOf(5, 1, payload));
    port.answer({positive});
    EXPECT_TRUE(engine.ReceiveFromTarget(std::span(reply).first(10), Bytes{8}));
    EXPECT_THAT(std::span(reply).first(10), testing::ElementsAreArray(std::span(payload).first(10)));
    EXPECT_THAT(std::span(reply).subspan(10), testing::Each(0xEE));
}

TEST_F(TransferReceive, RequestsAreFilledWithZeros) {
    for (const std::size_t size : {0U, 1U, 2047U, 2048U}) {
        port.written.clear();
        const Bytes command = randomBytes(size, 11);
        port.answer({request, positive});
        port.answer(replyFrame({}));
        port.answer({positive});
        EXPECT_TRUE(engine.ReceiveFromTarget(reply, command));
        EXPECT_THAT(port.written, testing::ElementsAre(requestFrame(command), Bytes{0x04}));
    }
}

TEST_F(TransferReceive, ALongerRequestTouchesNothing) {
    EXPECT_FALSE(engine.ReceiveFromTarget(reply, Bytes(2049)));
    expectTranscript({});
    expectReplyUntouched();
}

TEST_F(TransferReceive, OldInputIsDroppedBeforeTheRequest) {
    port.stale = {positive, negative};
    port.answer({request, positive});
    port.answer(replyFrame({}));
    port.answer({positive});
    EXPECT_TRUE(engine.ReceiveFromTarget(reply, Bytes{8}));
    expectTranscript({opened("Prepare XModem2k Message"),
                      connected(),
                      {"read 1 in 1: 06", "read 1 in 1: 15"},
                      requestWritten(),
                      requestTaken(),
                      replyRead("4101 bytes"),
                      {"RX Message received"},
                      disconnected(),
                      closed()});
}

TEST_F(TransferReceive, OtherBytesBeforeTheAnswerAreSkipped) {
    for (int others = 0; others <= 4; ++others) {
        transcript.clear();
        port.answer({request});
        std::vector<Lines> parts{requested()};
        for (int i = 0; i < others; ++i) {
            port.answer({0x43});
            parts.push_back(tried("43"));
        }
        expectReplyAfter(std::move(parts));
    }
}

TEST_F(TransferReceive, NegativeAnswersBeforeTheLastAttemptAreNotFatal) {
    for (int refusals = 1; refusals <= 4; ++refusals) {
        transcript.clear();
        port.answer({request});
        std::vector<Lines> parts{requested()};
        for (int i = 0; i < refusals; ++i) {
            port.answer({negative});
            parts.insert(parts.end(), {tried("15"), {"RX Negative answer received"}});
        }
        expectReplyAfter(std::move(parts));
        // The request itself went out once.
        EXPECT_EQ(port.written.size(), 2U);
        port.written.clear();
    }
}

TEST_F(TransferReceive, ANegativeAnswerOnTheLastAttemptIsNoAnswer) {
    port.answer({request, 0x43, 0x43, negative, 0x00, negative});
    EXPECT_FALSE(engine.ReceiveFromTarget(reply, Bytes{8}));
    expectTranscript({requested(),
                      tried("43"),
                      tried("43"),
                      tried("15"),
                      {"RX Negative answer received"},
                      tried("00"),
                      tried("15"),
                      {"ERR No answer received"},
                      closed()});
    expectReplyUntouched();
}

TEST_F(TransferReceive, FiveOtherBytesAreNoAnswer) {
    port.answer({request, 0x43, 0x04, 0x00, 0xFF, 0x07});
    EXPECT_FALSE(engine.ReceiveFromTarget(reply, Bytes{8}));
    expectTranscript({requested(),
                      tried("43"),
                      tried("04"),
                      tried("00"),
                      tried("FF"),
                      tried("07"),
                      {"ERR No answer received"},
                      closed()});
    expectReplyUntouched();
}

TEST_F(TransferReceive, OnlyTheAnswerTellsOfAFailedWrite) {
    port.writeResult = serial_result::ioDevice;
    port.answer({request});
    EXPECT_FALSE(engine.ReceiveFromTarget(reply, Bytes{8}));
    expectTranscript({requested(), tried("time-out"), {"ERR Can't connect to Target"}, closed()});
}

TEST_F(TransferReceive, ALateReplyTimesOut) {
    port.answer({request, positive});
    EXPECT_FALSE(engine.ReceiveFromTarget(reply, Bytes{8}));
    expectTranscript(
        {requested(), requestTaken(), replyRead("time-out"), {"ERR Can't connect to Target"}, closed()});
    EXPECT_EQ(clock.now(), Milliseconds{1 + 10000});
    expectReplyUntouched();
}

TEST_F(TransferReceive, AReplyStaysThoughTheDisconnectFails) {
    port.answer({request, positive});
    port.answer(replyFrame(Bytes{1, 2, 3}));
    EXPECT_FALSE(engine.ReceiveFromTarget(reply, Bytes{8}));
    expectTranscript({requested(),
                      requestTaken(),
                      replyRead("4101 bytes"),
                      {"RX Message received"},
                      {"ST Disconnect from Target"},
                      disconnectTry("time-out"),
                      {"ERR Disconnecting failed"},
                      closed()});
    EXPECT_THAT(std::span(reply).first(4), testing::ElementsAre(1, 2, 3, 0));
}

struct Damage {
    const char* name;
    void (*apply)(Bytes& frame);
};

class DamagedReply : public TransferReceive, public testing::WithParamInterface<Damage> {};

TEST_P(DamagedReply, IsRefusedAndNotAskedForAgain) {
    Bytes frame = replyFrame(randomBytes(4096, 12));
    GetParam().apply(frame);
    const std::string outcome = frame.size() == 1 ? "05" : std::to_string(frame.size()) + " bytes";
    port.answer({request, positive});
    port.answer(frame);
    EXPECT_FALSE(engine.ReceiveFromTarget(reply, Bytes{8}));
    expectTranscript(
        {requested(), requestTaken(), replyRead(outcome), {"ERR Invalid message received"}, closed()});
    expectReplyUntouched();
}

INSTANTIATE_TEST_SUITE_P(Kinds, DamagedReply,
                         testing::Values(Damage{"WrongCrc", [](Bytes& frame) { frame.back() ^= 0x01; }},
                                         Damage{"WrongCrcHighByte",
                                                [](Bytes& frame) { frame[4099] ^= 0x80; }},
                                         Damage{"DamagedFirstByte", [](Bytes& frame) { frame[3] ^= 0x10; }},
                                         Damage{"DamagedLastByte", [](Bytes& frame) { frame[4098] ^= 0x02; }},
                                         Damage{"WrongComplement", [](Bytes& frame) { frame[2] ^= 0x40; }},
                                         Damage{"WrongNumber", [](Bytes& frame) { frame[1] = 2; }},
                                         Damage{"OtherType", [](Bytes& frame) { frame[0] = 2; }},
                                         Damage{"UnknownType", [](Bytes& frame) { frame[0] = 4; }},
                                         Damage{"ShiftedByAByte",
                                                [](Bytes& frame) {
                                                    frame.insert(frame.begin(), 0x06);
                                                    frame.pop_back();
                                                }},
                                         Damage{"OneByteShort", [](Bytes& frame) { frame.pop_back(); }},
                                         Damage{"HeaderOnly", [](Bytes& frame) { frame.resize(3); }},
                                         Damage{"OneByte", [](Bytes& frame) { frame.resize(1); }},
                                         Damage{"Nothing", [](Bytes& frame) { frame.clear(); }},
                                         Damage{"AllZeros", [](Bytes& frame) { frame.assign(4101, 0); }}),
                         [](const auto& tested) { return std::string(tested.param.name); });

struct Failure {
    const char* name;
    std::uint32_t result;
    const char* outcome;
};

class ReceiveCablePulled : public TransferReceive,
                           public testing::WithParamInterface<std::tuple<int, Failure>> {};

TEST_P(ReceiveCablePulled, FailsClosedAndUnlocked) {
    const auto& [intactReads, failure] = GetParam();
    const std::string outcome = failure.outcome;
    if (intactReads > 0) {
        port.answer({request});
    }
    if (intactReads > 1) {
        port.answer({positive});
    }
    if (intactReads > 2) {
        port.answer(replyFrame(Bytes(4096, 0x11)));
    }
    port.answerError(failure.result);
    EXPECT_FALSE(engine.ReceiveFromTarget(reply, Bytes{8}));

    switch (intactReads) {
        case 0:
            expectTranscript(
                {opened("Prepare XModem2k Message"),
                 {"RX Wait for REQ", "read 1 in 2500: " + outcome, "ERR Can't connect to Target"},
                 closed()});
            break;
        case 1:
            expectTranscript({requested(), tried(outcome), {"ERR Can't connect to Target"}, closed()});
            break;
        case 2:
            expectTranscript(
                {requested(), requestTaken(), replyRead(outcome), {"ERR Can't connect to Target"}, closed()});
            break;
        default:
            expectTranscript({requested(),
                              requestTaken(),
                              replyRead("4101 bytes"),
                              {"RX Message received"},
                              {"ST Disconnect from Target"},
                              disconnectTry(outcome),
                              {"ERR Disconnecting failed"},
                              closed()});
    }
    if (intactReads < 3) {
        expectReplyUntouched();
    }
}

INSTANTIATE_TEST_SUITE_P(
    AtEveryRead, ReceiveCablePulled,
    testing::Combine(testing::Range(0, 4),
                     testing::Values(Failure{"DeviceError", serial_result::ioDevice, "error 1117"},
                                     Failure{"ClosedHandle", serial_result::invalidHandle, "error 6"},
                                     Failure{"Cancelled", serial_result::operationAborted, "error 995"},
                                     Failure{"TimeOut", serial_result::timeout, "time-out"})),
    [](const auto& tested) {
        return std::get<1>(tested.param).name + std::to_string(std::get<0>(tested.param));
    });

TEST_F(TransferReceive, ATimedOutReplyLeavesTheBufferThoughBytesCame) {
    Bytes half = replyFrame(Bytes(4096, 0x11));
    half.resize(2000);
    port.answer({request, positive});
    port.answers.push_back({serial_result::timeout, half});
    EXPECT_FALSE(engine.ReceiveFromTarget(reply, Bytes{8}));
    expectReplyUntouched();
}

}  // namespace
}  // namespace tessavo::test
