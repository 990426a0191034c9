#include "base/md5.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "support/harness.h"

namespace tessavo::test {
namespace {

constexpr std::array<std::string_view, 201> goldenDigests{
#include "base/golden_md5.inc"
};

std::string md5Of(std::string_view text) {
    return hexText(md5(Bytes(text.begin(), text.end())));
}

TEST(Md5, AgreesWithThePublishedTestSuite) {
    EXPECT_EQ(md5Of(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(md5Of("a"), "0cc175b9c0f1b6a831c399e269772661");
    EXPECT_EQ(md5Of("abc"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(md5Of("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
    EXPECT_EQ(md5Of("abcdefghijklmnopqrstuvwxyz"), "c3fcd3d76192e4007dfb496cca67e13b");
    EXPECT_EQ(md5Of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
              "d174ab98d277d9f5a5611c2c9f419d9f");
    EXPECT_EQ(md5Of("12345678901234567890123456789012345678901234567890123456789012345678901234567890"),
              "57edf4a22be3c955ac49da2e2107b67a");
}

TEST(Md5, AgreesWithAnotherImplementationForEveryLengthUpTo200) {
    Bytes message;
    for (std::size_t length = 0; length <= 200; ++length) {
        EXPECT_EQ(hexText(md5(message)), goldenDigests[length]) << length;
        message.push_back(static_cast<std::uint8_t>(7 * length + 3));
    }
}

TEST(Md5, TakesLongMessages) {
    EXPECT_EQ(md5Of(std::string(1000000, 'a')), "7707d6ae4e027c70eea2a935c2296f21");
}

TEST(Md5, IsTheFourStateWordsLittleEndian) {
    // The digest of "" by the state words 0xd98c1dd4, 0x04b2008f, 0x980980e9, 0x7e42f8ec.
    const Md5Digest digest = md5({});
    const Bytes bytes(digest.begin(), digest.end());
    EXPECT_EQ(readAt<std::uint32_t>(bytes, 0), 0xD98C1DD4U);
    EXPECT_EQ(readAt<std::uint32_t>(bytes, 4), 0x04B2008FU);
    EXPECT_EQ(readAt<std::uint32_t>(bytes, 8), 0x980980E9U);
    EXPECT_EQ(readAt<std::uint32_t>(bytes, 12), 0x7E42F8ECU);
}

}  // namespace
}  // namespace tessavo::test
