#include "params/image_digest.h"

#include <gtest/gtest.h>
#include <string>

#include "support/harness.h"

namespace tessavo::test {
namespace {

// The image digests are hashlib's.
TEST(ImageDigest, CoversTheImagesBytesAndLeavesThem) {
    Bytes bytes(imageSize, 0);
    EXPECT_EQ(hexText(md5Image(recordOf<ParameterImage>(bytes))), "216ee5e61dc704642ab4c3ad81bebf68");
    for (std::size_t i = 0; i < imageSize; ++i) {
        bytes[i] = static_cast<std::uint8_t>(i * 31 + 7);
    }
    const auto image = recordOf<ParameterImage>(bytes);
    EXPECT_EQ(hexText(md5Image(image)), "d0d9845128fb164f75d234d62c0a9bcd");
    EXPECT_SAME_BYTES(bytesOf(image), bytes);
}

TEST(ImageDigest, ChangesWithEachOfItsBytes) {
    const Bytes bytes(imageSize, 0x5A);
    const Md5Digest plain = md5Image(recordOf<ParameterImage>(bytes));
    for (std::size_t i = 0; i < imageSize; i += 41) {
        Bytes changed = bytes;
        changed[i] ^= 1U;
        EXPECT_NE(md5Image(recordOf<ParameterImage>(changed)), plain) << i;
    }
    Bytes last = bytes;
    last[imageSize - 1] ^= 0x80U;
    EXPECT_NE(md5Image(recordOf<ParameterImage>(last)), plain);
}

}  // namespace
}  // namespace tessavo::test
