#include "target/software_image.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "comm/framing.h"

namespace tessavo::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes imageOfSize(std::size_t size, std::uint32_t seed) {
    std::mt19937 random(seed);
    Bytes image(size);
    std::generate(image.begin(), image.end(), [&] { return static_cast<std::uint8_t>(random() & 0xFF); });
    return image;
}

/// Blocks as a host sends them: CRC and padding behind the image, as far as the last block reaches.
Bytes blocksOf(const Bytes& image) {
    Bytes blocks = image;
    const std::uint16_t crc = Crc16(image);
    blocks.push_back(static_cast<std::uint8_t>(crc >> 8));
    blocks.push_back(static_cast<std::uint8_t>(crc & 0xFF));
    blocks.resize(blocks.size() + 2 * 1024, control_byte::padding);
    blocks.resize((image.size() + 1023) / 1024 * 1024);
    return blocks;
}

TEST(SoftwareImage, EverySizeUpToTwoBlocksIsFound) {
    for (std::size_t size = 1; size <= 2048; ++size) {
        Bytes image = imageOfSize(size, static_cast<std::uint32_t>(size));
        image.back() = 0x55;
        const SoftwareCheck check = checkSoftwareImage(blocksOf(image));
        const std::size_t tail = size % 1024;
        if (tail == 0) {
            EXPECT_EQ(check.size, size);
            EXPECT_NE(check.verdict, SoftwareVerdict::right) << size;
        } else if (tail == 1023) {
            EXPECT_EQ(check.size, size + 1) << "a byte that may belong to the image is never lost";
            EXPECT_EQ(check.verdict, SoftwareVerdict::halfCrc) << size;
        } else {
            EXPECT_EQ(check.size, size);
            EXPECT_EQ(check.verdict, SoftwareVerdict::right) << size;
        }
    }
}

TEST(SoftwareImage, ImagesThatEndInPaddingBytesKeepThem) {
    for (const std::size_t size : {5U, 700U, 1022U, 1500U}) {
        for (std::size_t run = 1; run <= 4; ++run) {
            Bytes image = imageOfSize(size, 3);
            std::fill(image.end() - static_cast<std::ptrdiff_t>(run), image.end(), control_byte::padding);
            const SoftwareCheck check = checkSoftwareImage(blocksOf(image));
            EXPECT_EQ(check.size, size) << run;
            EXPECT_EQ(check.verdict, SoftwareVerdict::right) << run;
        }
    }
}

TEST(SoftwareImage, ACrcThatLooksLikePaddingIsFound) {
    // Search images whose CRC ends, or is altogether made, of padding bytes.
    int found = 0;
    bool both = false;
    for (std::uint32_t seed = 0; seed < 200000 && !(both && found > 3); ++seed) {
        Bytes image = imageOfSize(40, seed);
        image.back() = 0x55;
        const std::uint16_t crc = Crc16(image);
        if ((crc & 0xFF) != control_byte::padding) {
            continue;
        }
        ++found;
        both = both || (crc >> 8) == control_byte::padding;
        const SoftwareCheck check = checkSoftwareImage(blocksOf(image));
        EXPECT_EQ(check.size, image.size());
        EXPECT_EQ(check.verdict, SoftwareVerdict::right);
    }
    EXPECT_GT(found, 3);
    EXPECT_TRUE(both);
}

TEST(SoftwareImage, ADamagedImageIsNotRight) {
    const Bytes blocks = blocksOf(imageOfSize(1500, 9));
    for (const std::size_t offset : {0U, 700U, 1024U, 1499U, 1500U, 1501U, 1600U, 2047U}) {
        for (int bit = 0; bit < 8; ++bit) {
            Bytes damaged = blocks;
            damaged[offset] = static_cast<std::uint8_t>(damaged[offset] ^ (1U << bit));
            const SoftwareCheck check = checkSoftwareImage(damaged);
            EXPECT_NE(check.verdict, SoftwareVerdict::right) << offset << " bit " << bit;
            EXPECT_EQ(check.size, damaged.size());
        }
    }
}

TEST(SoftwareImage, NothingIsNothing) {
    EXPECT_EQ(checkSoftwareImage({}).size, 0U);
    EXPECT_EQ(checkSoftwareImage({}).verdict, SoftwareVerdict::noCrc);
}

TEST(SoftwareImage, BlocksOfPaddingAloneAreTakenAsTheyAre) {
    const Bytes blocks(2048, control_byte::padding);
    const SoftwareCheck check = checkSoftwareImage(blocks);
    EXPECT_LE(check.size, blocks.size());
    EXPECT_GT(check.size, 1024U) << "the last block holds at least one byte of the image";
}

}  // namespace
}  // namespace tessavo::test
