#include "history/version_note.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "base/number_text.h"

namespace tessavo::test {
namespace {

VersionNote example() {
    VersionNote note;
    note.path = std::filesystem::path(u"/Kunden/\u00E4 % \u20AC \U0001F600/a\nb.eqs");
    note.time = WallTime(std::chrono::microseconds(1'790'000'000'123'456));
    note.size = 12345;
    for (std::size_t i = 0; i < note.digest.size(); ++i) {
        note.digest[i] = static_cast<std::uint8_t>(0xF3 - 17 * i);
    }
    return note;
}

TEST(VersionNote, ComesBackWhole) {
    const auto read = readNote(noteText(example()));
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->path.native(), example().path.native());
    EXPECT_EQ(*read, example());
    VersionNote old;
    old.time = WallTime(std::chrono::microseconds(-7));
    EXPECT_EQ(readNote(noteText(old)), old);
}

TEST(VersionNote, BringsBackEveryUnitThatAPathCanHave) {
    VersionNote note;
    std::filesystem::path::string_type units;
    for (int unit = 1; unit < 256; ++unit) {
        units += static_cast<std::filesystem::path::value_type>(unit);
    }
    note.path = units;
    const auto read = readNote(noteText(note));
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->path.native(), note.path.native());
}

TEST(VersionNote, IsLinesOfPlainText) {
    const std::string text = noteText(example());
    EXPECT_NE(text.find("bytes: 12345\n"), std::string::npos) << text;
    EXPECT_NE(text.find("path: /Kunden/"), std::string::npos) << text;
    for (const char letter : text) {
        EXPECT_TRUE(letter == '\n' || (letter >= ' ' && letter < 0x7F));
    }
}

TEST(VersionNote, IsRefusedWithAnyByteChangedMissingOrAdded) {
    const std::string text = noteText(example());
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::string damaged = text;
        damaged[i] = static_cast<char>(damaged[i] ^ 1);
        EXPECT_FALSE(readNote(damaged).has_value()) << i;
        EXPECT_FALSE(readNote(text.substr(0, i)).has_value()) << i;
        EXPECT_FALSE(readNote(text.substr(0, i) + text.substr(i + 1)).has_value()) << i;
    }
    EXPECT_FALSE(readNote(text + "x").has_value());
    EXPECT_FALSE(readNote(std::string(100000, '\0')).has_value());
}

TEST(VersionNote, IsRefusedWithATimeThatTheClockCannotTell) {
    const auto withTime = [](std::int64_t microseconds) {
        std::string text = noteText(example());
        text.replace(text.find("1790000000123456"), 16, std::to_string(microseconds));
        text.resize(text.rfind("MD5 of the lines above: "));
        const Md5Digest digest = md5({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
        text += "MD5 of the lines above: ";
        for (const std::uint8_t byte : digest) {
            text += hexNumber(byte, 2);
        }
        return text + '\n';
    };
    EXPECT_TRUE(readNote(withTime(1'790'000'000'123'456)).has_value());
    // Where the clock counts microseconds itself, it can tell them all.
    const bool tellsAll = WallTime::period::den <= 1'000'000;
    for (const std::int64_t count :
         {std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()}) {
        EXPECT_EQ(readNote(withTime(count)).has_value(), tellsAll) << count;
    }
}

}  // namespace
}  // namespace tessavo::test
