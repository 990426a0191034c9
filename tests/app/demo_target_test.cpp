#include "app/demo_target.h"

#include <algorithm>
#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <typeinfo>
#include <vector>

#include "comm/port_device.h"
#include "comm/port_list.h"
#include "comm/port_names.h"
#include "comm/target_commands.h"
#include "comm/transfer_engine.h"
#include "support/harness.h"
#include "target/target_memory.h"

// Both designs of the demo's target do the same for the program, whichever the system uses.

namespace tessavo::test {
namespace {

using ::testing::Contains;
using ::testing::Not;

class NoLog final : public ICommLog {
 public:
    void log(LogKind /*kind*/, std::string_view /*text*/) override {}
};

struct Design {
    std::string name;
    std::unique_ptr<IDemoTarget> (*make)();
};

class DemoTarget : public ::testing::TestWithParam<Design> {
 protected:
    [[nodiscard]] TransferEngine::Dependencies dependencies() {
        return {.makeLine = target->lineMaker(),
                .clock = clock,
                .log = log,
                .boxes = boxes,
                .lock = lock,
                .portName = [this] { return portName; },
                .progress = {}};
    }

    std::unique_ptr<IDemoTarget> target = GetParam().make();
    std::string portName;
    SystemClock clock;
    NoLog log;
    RecordingBoxes boxes;
    CSemaphore lock;
};

TEST_P(DemoTarget, HasNoPortBeforeItIsStarted) {
    EXPECT_EQ(target->portName(), "");
}

TEST_P(DemoTarget, IsFoundUnderItsPortWhileItLives) {
    ASSERT_TRUE(target->start());
    const std::string port = target->portName();
    EXPECT_EQ(std::ranges::count(listPorts(), port), 1);
    EXPECT_TRUE(portIsThere(port));
    EXPECT_EQ(portDevice(port).description, simulatedTargetText);
    target.reset();
    EXPECT_THAT(listPorts(), Not(Contains(port)));
    EXPECT_FALSE(portIsThere(port));
}

TEST_P(DemoTarget, AnswersExchanges) {
    ASSERT_TRUE(target->start());
    portName = target->portName();
    TransferEngine engine(dependencies());
    std::array<std::uint8_t, 3404> set{};
    ASSERT_TRUE(engine.ReceiveFromTarget(set, std::array<std::uint8_t, 2>{command_code::readSet, 1}));
    const auto factory = factoryImage();
    EXPECT_TRUE(std::equal(factory.begin(), factory.end(), set.begin()));
    EXPECT_TRUE(engine.SendToTarget(std::array<std::uint8_t, 3400>{}, MessageType::blocks4k));
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_P(DemoTarget, OtherNamesLeadToThePortsOfTheSystem) {
    ASSERT_TRUE(target->start());
    portName = "no-such-port";
    TransferEngine engine(dependencies());
    EXPECT_FALSE(engine.SendToTarget({}, MessageType::blocks128));
    ASSERT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(boxes.shown[0].text, cannotOpenPortText);
}

TEST(DemoTargets, StandOnAPseudoTerminalWhereTheSystemHasThem) {
    const auto onTerminal = makePtyDemoTarget();
    const auto usual = makeDemoTarget();
    const auto inside = makeInProcessDemoTarget();
    ASSERT_NE(usual, nullptr);
    ASSERT_NE(inside, nullptr);
    const IDemoTarget& chosen = *usual;
    const IDemoTarget& expected = onTerminal ? *onTerminal : *inside;
    EXPECT_EQ(typeid(chosen), typeid(expected));
}

std::vector<Design> designsHere() {
    std::vector<Design> designs{{"InProcess", makeInProcessDemoTarget}};
    if (makePtyDemoTarget() != nullptr) {
        designs.push_back({"PseudoTerminal", makePtyDemoTarget});
    }
    return designs;
}

INSTANTIATE_TEST_SUITE_P(Designs, DemoTarget, ::testing::ValuesIn(designsHere()),
                         [](const auto& param) { return param.param.name; });

}  // namespace
}  // namespace tessavo::test
