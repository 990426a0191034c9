#include "comm/port_names.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(PortNames, DigitsCountAsNumbers) {
    std::vector<std::string> names{"ttyUSB10", "ttyUSB2", "ttyS0", "ttyACM1", "ttyUSB1",
                                   "pts/12",   "pts/3",   "COM10", "COM9"};
    std::sort(names.begin(), names.end(), portNameLess);
    EXPECT_THAT(names, ElementsAre("COM9", "COM10", "pts/3", "pts/12", "ttyACM1", "ttyS0", "ttyUSB1",
                                   "ttyUSB2", "ttyUSB10"));
}

TEST(PortNames, NumbersOfAnyLengthCompare) {
    EXPECT_TRUE(portNameLess("a9999999999999999999998", "a9999999999999999999999"));
    EXPECT_TRUE(portNameLess("a9999999999999999999999", "a10000000000000000000000"));
    EXPECT_FALSE(portNameLess("a10000000000000000000000", "a9999999999999999999999"));
}

TEST(PortNames, TheOrderIsStrict) {
    const std::vector<std::string> names{"",   "a",   "a0", "a00", "a1", "a01", "a1b", "a1b2",
                                         "a2", "a10", "b",  "1",   "01", "a-1", "A1",  "\xFF"};
    for (const std::string& left : names) {
        EXPECT_FALSE(portNameLess(left, left)) << left;
        for (const std::string& right : names) {
            if (left != right) {
                EXPECT_NE(portNameLess(left, right), portNameLess(right, left)) << left << ' ' << right;
            }
            for (const std::string& third : names) {
                if (portNameLess(left, right) && portNameLess(right, third)) {
                    EXPECT_TRUE(portNameLess(left, third)) << left << ' ' << right << ' ' << third;
                }
            }
        }
    }
}

TEST(PortNames, ListsAreSplitAtCommasAndWhiteSpace) {
    EXPECT_THAT(splitPortNames("pts/3,ttyUSB0 COM7"), ElementsAre("pts/3", "ttyUSB0", "COM7"));
    EXPECT_THAT(splitPortNames(" ,, a ,\tb\n,"), ElementsAre("a", "b"));
    EXPECT_THAT(splitPortNames("one"), ElementsAre("one"));
    EXPECT_THAT(splitPortNames(""), IsEmpty());
    EXPECT_THAT(splitPortNames(" , "), IsEmpty());
}

TEST(PortNames, NoNameIsAppendedTwice) {
    std::vector<std::string> names{"a"};
    appendPortNames(names, {"b", "a", "b", "c"});
    EXPECT_THAT(names, ElementsAre("a", "b", "c"));
}

TEST(ComPortNames, TakesNamesOfPortsWhateverTheirCase) {
    using namespace std::string_view_literals;
    EXPECT_THAT(comPortNames(L"NUL\0COM3\0com12\0Com007\0LPT1\0\0"sv), ElementsAre("COM3", "COM7", "COM12"));
}

TEST(ComPortNames, TheNumberIsThatOfTheDigits) {
    using namespace std::string_view_literals;
    EXPECT_THAT(comPortNames(L"COM5x\0COM\0CompositeBattery\0COM-1\0COM256\0COM0\0"sv),
                ElementsAre("COM0", "COM5", "COM256"));
}

TEST(ComPortNames, NoPortTwiceAndSortedByNumber) {
    using namespace std::string_view_literals;
    EXPECT_THAT(comPortNames(L"COM10\0COM9\0com10\0COM010\0"sv), ElementsAre("COM9", "COM10"));
}

TEST(ComPortNames, AnyTextIsAList) {
    using namespace std::string_view_literals;
    EXPECT_THAT(comPortNames(L""), IsEmpty());
    EXPECT_THAT(comPortNames(L"\0\0\0"sv), IsEmpty());
    EXPECT_THAT(comPortNames(L"COM4"), ElementsAre("COM4"));
    EXPECT_THAT(comPortNames(L"\u0143OM4\0COM\u0664\0xCOM4\0"sv), IsEmpty());
}

TEST(PortNames, OnlyAWholePrefixIsCut) {
    EXPECT_EQ(withoutPrefix("/dev/pts/3", "/dev/"), "pts/3");
    EXPECT_EQ(withoutPrefix("/dev", "/dev/"), "/dev");
    EXPECT_EQ(withoutPrefix("dev/x", "/dev/"), "dev/x");
    EXPECT_EQ(withoutPrefix("/dev/", "/dev/"), "");
}

}  // namespace
}  // namespace tessavo
