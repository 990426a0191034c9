// What both kinds of exchange share: the lock, opening, the request byte, disconnecting and closing.

#include <algorithm>
#include <atomic>
#include <thread>

#include "support/answering_line.h"
#include "support/exchange_fixture.h"

namespace tessavo::test {
namespace {

constexpr std::uint8_t request = 0x43;
constexpr std::uint8_t positive = 0x06;

using TransferConnection = ExchangeTest;

TEST_F(TransferConnection, AnEmptyMessageConnectsAndDisconnects) {
    port.answer({request, positive});
    EXPECT_TRUE(engine.SendToTarget({}, MessageType::blocks128));
    expectTranscript({opened("Prepare XModem128 Message"), connected(), disconnected(), closed()});
    EXPECT_THAT(port.written, testing::ElementsAre(Bytes{0x04}));
    EXPECT_TRUE(progress.empty());
    EXPECT_EQ(clock.now(), Milliseconds{0});
}

TEST_F(TransferConnection, ALockThatCannotBeHadFailsWithoutAWord) {
    lock.available = false;
    Bytes reply(4096, 0xEE);
    EXPECT_FALSE(engine.SendToTarget(Bytes(10), MessageType::blocks4k));
    EXPECT_FALSE(engine.ReceiveFromTarget(reply, Bytes{8}));
    expectTranscript({{"lock 5000: time-out", "lock 5000: time-out"}});
    EXPECT_THAT(reply, testing::Each(0xEE));
}

TEST_F(TransferConnection, ThePreparationNamesTheMessageType) {
    port.openResult = serial_result::fileNotFound;
    Bytes reply(4096);
    engine.SendToTarget({}, MessageType::blocks128);
    engine.SendToTarget({}, MessageType::blocks1kWithCrc);
    engine.SendToTarget({}, MessageType::blocks4k);
    engine.ReceiveFromTarget(reply, Bytes{5});
    Lines statuses;
    for (const std::string& line : transcript.lines()) {
        if (line.starts_with("ST ")) {
            statuses.push_back(line);
        }
    }
    EXPECT_THAT(statuses, testing::ElementsAre("ST Prepare XModem128 Message", "ST Prepare XModem1k Message",
                                               "ST Prepare XModem4k Message", "ST Prepare XModem2k Message"));
}

TEST_F(TransferConnection, AnUnknownTypeTouchesNothing) {
    for (unsigned type = 0; type < 256; ++type) {
        if (type != 1 && type != 2 && type != 5) {
            EXPECT_FALSE(engine.SendToTarget(Bytes(10), static_cast<MessageType>(type))) << type;
        }
    }
    expectTranscript({});
}

TEST_F(TransferConnection, AnotherPortNameIsUsedByTheNextExchange) {
    port.openResult = serial_result::fileNotFound;
    engine.SendToTarget({}, MessageType::blocks128);
    portName = "ttyUSB1";
    transcript.clear();
    engine.SendToTarget({}, MessageType::blocks128);
    EXPECT_EQ(transcript.lines().at(2), opened("")[2]);
    EXPECT_THAT(transcript.lines().at(2), testing::HasSubstr("ttyUSB1"));
}

TEST_F(TransferConnection, APortThatCannotBeOpenedIsToldOnceTheLockIsFree) {
    for (const std::uint32_t result : {serial_result::fileNotFound, serial_result::accessDenied,
                                       serial_result::generalFailure, serial_result::timeout}) {
        port.openResult = result;
        for (const bool sending : {true, false}) {
            transcript.clear();
            Bytes reply(4096, 0xEE);
            EXPECT_FALSE(sending ? engine.SendToTarget(Bytes(10), MessageType::blocks4k)
                                 : engine.ReceiveFromTarget(reply, Bytes{8}));
            Lines start = opened(sending ? "Prepare XModem4k Message" : "Prepare XModem2k Message");
            start.resize(3);
            expectTranscript({start, closed(), {"box: Cannot open COM port!"}});
            EXPECT_THAT(reply, testing::Each(0xEE));
        }
    }
}

TEST_F(TransferConnection, WithoutAPortNameTheLineOfNoNameIsOpened) {
    portName.clear();
    port.openResult = serial_result::fileNotFound;
    EXPECT_FALSE(engine.SendToTarget({}, MessageType::blocks128));
    Lines start = opened("Prepare XModem128 Message");
    start.resize(3);
    expectTranscript({start, closed(), {"box: Cannot open COM port!"}});
}

TEST_F(TransferConnection, APortThatCannotBeSetUpCountsAsNotOpened) {
    port.setupResult = serial_result::invalidArgument;
    EXPECT_FALSE(engine.SendToTarget({}, MessageType::blocks128));
    Lines start = opened("Prepare XModem128 Message");
    start.resize(4);
    expectTranscript({start, closed(), {"box: Cannot open COM port!"}});
}

TEST_F(TransferConnection, CancelReachesTheLineThatIsReadAndNoLineLater) {
    port.onRead = [this] {
        engine.cancel();
        port.answers = {{serial_result::operationAborted, {}}};
        port.onRead = {};
    };
    EXPECT_FALSE(engine.SendToTarget(Bytes(10), MessageType::blocks128));
    expectTranscript(
        {opened("Prepare XModem128 Message"),
         {"RX Wait for REQ", "cancel", "read 1 in 2500: error 995", "ERR Can't connect to Target"},
         closed()});
    transcript.clear();
    engine.cancel();
    EXPECT_TRUE(transcript.lines().empty()) << "the line of the exchange before is gone";
}

TEST_F(TransferConnection, AfterACancelEveryLineIsCancelledBeforeItIsOpened) {
    engine.cancel();
    for (int exchange = 0; exchange < 2; ++exchange) {
        transcript.clear();
        port.answers = {{serial_result::operationAborted, {}}};
        EXPECT_FALSE(engine.SendToTarget(Bytes(10), MessageType::blocks128));
        Lines start = opened("Prepare XModem128 Message");
        start.insert(start.begin() + 2, "cancel");
        expectTranscript({start,
                          {"RX Wait for REQ", "read 1 in 2500: error 995", "ERR Can't connect to Target"},
                          closed()});
    }
}

TEST_F(TransferConnection, TheRequestByteMayComeAfterUpToFourOthers) {
    for (int others = 0; others <= 4; ++others) {
        transcript.clear();
        std::vector<Lines> parts{opened("Prepare XModem128 Message")};
        for (int i = 0; i < others; ++i) {
            port.answer({0x15});
            parts.push_back({"RX Wait for REQ", "read 1 in 2500: 15"});
        }
        port.answer({request, positive});
        EXPECT_TRUE(engine.SendToTarget({}, MessageType::blocks128));
        parts.insert(parts.end(), {connected(), disconnected(), closed()});
        expectTranscript(parts);
    }
}

TEST_F(TransferConnection, FiveOtherBytesAreNoRequest) {
    port.answer({0x06, 0x15, 0x04, 0x63, 0x00});
    EXPECT_FALSE(engine.SendToTarget(Bytes(10), MessageType::blocks128));
    expectTranscript({opened("Prepare XModem128 Message"),
                      {"RX Wait for REQ", "read 1 in 2500: 06", "RX Wait for REQ", "read 1 in 2500: 15",
                       "RX Wait for REQ", "read 1 in 2500: 04", "RX Wait for REQ", "read 1 in 2500: 63",
                       "RX Wait for REQ", "read 1 in 2500: 00", "ERR No REQ received"},
                      closed()});
    EXPECT_TRUE(port.written.empty());
}

TEST_F(TransferConnection, ASilentTargetFailsAtOnce) {
    EXPECT_FALSE(engine.SendToTarget(Bytes(10), MessageType::blocks128));
    expectTranscript({opened("Prepare XModem128 Message"),
                      {"RX Wait for REQ", "read 1 in 2500: time-out", "ERR Can't connect to Target"},
                      closed()});
    EXPECT_EQ(clock.now(), Milliseconds{2500});
}

TEST_F(TransferConnection, ATargetThatFallsSilentAfterOtherBytesFails) {
    port.answer({0x06, 0x06});
    EXPECT_FALSE(engine.SendToTarget(Bytes(10), MessageType::blocks128));
    expectTranscript({opened("Prepare XModem128 Message"),
                      {"RX Wait for REQ", "read 1 in 2500: 06", "RX Wait for REQ", "read 1 in 2500: 06",
                       "RX Wait for REQ", "read 1 in 2500: time-out", "ERR Can't connect to Target"},
                      closed()});
}

TEST_F(TransferConnection, AReadThatGivesNothingIsAFailedRead) {
    port.answer(Bytes{});
    EXPECT_FALSE(engine.SendToTarget(Bytes(10), MessageType::blocks128));
    expectTranscript({opened("Prepare XModem128 Message"),
                      {"RX Wait for REQ", "read 1 in 2500: 0 bytes", "ERR Can't connect to Target"},
                      closed()});
}

TEST_F(TransferConnection, TheDisconnectIsSentUpToFiveTimes) {
    for (int others = 0; others <= 4; ++others) {
        transcript.clear();
        port.written.clear();
        port.answer({request});
        std::vector<Lines> parts{
            opened("Prepare XModem128 Message"), connected(), {"ST Disconnect from Target"}};
        for (int i = 0; i < others; ++i) {
            port.answer({0x15});
            parts.push_back(disconnectTry("15"));
        }
        port.answer({positive});
        EXPECT_TRUE(engine.SendToTarget({}, MessageType::blocks128));
        parts.insert(parts.end(), {disconnectTry("06"), {"ST Disconnected from Target"}, closed()});
        expectTranscript(parts);
        EXPECT_THAT(port.written, testing::SizeIs(static_cast<std::size_t>(others) + 1));
        EXPECT_THAT(port.written, testing::Each(Bytes{0x04}));
    }
}

TEST_F(TransferConnection, FiveOtherBytesAreNoDisconnect) {
    port.answer({request, 0x15, 0x43, 0x04, 0x00, 0xFF});
    EXPECT_FALSE(engine.SendToTarget({}, MessageType::blocks128));
    expectTranscript({opened("Prepare XModem128 Message"),
                      connected(),
                      {"ST Disconnect from Target"},
                      disconnectTry("15"),
                      disconnectTry("43"),
                      disconnectTry("04"),
                      disconnectTry("00"),
                      disconnectTry("FF"),
                      {"ERR No answer received"},
                      closed()});
}

TEST_F(TransferConnection, ASilentDisconnectFails) {
    port.answer({request, 0x15});
    EXPECT_FALSE(engine.SendToTarget({}, MessageType::blocks128));
    expectTranscript({opened("Prepare XModem128 Message"),
                      connected(),
                      {"ST Disconnect from Target"},
                      disconnectTry("15"),
                      disconnectTry("time-out"),
                      {"ERR Disconnecting failed"},
                      closed()});
}

TEST_F(TransferConnection, AnExchangeAfterAFailedOneStartsAfresh) {
    EXPECT_FALSE(engine.SendToTarget(Bytes(10), MessageType::blocks128));
    transcript.clear();
    port.answer({request, positive});
    EXPECT_TRUE(engine.SendToTarget({}, MessageType::blocks128));
    expectTranscript({opened("Prepare XModem128 Message"), connected(), disconnected(), closed()});
}

TEST_F(TransferConnection, TellsWhenItHasTheLineAndHowItEnded) {
    TransferEngine told(
        {port.maker(),
         clock,
         log,
         boxes,
         lock,
         [this] { return portName; },
         {},
         [this](ExchangeEnd end) { transcript.add("ended " + std::to_string(static_cast<int>(end))); },
         [this] { transcript.add("began"); }});
    const Lines whole = joined({opened("Prepare XModem128 Message"), connected(), disconnected(), closed()});
    const auto exchange = [&] {
        transcript.clear();
        told.SendToTarget({}, MessageType::blocks128);
        return transcript.lines();
    };
    port.answer({request, positive});
    Lines lines = exchange();
    ASSERT_EQ(lines.size(), whole.size() + 2);
    EXPECT_EQ(lines[1], "began") << "right behind the lock";
    EXPECT_EQ(lines.back(), "ended 0");
    std::erase(lines, "began");
    std::erase(lines, "ended 0");
    EXPECT_EQ(lines, whole);

    lines = exchange();
    EXPECT_EQ(std::ranges::count(lines, "began"), 1);
    EXPECT_EQ(lines.back(), "ended 1") << "the target is silent";

    lock.available = false;
    lines = exchange();
    EXPECT_EQ(std::ranges::count(lines, "began"), 0);
    EXPECT_EQ(lines.back(), "ended 6") << "somebody else has the line";
}

class TransferEnd : public ExchangeTest {
 protected:
    TransferEnd() { clock.notePauses(false); }

    ExchangeEnd send() {
        told_.SendToTarget(Bytes(10), MessageType::blocks128);
        return end();
    }
    ExchangeEnd receive() {
        Bytes reply(4101);
        told_.ReceiveFromTarget(reply, Bytes{5});
        return end();
    }
    [[nodiscard]] std::string lastLine() const {
        std::string last;
        for (const std::string& line : transcript.lines()) {
            if (line.starts_with("ERR ") || line.starts_with("RX ") || line.starts_with("ST ")) {
                last = line;
            }
        }
        return last;
    }
    Bytes damagedReply() {
        Bytes reply = replyFrame(Bytes(10, 0x22));
        reply[2] = 0x00;
        return reply;
    }

    int portBoxesClosed = 0;

 private:
    ExchangeEnd end() {
        EXPECT_EQ(ends_.size(), 1U) << "each exchange is told once";
        EXPECT_TRUE(port.answers.empty());
        const ExchangeEnd only = ends_.back();
        ends_.clear();
        return only;
    }

    std::vector<ExchangeEnd> ends_;
    TransferEngine told_{{.makeLine = port.maker(),
                          .clock = clock,
                          .log = log,
                          .boxes = boxes,
                          .lock = lock,
                          .portName = [this] { return portName; },
                          .progress = {},
                          .ended = [this](ExchangeEnd end) { ends_.push_back(end); },
                          .began = {},
                          .portBoxClosed =
                              [this] {
                                  EXPECT_EQ(transcript.lines().back(), "box: Cannot open COM port!");
                                  ++portBoxesClosed;
                              }}};
};

TEST_F(TransferEnd, OfASendTellsWhatTheTargetDid) {
    port.answer({request, positive, positive});
    EXPECT_EQ(send(), ExchangeEnd::answered);
    EXPECT_EQ(send(), ExchangeEnd::noAnswer) << "no request";
    port.answer({0x00, 0x00, 0x00, 0x00, 0x00});
    EXPECT_EQ(send(), ExchangeEnd::noAnswer) << "bytes, but no request";
    port.answer({request});
    EXPECT_EQ(send(), ExchangeEnd::noAnswer) << "silence after the block";
    port.answer({request, 0x00, 0x00, 0x00, 0x00, 0x00});
    EXPECT_EQ(send(), ExchangeEnd::noAnswer);
    EXPECT_EQ(lastLine(), "ERR No answer received");
    port.answer({request, 0x15});
    EXPECT_EQ(send(), ExchangeEnd::refused);
    EXPECT_EQ(lastLine(), "RX Negative answer received");
    port.answer({request, 0x00, 0x15});
    EXPECT_EQ(send(), ExchangeEnd::refused);
    port.answer({request, positive});
    EXPECT_EQ(send(), ExchangeEnd::notDisconnected);
    EXPECT_EQ(lastLine(), "ERR Disconnecting failed");
    port.answer({request, positive, 0x00, 0x00, 0x15, 0x00, 0x00});
    EXPECT_EQ(send(), ExchangeEnd::notDisconnected) << "a negative answer there refuses nothing";
}

TEST_F(TransferEnd, OfARequestTellsWhatTheTargetDid) {
    const auto taken = [&](const Bytes& reply) {
        port.answer({request, positive});
        port.answer(reply);
    };
    taken(replyFrame(Bytes(10, 0x22)));
    port.answer({positive});
    EXPECT_EQ(receive(), ExchangeEnd::answered);
    port.answer({request, 0x15, positive});
    port.answer(replyFrame(Bytes(10, 0x22)));
    port.answer({positive});
    EXPECT_EQ(receive(), ExchangeEnd::answered) << "refused at first, answered after all";
    port.answer({request});
    EXPECT_EQ(receive(), ExchangeEnd::noAnswer);
    port.answer({request, 0x15});
    EXPECT_EQ(receive(), ExchangeEnd::refused) << "and silence behind it";
    port.answer({request, 0x15, 0x15, 0x15, 0x15, 0x15});
    EXPECT_EQ(receive(), ExchangeEnd::refused);
    port.answer({request, positive});
    EXPECT_EQ(receive(), ExchangeEnd::noAnswer) << "no byte of a reply";
    port.answer({request, 0x15, positive});
    EXPECT_EQ(receive(), ExchangeEnd::noAnswer) << "the refusal was over";
    taken(damagedReply());
    EXPECT_EQ(receive(), ExchangeEnd::damagedAnswer);
    EXPECT_EQ(lastLine(), "ERR Invalid message received");
    port.answer({request, positive});
    port.answers.push_back({serial_result::timeout, Bytes(100, 0x22)});
    EXPECT_EQ(receive(), ExchangeEnd::damagedAnswer) << "a part of a reply";
    taken(replyFrame(Bytes(10, 0x22)));
    EXPECT_EQ(receive(), ExchangeEnd::notDisconnected);
}

TEST_F(TransferEnd, TellsOfThePortAndOfTheLine) {
    port.openResult = serial_result::fileNotFound;
    EXPECT_EQ(receive(), ExchangeEnd::portNotOpened);
    EXPECT_EQ(portBoxesClosed, 1);
    port.openResult = serial_result::success;
    port.setupResult = serial_result::invalidParameter;
    EXPECT_EQ(send(), ExchangeEnd::portNotOpened);
    EXPECT_EQ(portBoxesClosed, 2);
    lock.available = false;
    const std::size_t before = transcript.lines().size();
    EXPECT_EQ(send(), ExchangeEnd::lineBusy);
    EXPECT_EQ(transcript.lines().size(), before + 1) << "the log is silent";
    EXPECT_EQ(portBoxesClosed, 2) << "and no box came";
}

TEST(TransferLock, KeepsExchangesOfTwoThreadsApart) {
    Transcript transcript;
    VirtualClock clock(transcript);
    NotedLog log(transcript);
    NotedBoxes boxes(transcript);
    CSemaphore lock;
    AnsweringLine line;
    TransferEngine engine({borrowing(line), clock, log, boxes, lock, [] { return std::string("COM1"); }, {}});
    std::atomic<int> done = 0;
    const auto exchanges = [&] {
        for (int i = 0; i < 50; ++i) {
            done += engine.SendToTarget(Bytes(200), MessageType::blocks128);
        }
    };
    std::thread other(exchanges);
    exchanges();
    other.join();
    EXPECT_EQ(done, 100);
    EXPECT_EQ(line.clashes, 0);
    EXPECT_EQ(line.users, 0);
}

}  // namespace
}  // namespace tessavo::test
