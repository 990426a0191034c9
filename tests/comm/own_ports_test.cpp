#include "comm/own_ports.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "comm/port_device.h"
#include "comm/port_list.h"
#include "comm/port_names.h"

namespace tessavo::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

TEST(OwnPorts, AreKnownWhileTheyLive) {
    const std::vector<std::string> before = listPorts();
    EXPECT_THAT(before, Not(Contains("own1")));
    EXPECT_FALSE(portIsThere("own1"));
    {
        const OwnPort port("own1");
        EXPECT_EQ(std::ranges::count(listPorts(), "own1"), 1);
        EXPECT_TRUE(portIsThere("own1"));
        EXPECT_EQ(portDevice("own1").description, simulatedTargetText);
        EXPECT_EQ(portDevice("own1").identity, "");
        EXPECT_FALSE(ports::isOwnPort("own"));
        EXPECT_FALSE(ports::isOwnPort(""));
    }
    EXPECT_EQ(listPorts(), before);
    EXPECT_FALSE(portIsThere("own1"));
    EXPECT_EQ(portDevice("own1"), PortDevice{});
}

TEST(OwnPorts, StandInTheOrderInWhichTheyWereMadeAndInTheListOnce) {
    const OwnPort second("own2");
    {
        const OwnPort first("own1");
        const OwnPort again("own2");
        EXPECT_THAT(ports::ownPorts(), ElementsAre("own2", "own1", "own2"));
        EXPECT_EQ(std::ranges::count(listPorts(), "own2"), 1);
    }
    EXPECT_THAT(ports::ownPorts(), ElementsAre("own2")) << "the one that lives is still known";
}

TEST(OwnPorts, ArePassedOnWithTheSystemsPrefixToo) {
    const OwnPort port("own1");
    const std::wstring path = devicePath("own1");
    EXPECT_TRUE(portIsThere(std::string(path.begin(), path.end())));
    EXPECT_THAT(ports::ownPorts(), Not(IsEmpty()));
}

}  // namespace
}  // namespace tessavo::test
