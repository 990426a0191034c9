#include "base/utf8.h"

#include <gtest/gtest.h>
#include <string>

namespace tessavo {
namespace {

TEST(Utf8, CountsCharactersWhateverTheirLength) {
    EXPECT_EQ(characterCount(""), 0U);
    EXPECT_EQ(characterCount("abc"), 3U);
    // One, two, three and four bytes.
    EXPECT_EQ(characterCount("a\u00e4\u20ac\U0001F50A"), 4U);
}

TEST(Utf8, OnlyBytesThatGoOnWithACharacterDoSo) {
    for (int byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(continuesCharacter(static_cast<char>(byte)), byte >= 0x80 && byte < 0xC0) << byte;
    }
}

}  // namespace
}  // namespace tessavo
