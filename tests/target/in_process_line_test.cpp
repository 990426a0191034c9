#include "target/in_process_line.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <gtest/gtest.h>
#include <thread>

#include "comm/port_list.h"
#include "comm/serial_port_line.h"
#include "support/waiting.h"
#include "target/exchange_host.h"

// A whole host with the transfer engine at a target of the same program. Only the engine's pauses are left
// out.

namespace tessavo::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds longWait = ExchangeHost::longWait;
constexpr milliseconds shortWait{30};
constexpr LineSettings settings{.baudRate = 115200};

struct Target {
    explicit Target(const std::vector<std::string>& faults, std::uint32_t baud)
        : target("demo", TargetMemory::holding(imageOf(0)),
                 {.faults = faultsOf(faults), .timePerByte = byteTime(baud)}) {}
    InProcessTarget target;
};

/// A target with a host at it.
struct Host : Target, ExchangeHost {
    explicit Host(const std::vector<std::string>& faults = {}, std::uint32_t baud = 0)
        : Target(faults, baud), ExchangeHost(linesTo(target, makeSerialPortLine), "demo") {}
};

TEST(InProcessLine, ALiveExchangeIsTakenAndConfirmed) {
    Host host;
    const ImageBytes image = imageOf(3);
    EXPECT_TRUE(host.sendLive(image));
    EXPECT_EQ(host.target.memory().live, image);
    ASSERT_TRUE(host.ask({command_code::confirmLiveSet}));
    EXPECT_TRUE(std::all_of(host.reply.begin(), host.reply.begin() + 10,
                            [](std::uint8_t byte) { return byte == 0x11; }));
    EXPECT_EQ(host.log.lastError, "");
    EXPECT_EQ(host.boxes.last, "");
}

TEST(InProcessLine, SetsAreSavedAndReadBackAtTheSpeedOfARealLine) {
    Host host({}, 115200);
    const ImageBytes image = imageOf(9);
    const auto start = Clock::now();
    ASSERT_TRUE(host.sendLive(image));
    ASSERT_TRUE(host.save(2, image));
    ASSERT_TRUE(host.ask({4, 2}));
    EXPECT_TRUE(std::equal(image.begin(), image.end(), host.reply.begin()));
    // What the target sends is paced: 4102 bytes of reply alone take 356 ms.
    EXPECT_GT(Clock::now() - start, milliseconds(350));
    ASSERT_TRUE(host.ask({4, 0}));
    EXPECT_NE(host.reply[20], image[20]);
}

TEST(InProcessLine, ASoftwareImageIsFlashed) {
    Host host;
    Bytes software(20000);
    for (std::size_t i = 0; i < software.size(); ++i) {
        software[i] = static_cast<std::uint8_t>((i * 2654435761U) >> 24U);
    }
    ASSERT_TRUE(host.engine.SendToTarget(software, MessageType::blocks1kWithCrc));
    EXPECT_EQ(host.target.memory().software, software);
}

TEST(InProcessLine, FaultsReachTheHostAndTheNextExchangeGoesThrough) {
    struct Case {
        std::string fault;
        std::string error;
        bool taken;  ///< the target has the image all the same
    };
    for (const Case& fault : {Case{"wrong-request=5", "No REQ received", false},
                              Case{"negative=1", "", false}, Case{"junk=5", "No answer received", true}}) {
        SCOPED_TRACE(fault.fault);
        Host host({fault.fault});
        EXPECT_FALSE(host.sendLive(imageOf(4)));
        EXPECT_EQ(host.log.lastError, fault.error);
        EXPECT_EQ(host.target.memory().live, imageOf(fault.taken ? 4 : 0));
        EXPECT_EQ(host.line->open(), serial_result::success) << "the exchange has closed its own";
    }
    Host host({"damaged-reply"});
    EXPECT_FALSE(host.ask({command_code::confirmLiveSet}));
    EXPECT_EQ(host.log.lastError, "Invalid message received");
    EXPECT_TRUE(host.sendLive(imageOf(5)));
    EXPECT_EQ(host.target.memory().live, imageOf(5));
}

TEST(InProcessLine, APulledCableIsADeviceErrorAndNoPortAfterwards) {
    Host host({"cable=100"});
    ASSERT_EQ(host.line->open(), serial_result::success);
    EXPECT_EQ(host.read(1), requestByte);
    host.write(Bytes(200));
    EXPECT_EQ(host.write(Bytes(1)), serial_result::ioDevice);
    EXPECT_EQ(host.readResult(longWait), serial_result::ioDevice);
    host.line->close();
    EXPECT_EQ(host.line->open(), serial_result::fileNotFound);
    EXPECT_FALSE(host.sendLive(imageOf(1)));
    EXPECT_EQ(host.boxes.last, cannotOpenPortText);
}

TEST(InProcessLine, ATargetIsForOneLineAtATime) {
    Host host;
    ASSERT_EQ(host.line->open(), serial_result::success);
    InProcessLine other(host.target);
    EXPECT_EQ(other.open(), serial_result::accessDenied);
    other.close();
    EXPECT_EQ(host.line->open(), serial_result::success) << "it is open already, and goes on";
    EXPECT_EQ(host.read(2, shortWait), requestByte) << "the others have disturbed nothing";
    host.line->close();
    host.line->close();
    EXPECT_EQ(other.open(), serial_result::success);
}

TEST(InProcessLine, IsClosedAtItsEndAndForgetsWhatWasNotRead) {
    Host host;
    {
        InProcessLine first(host.target);
        ASSERT_EQ(first.open(), serial_result::success);
    }
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(host.line->open(), serial_result::success);
        EXPECT_EQ(host.read(2, shortWait), requestByte) << "one request byte for each opening";
        host.line->close();
    }
    ASSERT_EQ(host.line->open(), serial_result::success);
    host.line->close();
    ASSERT_EQ(host.line->open(), serial_result::success);
    EXPECT_EQ(host.read(2, shortWait), requestByte) << "the other one was not read in time";
}

TEST(InProcessLine, ReadsWaitForAllBytesOrTheTimeOut) {
    Host host;
    ASSERT_EQ(host.line->open(), serial_result::success);
    std::array<std::uint8_t, 4> bytes{};
    const auto start = Clock::now();
    const LineRead read = host.line->read(bytes, shortWait);
    EXPECT_EQ(read.result, serial_result::timeout);
    EXPECT_GE(Clock::now() - start, shortWait);
    EXPECT_EQ(read.count, 1U) << "what came is handed over";
    EXPECT_EQ(bytes[0], control_byte::request);
    EXPECT_EQ(host.line->read({}, longWait).result, serial_result::success);
    EXPECT_EQ(host.readResult(milliseconds(0)), serial_result::timeout);
}

TEST(InProcessLine, CancelEndsAWaitOfAnotherThreadForGood) {
    // Some of these meet the other thread before its wait, some within.
    for (int i = 0; i < 200; ++i) {
        Host host;
        ASSERT_EQ(host.line->open(), serial_result::success);
        ASSERT_EQ(host.read(1), requestByte);
        std::atomic<bool> ended = false;
        std::atomic<bool> started = false;
        std::uint32_t result = 0;
        std::thread reader([&] {
            started = true;
            result = host.readResult(milliseconds(3600000));
            ended = true;
        });
        EXPECT_TRUE(eventually([&] { return started.load(); }));
        host.line->cancel();
        EXPECT_TRUE(eventually([&] { return ended.load(); }));
        reader.join();
        EXPECT_EQ(result, serial_result::operationAborted);
        EXPECT_EQ(host.readResult(longWait), serial_result::operationAborted);
        EXPECT_EQ(host.write(disconnect), serial_result::operationAborted);
        host.line->close();
        EXPECT_EQ(host.line->open(), serial_result::success);
        EXPECT_EQ(host.readResult(longWait), serial_result::operationAborted);
        InProcessLine other(host.target);
        host.line->close();
        EXPECT_EQ(other.open(), serial_result::success) << "the line alone is cancelled, not the target";
    }
}

TEST(InProcessLine, CancelEndsAnExchange) {
    Host host({"no-request"});
    std::atomic<bool> ended = false;
    std::thread exchange([&] {
        EXPECT_FALSE(host.sendLive(imageOf(1)));
        ended = true;
    });
    const auto start = Clock::now();
    host.engine.cancel();
    EXPECT_TRUE(eventually([&] { return ended.load(); }));
    EXPECT_LT(Clock::now() - start, milliseconds(1000));
    exchange.join();
}

TEST(InProcessLine, CarriesNothingWhileItIsClosedAndTakesNoImpossibleSetup) {
    Host host;
    EXPECT_EQ(host.readResult(longWait), serial_result::invalidHandle);
    EXPECT_EQ(host.write(disconnect), serial_result::invalidHandle);
    EXPECT_EQ(host.line->setUp(settings), serial_result::invalidHandle);
    ASSERT_EQ(host.line->open(), serial_result::success);
    EXPECT_EQ(host.line->setUp(settings), serial_result::success);
    for (const LineSettings& impossible :
         {LineSettings{.baudRate = 0}, LineSettings{.baudRate = 115200, .dataBits = 9},
          LineSettings{.baudRate = 115200, .parity = 5}, LineSettings{.baudRate = 115200, .stopBits = 3}}) {
        EXPECT_EQ(host.line->setUp(impossible), serial_result::invalidParameter);
    }
}

TEST(LinesTo, TheTargetsNameLeadsToItAndEveryOtherToTheOtherMaker) {
    Host host;
    std::vector<std::string> others;
    const LineMaker make = linesTo(host.target, [&](const std::string& portName) {
        others.push_back(portName);
        return makeSerialPortLine(portName);
    });
    const std::wstring path = devicePath("demo");
    for (const std::string& name : {std::string("demo"), std::string(path.begin(), path.end())}) {
        const auto line = make(name);
        ASSERT_EQ(line->open(), serial_result::success) << name;
        EXPECT_EQ(host.line->open(), serial_result::accessDenied) << name;
    }
    EXPECT_TRUE(others.empty());
    for (const std::string& name : {std::string("demos"), std::string(), std::string("no-such-port")}) {
        EXPECT_NE(make(name)->open(), serial_result::success) << name;
        EXPECT_EQ(others.back(), name);
    }
    EXPECT_EQ(others.size(), 3U);
}

TEST(InProcessTarget, ClipStatesAreServed) {
    Host host;
    ClipBytes state{};
    state.fill(1);
    host.target.holdClipState(state);
    ASSERT_TRUE(host.ask({command_code::readClipState}));
    EXPECT_TRUE(std::equal(state.begin(), state.end(), host.reply.begin()));
}

}  // namespace
}  // namespace tessavo::test
