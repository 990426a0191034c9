#include <gtest/gtest.h>
#include <random>

#include "comm/device_name_posix.h"

namespace tessavo::test {
namespace {

TEST(DeviceName, Utf8OfEveryLengthPassesBothWays) {
    const std::string name = "tty\xC3\xBC\xE2\x82\xAC\xF0\x9F\x9A\x97\x7F";
    EXPECT_EQ(wideDeviceName(name), L"tty\u00FC\u20AC\U0001F697\x7F");
    EXPECT_EQ(narrowDeviceName(wideDeviceName(name)), name);
    EXPECT_EQ(wideDeviceName(""), L"");
    EXPECT_EQ(narrowDeviceName(L""), "");
}

TEST(DeviceName, BrokenUtf8IsKeptByteByByte) {
    EXPECT_EQ(wideDeviceName("a\xFF"), std::wstring({L'a', static_cast<wchar_t>(0xDCFF)}));
    // Cut off, overlong, a surrogate, beyond the last character, a stray continuation.
    for (const char* name :
         {"\xE2\x82", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\x80", "\xF8\x88"}) {
        const std::wstring wide = wideDeviceName(name);
        EXPECT_EQ(wide.size(), std::string(name).size());
        EXPECT_EQ(narrowDeviceName(wide), name);
    }
}

TEST(DeviceName, AnyBytesComeBack) {
    std::mt19937 random(20240611);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same bytes in every run
    for (int round = 0; round < 20000; ++round) {
        std::string name(random() % 9, '\0');
        for (char& byte : name) {
            byte = static_cast<char>(random() % 4 == 0 ? random() : 0x80 + random() % 0x80);
        }
        ASSERT_EQ(narrowDeviceName(wideDeviceName(name)), name);
    }
}

TEST(DeviceName, WhatNoNameWidensToHasNoNarrowForm) {
    for (const std::uint32_t value : {0xD800U, 0xDC00U, 0xDC7FU, 0xDD00U, 0xDFFFU, 0x110000U, 0xFFFFFFFFU}) {
        EXPECT_FALSE(narrowDeviceName(std::wstring(1, static_cast<wchar_t>(value)))) << value;
    }
}

}  // namespace
}  // namespace tessavo::test
