#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <random>
#include <set>

#include "target/exchange_host.h"
#include "target/fault_names.h"

// The transfer engine and the device, each written from its own side of the line, talk to each other.

namespace tessavo::test {
namespace {

/// A device and a host at it, in virtual time.
struct Line {
    explicit Line(const std::vector<std::string>& faults = {}, std::uint32_t baud = 0)
        : device({.faults = faultsOf(faults), .timePerByte = byteTime(baud)}) {}

    bool sendLive(const ImageBytes& image) { return host.sendLive(image); }
    bool save(std::uint8_t set, const ImageBytes& image) { return host.save(set, image); }
    bool ask(const Bytes& request) { return host.ask(request); }
    const std::string& lastError() const { return host.log.lastError; }
    const TargetMemory& memory() const { return device.device.memory(); }

    DeviceHost device;
    VirtualClock clock;
    ExchangeHost host{[this](const std::string& /*portName*/) {
                          return std::make_unique<DeviceLine>(device.device, clock);
                      },
                      "device", clock};
};

TEST(EngineWithDevice, TheMainJob) {
    Line line({}, 115200);
    const ImageBytes image = imageOf(77);
    EXPECT_TRUE(line.sendLive(image));
    EXPECT_TRUE(line.ask({8}));
    EXPECT_TRUE(std::all_of(line.host.reply.begin(), line.host.reply.begin() + 10,
                            [](std::uint8_t byte) { return byte == 0x11; }));
    for (std::uint8_t set = 0; set < targetSetCount; ++set) {
        EXPECT_TRUE(line.save(set, image));
        line.host.reply.fill(0);
        EXPECT_TRUE(line.ask({4, set}));
        EXPECT_TRUE(std::equal(image.begin(), image.end(), line.host.reply.begin()));
    }
    EXPECT_TRUE(line.ask({5}));
    EXPECT_TRUE(line.ask({6}));
    EXPECT_EQ(line.lastError(), "");
}

TEST(EngineWithDevice, SoftwareOfEveryLengthAroundTheBlocks) {
    std::mt19937 random(11);
    const auto stepFrom = [](std::size_t size) -> std::size_t {
        return size % 1024 < 3 || size % 1024 > 1018 ? 1 : 113;
    };
    for (std::size_t size = 0; size <= 3100; size += stepFrom(size)) {
        Line line;
        Bytes image(size);
        std::generate(image.begin(), image.end(), [&] { return static_cast<std::uint8_t>(random() & 0xFF); });
        ASSERT_TRUE(line.host.engine.SendToTarget(image, MessageType::blocks1kWithCrc)) << size;
        Bytes kept = line.memory().software;
        ASSERT_EQ(kept.size(), size % 1024 == 1023 ? size + 1 : size);
        kept.resize(size);
        ASSERT_EQ(kept, image);
    }
}

TEST(EngineWithDevice, TheLargestSoftwareImage) {
    Line line({}, 115200);
    Bytes image(softwareImageLimit);
    for (std::size_t i = 0; i < image.size(); ++i) {
        image[i] = static_cast<std::uint8_t>((i * 2654435761U) >> 24);
    }
    EXPECT_TRUE(line.host.engine.SendToTarget(image, MessageType::blocks1kWithCrc));
    EXPECT_EQ(line.memory().software, image);
}

TEST(EngineWithDevice, EachFaultReachesTheHost) {
    struct Case {
        std::string fault;
        std::string sendError;  ///< of a live image; "ok" when it goes through
        std::string askError;   ///< of a versions request
    };
    const std::vector<Case> cases{
        {"no-request", "Can't connect to Target", "Can't connect to Target"},
        {"wrong-request", "Can't connect to Target", "Can't connect to Target"},
        {"wrong-request=5", "No REQ received", "No REQ received"},
        {"negative=1", "", "Can't connect to Target"},
        {"silence=1", "Wait for answer", "Can't connect to Target"},
        {"junk=1", "ok", "ok"},
        {"junk=4", "ok", "ok"},
        {"junk=5", "No answer received", "No answer received"},
        {"damaged-reply", "ok", "Invalid message received"},
        {"truncated-reply", "ok", "Can't connect to Target"},
        {"truncated-reply=4100", "ok", "Can't connect to Target"},
        {"wrong-complement", "ok", "Invalid message received"},
        {"late", "ok", "ok"},
        {"late=9999", "ok", "ok"},
        {"late=10001", "ok", "Can't connect to Target"},
        {"wrong-confirmation", "ok", "ok"},
        {"wrong-digest", "ok", "ok"},
        {"no-disconnect", "Disconnecting failed", "Disconnecting failed"},
        {"cable=2000", "Wait for answer", "Can't connect to Target"},
    };
    std::set<std::string> tried;
    for (const Case& each : cases) {
        tried.insert(faultName(each.fault));
        Line sending({each.fault});
        EXPECT_EQ(sending.sendLive(imageOf(1)), each.sendError == "ok") << each.fault;
        EXPECT_EQ(sending.lastError(), each.sendError == "ok" ? "" : each.sendError) << each.fault;
        Line asking({each.fault});
        EXPECT_EQ(asking.ask({5}), each.askError == "ok") << each.fault;
        EXPECT_EQ(asking.lastError(), each.askError == "ok" ? "" : each.askError) << each.fault;
    }
    for (const std::string& form : faultForms()) {
        EXPECT_TRUE(tried.contains(faultName(form))) << form << " has no row here";
    }
}

TEST(EngineWithDevice, TheNextExchangeFindsTheDeviceSound) {
    for (const std::string fault : {"negative=2", "silence=2"}) {
        Line line({fault});
        EXPECT_FALSE(line.host.engine.SendToTarget(Bytes(3000, 1), MessageType::blocks1kWithCrc)) << fault;
        EXPECT_TRUE(line.memory().software.empty()) << fault;
        EXPECT_TRUE(line.host.engine.SendToTarget(Bytes(1000, 1), MessageType::blocks1kWithCrc)) << fault;
        EXPECT_EQ(line.memory().software, Bytes(1000, 1)) << fault;
    }
}

TEST(EngineWithDevice, APacedLineTakesTheLinesTime) {
    Line fast;
    Line slow({}, 115200);
    EXPECT_TRUE(fast.ask({5}));
    EXPECT_TRUE(slow.ask({5}));
    const auto difference = slow.clock.time - fast.clock.time;
    // Request byte, answer, reply and the last answer; what the host sends is paced by its own line.
    EXPECT_EQ(difference, byteTime(115200) * (1 + 1 + static_cast<int>(maximumFrameSize) + 1));
}

}  // namespace
}  // namespace tessavo::test
