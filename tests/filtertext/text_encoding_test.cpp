#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "filter_lines.h"
#include "filtertext/readers.h"

namespace tessavo {
namespace {

using namespace std::string_literals;
using testing::IsEmpty;
TEST(FilterTextEncoding, TheMarkIsNoPartOfTheFirstLine) {
    const FilterText text = readFilterText(
        "\xEF\xBB\xBF"
        "Filter 1: ON PK Fc x Hz Gain -3.0 dB Q 2");
    ASSERT_EQ(text.lines.size(), 1U);
    EXPECT_EQ(text.lines[0].text, "Filter 1: ON PK Fc x Hz Gain -3.0 dB Q 2");
    expectError(text.lines[0], 20, "x");
}

TEST(FilterTextEncoding, ColumnsCountCharactersNotBytes) {
    const std::string latin1 = "Filter\xA0\xA0 1: ON PK Fc 100 Hz Gain z dB Q 2\nNote: K\xE4se\n";
    const FilterText text = readFilterText(latin1);
    ASSERT_EQ(text.lines.size(), 2U);
    expectError(text.lines[0], columnOfPart(latin1, "z dB"), "z");
    EXPECT_EQ(text.lines[1].text, "Note: K\u00e4se");
}

TEST(FilterTextEncoding, Utf16IsRefusedWithAReason) {
    const std::string plain = "Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2\r\n";
    for (const bool isBigEndian : {false, true}) {
        for (const bool hasMark : {false, true}) {
            std::string bytes = !hasMark ? "" : isBigEndian ? "\xFE\xFF" : "\xFF\xFE";
            for (const char character : plain) {
                bytes += isBigEndian ? "\0"s + character : character + "\0"s;
            }
            const FilterText text = readFilterText(bytes);
            EXPECT_NE(text.trouble, "");
            EXPECT_THAT(filtersOf(text), IsEmpty());
        }
    }
}

TEST(FilterTextEncoding, BinaryFilesAreRefused) {
    const std::string line = "Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2";
    const FilterText text = readFilterText(line + "\n\0\n"s + line);
    EXPECT_NE(text.trouble, "");
    EXPECT_THAT(filtersOf(text), IsEmpty());
}

}  // namespace
}  // namespace tessavo
