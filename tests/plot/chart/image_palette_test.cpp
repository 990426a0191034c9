#include "plot/chart/image_palette.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <set>

#include "plot/chart/chart_helpers.h"

namespace tessavo::test {
namespace {

int distance(QRgb one, QRgb other) {
    return std::abs(qRed(one) - qRed(other)) + std::abs(qGreen(one) - qGreen(other)) +
           std::abs(qBlue(one) - qBlue(other));
}

double luminance(QRgb color) {
    const auto linear = [](int channel) { return std::pow(channel / 255.0, 2.2); };
    return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) + 0.0722 * linear(qBlue(color));
}

TEST(ImagePalette, ThirtyThreeTablesOf768Bytes) {
    std::set<std::vector<std::uint8_t>> tables;
    std::set<QString> names;
    for (int identifier = 10033; identifier <= 10065; ++identifier) {
        const auto palette = CImagePalette::load(identifier);
        ASSERT_TRUE(palette) << identifier;
        EXPECT_EQ(palette->identifier(), identifier);
        ASSERT_EQ(palette->bytes().size(), 768U);
        tables.emplace(palette->bytes().begin(), palette->bytes().end());
        EXPECT_FALSE(CImagePalette::nameOf(identifier).isEmpty());
        names.insert(CImagePalette::nameOf(identifier));
    }
    EXPECT_EQ(tables.size(), 33U) << "two tables are the same";
    EXPECT_EQ(names.size(), 33U) << "two tables have the same name";
}

TEST(ImagePalette, OtherIdentifiersNameNone) {
    for (const int identifier : {10032, 10066, 0, -1, std::numeric_limits<int>::max()}) {
        EXPECT_FALSE(CImagePalette::load(identifier)) << identifier;
        EXPECT_TRUE(CImagePalette::nameOf(identifier).isEmpty()) << identifier;
    }
}

TEST(ImagePalette, BytesAreRedGreenBlue) {
    for (int identifier = 10033; identifier <= 10065; ++identifier) {
        const CImagePalette palette = *CImagePalette::load(identifier);
        for (int index = 0; index < 256; ++index) {
            const auto at = static_cast<std::size_t>(3 * index);
            ASSERT_EQ(palette.color(index),
                      qRgb(palette.bytes()[at], palette.bytes()[at + 1], palette.bytes()[at + 2]));
        }
    }
}

TEST(ImagePalette, ColoursChangeGradually) {
    for (int identifier = 10033; identifier <= 10065; ++identifier) {
        const CImagePalette palette = *CImagePalette::load(identifier);
        const int bound = CImagePalette::nameOf(identifier).contains("bands") ? 70 : 16;
        for (int index = 1; index < 256; ++index) {
            ASSERT_LE(distance(palette.color(index - 1), palette.color(index)), bound)
                << identifier << " at " << index;
        }
        std::set<QRgb> colors;
        for (int index = 0; index < 256; ++index) {
            colors.insert(palette.color(index));
        }
        EXPECT_GE(colors.size(), bound == 70 ? 16U : 100U) << identifier;
    }
}

TEST(ImagePalette, RampsGetSteadilyLighter) {
    // Greys without the inverted one, single hues and ramps.
    for (int identifier = 10033; identifier <= 10053; ++identifier) {
        if (identifier == 10034) {
            continue;
        }
        const CImagePalette palette = *CImagePalette::load(identifier);
        for (int index = 1; index < 256; ++index) {
            ASSERT_GE(luminance(palette.color(index)), luminance(palette.color(index - 1)) - 0.002)
                << identifier << " at " << index;
        }
        EXPECT_LT(luminance(palette.color(0)), 0.05);
        EXPECT_GT(luminance(palette.color(255)), 0.7);
    }
}

TEST(ImagePalette, GreyIsGrey) {
    const CImagePalette grey;
    const CImagePalette inverted = *CImagePalette::load(10034);
    for (int index = 0; index < 256; ++index) {
        const QRgb color = grey.color(index);
        EXPECT_LE(std::abs(qRed(color) - qBlue(color)), 1);
        EXPECT_LE(distance(color, inverted.color(255 - index)), 3);
    }
    EXPECT_EQ(grey.color(0), qRgb(0, 0, 0));
    EXPECT_EQ(grey.color(255), qRgb(255, 255, 255));
}

TEST(ImagePalette, DivergingTablesHaveANeutralMiddle) {
    for (int identifier = 10054; identifier <= 10059; ++identifier) {
        const CImagePalette palette = *CImagePalette::load(identifier);
        const QRgb middle = palette.color(128);
        EXPECT_LE(std::abs(qRed(middle) - qBlue(middle)), 12) << identifier;
        EXPECT_GT(distance(palette.color(0), palette.color(255)), 100) << identifier;
        const bool lightMiddle = luminance(middle) > 0.5;
        for (const int end : {0, 255}) {
            EXPECT_EQ(luminance(palette.color(end)) < luminance(middle), lightMiddle) << identifier;
        }
    }
}

TEST(ImagePalette, CyclicTablesMeetAtTheirEnds) {
    for (int identifier = 10060; identifier <= 10065; ++identifier) {
        const CImagePalette palette = *CImagePalette::load(identifier);
        EXPECT_LE(distance(palette.color(255), palette.color(0)), 16) << identifier;
        EXPECT_GT(distance(palette.color(0), palette.color(128)), 60) << identifier;
    }
}

TEST(ImagePalette, ValuesPickTheirColours) {
    const CImagePalette palette;
    EXPECT_EQ(palette.colorOf(0, 0, 10), palette.color(0));
    EXPECT_EQ(palette.colorOf(10, 0, 10), palette.color(255));
    EXPECT_EQ(palette.colorOf(5, 0, 10), palette.color(128));
    EXPECT_EQ(palette.colorOf(-99, 0, 10), palette.color(0));
    EXPECT_EQ(palette.colorOf(99, 0, 10), palette.color(255));
    EXPECT_EQ(palette.colorOf(3, 3, 3), palette.color(128));
    EXPECT_EQ(qAlpha(palette.colorOf(std::nan(""), 0, 1)), 0);
    EXPECT_EQ(qAlpha(palette.colorOf(std::numeric_limits<double>::infinity(), 0, 1)), 0);
    constexpr double huge = std::numeric_limits<double>::max();
    EXPECT_EQ(palette.colorOf(huge, -huge, huge), palette.color(255));
    EXPECT_EQ(palette.colorOf(0, -huge, huge), palette.color(128));
    EXPECT_EQ(palette.color(-5), palette.color(0));
    EXPECT_EQ(palette.color(999), palette.color(255));
}

}  // namespace
}  // namespace tessavo::test
