#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "comm/own_ports.h"
#include "comm/port_list.h"

namespace tessavo::test {
namespace {

using testing::ElementsAre;

std::vector<std::string> portsWith(const wchar_t* listed) {
    SetEnvironmentVariableW(L"TESSAVO_PORTS", listed);
    std::vector<std::string> names = listPorts();
    SetEnvironmentVariableW(L"TESSAVO_PORTS", nullptr);
    return names;
}

TEST(PortList, NamesFromTheEnvironmentComeLastAndOnce) {
    std::vector<std::string> expected = portsWith(nullptr);
    expected.insert(expected.end(), {"zz9", "\xC3\xBC", "aa1"});
    EXPECT_EQ(portsWith(L"zz9,\u00FC \\\\.\\aa1, zz9"), expected);
    EXPECT_EQ(portsWith(L""), portsWith(nullptr));
}

TEST(PortList, LongListsFromTheEnvironmentAreWhole) {
    std::wstring listed;
    for (int number = 0; number < 3000; ++number) {
        listed += L"name" + std::to_wstring(number) + L",";
    }
    EXPECT_EQ(portsWith(listed.c_str()).size(), portsWith(nullptr).size() + 3000);
}

TEST(PortList, OwnPortsStandBeforeTheEnvironmentsWhileTheyLive) {
    std::vector<std::string> expected = portsWith(nullptr);
    const std::vector<std::string> before = expected;
    {
        const OwnPort port("demo");
        expected.emplace_back("demo");
        EXPECT_EQ(portsWith(nullptr), expected);
        {
            const OwnPort again("demo");
            EXPECT_EQ(portsWith(nullptr), expected);
        }
        expected.emplace_back("zz9");
        EXPECT_EQ(portsWith(L"zz9 demo"), expected);
    }
    EXPECT_EQ(portsWith(nullptr), before);
}

TEST(DevicePath, StandsBehindThePrefix) {
    EXPECT_EQ(devicePath("COM3"), L"\\\\.\\COM3");
    EXPECT_EQ(devicePath("\\\\.\\COM12"), L"\\\\.\\COM12");
    EXPECT_EQ(devicePath(""), L"\\\\.\\");
    EXPECT_EQ(devicePath("t\xC3\xBCr"), L"\\\\.\\t\u00FCr");
}

}  // namespace
}  // namespace tessavo::test
