#include "target/in_process_port.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <gtest/gtest.h>
#include <thread>

#include "comm/port_list.h"
#include "comm/serial_overlapped.h"
#include "support/device_port.h"
#include "support/waiting.h"

// A whole host with the transfer engine at a target of the same program. Only the engine's pauses are left
// out.

namespace tessavo::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::uint32_t longWaitMs = 5000;
constexpr std::uint32_t shortWaitMs = 30;

class NoPauses final : public IClock {
 public:
    Milliseconds now() override { return clock_.now(); }
    bool sleep(Milliseconds /*duration*/) override { return true; }

 private:
    SystemClock clock_;
};

TargetDevice::Options optionsWith(const std::vector<std::string>& faults, std::uint32_t baud = 0) {
    TargetDevice::Options options{.timePerByte = byteTime(baud)};
    for (const std::string& fault : faults) {
        EXPECT_EQ(addFault(options.faults, fault), "");
    }
    return options;
}

/// A target with a host at it.
struct Line {
    explicit Line(const std::vector<std::string>& faults = {}, std::uint32_t baud = 0)
        : target("demo", TargetMemory::holding(imageOf(0)), optionsWith(faults, baud)) {}

    std::uint32_t open(bool overlapped = true) {
        const std::uint32_t result = port.Open(target.deviceName(), 0, 0, overlapped);
        port.SetupReadTimeouts(CSerial::blocking);
        return result;
    }
    Bytes read(std::size_t size, std::uint32_t timeoutMs = longWaitMs) {
        Bytes bytes(size);
        std::uint32_t count = 77;
        port.Read(bytes.data(), size, &count, nullptr, timeoutMs);
        bytes.resize(count);
        return bytes;
    }
    std::uint32_t write(const Bytes& bytes) {
        return port.Write(bytes.data(), bytes.size(), nullptr, nullptr, longWaitMs);
    }
    bool sendLive(const ImageBytes& image) {
        return engine.SendToTarget(liveMessage(image), MessageType::blocks4k);
    }
    bool save(std::uint8_t set, const ImageBytes& image) {
        Bytes message{command_code::saveSet, set};
        const auto digest = md5(image);
        message.insert(message.end(), digest.begin(), digest.end());
        return engine.SendToTarget(message, MessageType::blocks128);
    }
    bool ask(const Bytes& request) { return engine.ReceiveFromTarget(reply, request); }

    InProcessTarget target;
    InProcessPort port{target};
    NoPauses clock;
    ErrorLog log;
    NoBoxes boxes;
    CSemaphore lock;
    TransferEngine engine{{.port = port,
                           .clock = clock,
                           .log = log,
                           .boxes = boxes,
                           .lock = lock,
                           .portName = [this] { return target.portName(); },
                           .progress = {}}};
    std::array<std::uint8_t, maximumFrameSize> reply{};
};

TEST(InProcessPort, ALiveExchangeIsTakenAndConfirmed) {
    Line line;
    const ImageBytes image = imageOf(3);
    EXPECT_TRUE(line.sendLive(image));
    EXPECT_EQ(line.target.memory().live, image);
    ASSERT_TRUE(line.ask({command_code::confirmLiveSet}));
    EXPECT_TRUE(std::all_of(line.reply.begin(), line.reply.begin() + 10,
                            [](std::uint8_t byte) { return byte == 0x11; }));
    EXPECT_EQ(line.log.lastError, "");
    EXPECT_EQ(line.boxes.last, "");
}

TEST(InProcessPort, SetsAreSavedAndReadBackAtTheSpeedOfARealLine) {
    Line line({}, 115200);
    const ImageBytes image = imageOf(9);
    const auto start = Clock::now();
    ASSERT_TRUE(line.sendLive(image));
    ASSERT_TRUE(line.save(2, image));
    ASSERT_TRUE(line.ask({4, 2}));
    EXPECT_TRUE(std::equal(image.begin(), image.end(), line.reply.begin()));
    // What the target sends is paced: 4102 bytes of reply alone take 356 ms.
    EXPECT_GT(Clock::now() - start, milliseconds(350));
    ASSERT_TRUE(line.ask({4, 0}));
    EXPECT_NE(line.reply[20], image[20]);
}

TEST(InProcessPort, ASoftwareImageIsFlashed) {
    Line line;
    Bytes software(20000);
    for (std::size_t i = 0; i < software.size(); ++i) {
        software[i] = static_cast<std::uint8_t>((i * 2654435761U) >> 24U);
    }
    ASSERT_TRUE(line.engine.SendToTarget(software, MessageType::blocks1kWithCrc));
    EXPECT_EQ(line.target.memory().software, software);
}

TEST(InProcessPort, FaultsReachTheHostAndTheNextExchangeGoesThrough) {
    struct Case {
        std::string fault;
        std::string error;
        bool taken;  ///< the target has the image all the same
    };
    for (const Case& fault : {Case{"wrong-request=5", "No REQ received", false},
                              Case{"negative=1", "", false}, Case{"junk=5", "No answer received", true}}) {
        SCOPED_TRACE(fault.fault);
        Line line({fault.fault});
        EXPECT_FALSE(line.sendLive(imageOf(4)));
        EXPECT_EQ(line.log.lastError, fault.error);
        EXPECT_EQ(line.target.memory().live, imageOf(fault.taken ? 4 : 0));
        EXPECT_EQ(line.port.Read(nullptr, 0), serial_result::invalidHandle) << "the exchange has closed it";
    }
    Line line({"damaged-reply"});
    EXPECT_FALSE(line.ask({command_code::confirmLiveSet}));
    EXPECT_EQ(line.log.lastError, "Invalid message received");
    EXPECT_TRUE(line.sendLive(imageOf(5)));
    EXPECT_EQ(line.target.memory().live, imageOf(5));
}

TEST(InProcessPort, APulledCableIsADeviceErrorAndNoPortAfterwards) {
    Line line({"cable=100"});
    ASSERT_EQ(line.open(), serial_result::success);
    EXPECT_EQ(line.read(1), requestByte);
    line.write(Bytes(200));
    EXPECT_EQ(line.write(Bytes(1)), serial_result::ioDevice);
    std::uint8_t byte = 0;
    EXPECT_EQ(line.port.Read(&byte, 1, nullptr, nullptr, longWaitMs), serial_result::ioDevice);
    line.port.SetupReadTimeouts(CSerial::nonBlocking);
    EXPECT_EQ(line.port.Read(&byte, 1), serial_result::ioDevice);
    line.port.Close();
    EXPECT_EQ(line.open(), serial_result::fileNotFound);
    EXPECT_FALSE(line.sendLive(imageOf(1)));
    EXPECT_EQ(line.boxes.last, cannotOpenPortText);
}

TEST(InProcessPort, OpensItsOwnNameOnceAndForOneOnly) {
    Line line;
    EXPECT_EQ(line.target.deviceName(), devicePath("demo"));
    EXPECT_EQ(line.port.Open(devicePath("demos"), 0, 0, true), serial_result::fileNotFound);
    EXPECT_EQ(line.port.Open(L"", 0, 0, true), serial_result::fileNotFound);
    ASSERT_EQ(line.open(), serial_result::success);
    EXPECT_EQ(line.port.Open(line.target.deviceName(), 0, 0, true), serial_result::alreadyInitialised);
    InProcessPort other(line.target);
    EXPECT_EQ(other.Open(line.target.deviceName(), 0, 0, true), serial_result::accessDenied);
    EXPECT_EQ(other.lastError(), serial_result::accessDenied);
    EXPECT_EQ(line.read(1), requestByte) << "the others have disturbed nothing";
    EXPECT_EQ(line.port.Close(), serial_result::success);
    EXPECT_EQ(line.port.Close(), serial_result::success);
    EXPECT_EQ(other.Open(line.target.deviceName(), 0, 0, true), serial_result::success);
}

TEST(InProcessPort, IsClosedAtItsEndAndForgetsWhatWasNotRead) {
    Line line;
    {
        InProcessPort first(line.target);
        ASSERT_EQ(first.Open(line.target.deviceName(), 0, 0, true), serial_result::success);
    }
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(line.open(), serial_result::success);
        EXPECT_EQ(line.read(2, shortWaitMs), requestByte) << "one request byte for each opening";
        line.port.Close();
    }
}

TEST(InProcessPort, BlockingReadsWaitForAllBytesOrTheTimeOut) {
    Line line;
    ASSERT_EQ(line.open(), serial_result::success);
    std::array<std::uint8_t, 4> bytes{};
    std::uint32_t count = 9;
    const auto start = Clock::now();
    EXPECT_EQ(line.port.Read(bytes.data(), bytes.size(), &count, nullptr, shortWaitMs),
              serial_result::timeout);
    EXPECT_GE(Clock::now() - start, milliseconds(shortWaitMs));
    EXPECT_EQ(count, 1U) << "what came is handed over";
    EXPECT_EQ(bytes[0], control_byte::request);
    EXPECT_EQ(line.port.Read(bytes.data(), 0, &count, nullptr, longWaitMs), serial_result::success);
    EXPECT_EQ(line.port.Read(bytes.data(), 1, &count, nullptr, 0), serial_result::timeout);
    EXPECT_EQ(count, 0U);
}

TEST(InProcessPort, NonBlockingReadsTakeWhatIsThere) {
    Line line;
    ASSERT_EQ(line.open(), serial_result::success);
    ASSERT_EQ(line.port.WaitEvent(nullptr, longWaitMs), serial_result::success);
    EXPECT_EQ(line.port.eventType(), serial_event::received);
    line.port.SetupReadTimeouts(CSerial::nonBlocking);
    EXPECT_EQ(line.read(100), requestByte);
    EXPECT_EQ(line.port.lastError(), serial_result::success);
    EXPECT_EQ(line.read(100), silence);
    EXPECT_EQ(line.port.lastError(), serial_result::success);
    EXPECT_EQ(line.port.WaitEvent(nullptr, shortWaitMs), serial_result::timeout);
    EXPECT_EQ(line.port.eventType(), 0U);
}

TEST(InProcessPort, CancelEndsAWaitOfAnotherThreadAndHoldsUntilItIsCleared) {
    Line line;
    ASSERT_EQ(line.open(), serial_result::success);
    ASSERT_EQ(line.read(1), requestByte);
    // Some of these meet the other thread before its wait, some within.
    for (int i = 0; i < 200; ++i) {
        const bool event = i % 2 == 0;
        std::atomic<bool> ended = false;
        std::uint32_t result = 0;
        std::atomic<bool> started = false;
        std::thread reader([&] {
            started = true;
            std::uint8_t byte = 0;
            result = event ? line.port.WaitEvent(nullptr, CSerial::infinite)
                           : line.port.Read(&byte, 1, nullptr, nullptr, CSerial::infinite);
            ended = true;
        });
        EXPECT_TRUE(eventually([&] { return started.load(); }));
        line.port.Cancel();
        EXPECT_TRUE(eventually([&] { return ended.load(); }));
        reader.join();
        EXPECT_EQ(result, serial_result::operationAborted);
        std::uint8_t byte = 0;
        EXPECT_EQ(line.port.Read(&byte, 1, nullptr, nullptr, longWaitMs), serial_result::operationAborted);
        EXPECT_EQ(line.write(disconnect), serial_result::operationAborted);
        line.port.ClearCancel();
    }
    EXPECT_EQ(line.write(disconnect), serial_result::success);
    EXPECT_EQ(line.read(1), positive);
}

TEST(InProcessPort, CancelEndsAnExchange) {
    Line line({"no-request"});
    std::atomic<bool> ended = false;
    std::thread host([&] {
        EXPECT_FALSE(line.sendLive(imageOf(1)));
        ended = true;
    });
    const auto start = Clock::now();
    line.port.Cancel();
    EXPECT_TRUE(eventually([&] { return ended.load(); }));
    EXPECT_LT(Clock::now() - start, milliseconds(1000));
    host.join();
}

TEST(InProcessPort, RefusesWhatThePortDoesNotAllow) {
    Line line;
    std::uint8_t byte = 0;
    std::uint32_t count = 9;
    SerialOverlapped overlapped;
    EXPECT_EQ(line.port.Read(&byte, 1, &count), serial_result::invalidHandle);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(line.port.Setup(115200, 8, 0, 0, 0), serial_result::invalidHandle);
    EXPECT_EQ(line.port.Complete(overlapped), serial_result::invalidHandle);
    EXPECT_EQ(line.port.GetBaudrate(), -1);
    EXPECT_EQ(line.port.GetEventMask(), 0U);
    ASSERT_EQ(line.open(false), serial_result::success);
    EXPECT_EQ(line.port.Read(&byte, 1, nullptr, nullptr, 10), serial_result::invalidFunction);
    EXPECT_EQ(line.port.Write(&byte, 1, nullptr, nullptr, 10), serial_result::invalidFunction);
    EXPECT_EQ(line.port.WaitEvent(nullptr, 10), serial_result::invalidFunction);
    EXPECT_EQ(line.port.Read(&byte, 1), serial_result::success);
    line.port.Close();
    ASSERT_EQ(line.open(), serial_result::success);
    EXPECT_EQ(line.port.Read(nullptr, 1), serial_result::invalidArgument);
    EXPECT_EQ(line.port.Write(nullptr, 1), serial_result::invalidArgument);
    EXPECT_EQ(line.port.Write(nullptr, 0), serial_result::success);
    EXPECT_EQ(line.port.Read(&byte, 1, nullptr, &overlapped), serial_result::invalidFunction);
    EXPECT_EQ(line.port.Complete(overlapped), serial_result::invalidArgument);
}

TEST(InProcessPort, RemembersItsSetupUntilItIsClosed) {
    Line line;
    ASSERT_EQ(line.open(), serial_result::success);
    EXPECT_EQ(line.port.GetEventMask(), serial_event::standard);
    ASSERT_EQ(line.port.Setup(57600, 7, serial_frame::parityEven, serial_frame::stopBitsTwo, 0),
              serial_result::success);
    EXPECT_EQ(line.port.Setup(57600, 9, 0, 0, 0), serial_result::invalidParameter);
    EXPECT_EQ(line.port.Setup(0, 8, 0, 0, 0), serial_result::invalidParameter);
    EXPECT_EQ(line.port.Setup(57600, 8, 5, 0, 0), serial_result::invalidParameter);
    EXPECT_EQ(line.port.Setup(57600, 8, 0, 3, 0), serial_result::invalidParameter);
    EXPECT_EQ(line.port.GetBaudrate(), 57600);
    EXPECT_EQ(line.port.GetDataBits(), 7);
    EXPECT_EQ(line.port.GetParity(), serial_frame::parityEven);
    EXPECT_EQ(line.port.GetStopBits(), serial_frame::stopBitsTwo);
    EXPECT_EQ(line.port.SetupHandshaking(CSerial::handshakeHardware), serial_result::success);
    EXPECT_EQ(line.port.SetupHandshaking(3), serial_result::invalidArgument);
    EXPECT_EQ(line.port.GetHandshaking(), CSerial::handshakeHardware);
    EXPECT_EQ(line.port.Setup(115200, 8, 0, 0, 1), serial_result::success);
    EXPECT_EQ(line.port.GetHandshaking(), CSerial::handshakeNone);
    EXPECT_EQ(line.port.SetupReadTimeouts(2), serial_result::invalidArgument);
    EXPECT_EQ(line.port.SetEventChar('!', true), serial_result::success);
    EXPECT_EQ(line.port.GetEventChar(), '!');
    EXPECT_EQ(line.port.GetEventMask(), serial_event::standard | serial_event::eventCharacter);
    EXPECT_EQ(line.port.SetMask(serial_event::breakSeen), serial_result::success);
    EXPECT_EQ(line.port.WaitEvent(nullptr, shortWaitMs), serial_result::timeout);
    line.port.Close();
    ASSERT_EQ(line.open(), serial_result::success);
    EXPECT_EQ(line.port.GetEventMask(), serial_event::standard);
    EXPECT_EQ(line.port.GetParity(), serial_frame::parityNone);
}

TEST(InProcessTarget, ClipStatesAreServed) {
    Line line;
    ClipBytes state{};
    state.fill(1);
    line.target.holdClipState(state);
    ASSERT_TRUE(line.ask({command_code::readClipState}));
    EXPECT_TRUE(std::equal(state.begin(), state.end(), line.reply.begin()));
}

}  // namespace
}  // namespace tessavo::test
