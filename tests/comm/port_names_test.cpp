#include "comm/port_names.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessavo::test {
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

TEST(DeviceNames, ATextIsOneLine) {
    EXPECT_EQ(oneLine("CP2102 USB to UART\n"), "CP2102 USB to UART");
    EXPECT_EQ(oneLine("\t a \x01\x7F b\r\n\nc "), "a b c");
    EXPECT_EQ(oneLine(" \n"), "");
    EXPECT_EQ(oneLine(""), "");
    EXPECT_EQ(oneLine("\xC3\xBC\xFF"), "\xC3\xBC\xFF");
}

TEST(DeviceNames, TheRegistrysTextGoesWithoutReferenceAndPort) {
    EXPECT_EQ(deviceDescription("CP2102 USB to UART (COM3)", "COM3"), "CP2102 USB to UART");
    EXPECT_EQ(deviceDescription("CP2102 (COM3)", "COM33"), "CP2102 (COM3)");
    EXPECT_EQ(deviceDescription("Bridge (COM3) (COM3)", "COM3"), "Bridge (COM3)");
    EXPECT_EQ(deviceDescription("@oem3.inf,%usb;name%;USB Serial Port", "COM3"), "USB Serial Port");
    EXPECT_EQ(deviceDescription("@oem3.inf,%name%", "COM3"), "");
    EXPECT_EQ(deviceDescription("a;b", "COM3"), "a;b");
    EXPECT_EQ(deviceDescription("(COM3)", "COM3"), "(COM3)");
    EXPECT_EQ(deviceDescription("", "COM3"), "");
}

TEST(DeviceNames, AUsbDeviceIsKnownByItsNumbersAndNotByItsSocket) {
    EXPECT_EQ(usbIdentity("USB\\VID_10C4&PID_EA60\\0001"), "USB\\VID_10C4&PID_EA60\\0001");
    EXPECT_EQ(usbIdentity("USB\\VID_1A86&PID_7523\\5&2C3D4E&0&2"), "USB\\VID_1A86&PID_7523");
    EXPECT_EQ(usbIdentity("FTDIBUS\\VID_0403+PID_6001+A50285BIA\\0000"),
              "FTDIBUS\\VID_0403+PID_6001+A50285BIA\\0000");
    for (const char* other : {"", "USB", "USB\\VID_10C4&PID_EA60", "ACPI\\PNP0501\\1", "\\\\"}) {
        EXPECT_EQ(usbIdentity(other), "") << other;
    }
}

}  // namespace
}  // namespace tessavo::test
