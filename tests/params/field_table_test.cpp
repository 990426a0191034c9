#include "params/field_table.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <set>

#include "support/harness.h"

namespace tessavo::test {
namespace {

/// Where a field lies: offset, width, and count and stride of each repetition.
struct Extent {
    FieldId id;
    std::size_t record;
    std::size_t width;
    int image;  ///< -1 for none
    std::size_t imageWidth;
    std::size_t count = 1;
    std::size_t stride = 0;
    std::size_t imageStride = 0;
    std::size_t innerCount = 1;
    std::size_t innerStride = 0;
    std::size_t innerImageStride = 0;
    int second = -1;
};

const std::vector<Extent>& extents() {
    static const std::vector<Extent> all{
        {FieldId::recordSize, 0, 4, -1, 0},
        {FieldId::inputEqOn, 4, 1, 6, 1, 1, 0, 0, 1, 0, 0, 22},
        {FieldId::toneType, 8, 1, -1, 0, 3, 16},
        {FieldId::toneFrequency, 10, 2, -1, 0, 3, 16},
        {FieldId::toneGain, 12, 4, 7, 1, 3, 16, 1, 1, 0, 0, 23},
        {FieldId::toneQ, 16, 4, -1, 0, 3, 16},
        {FieldId::toneOff, 20, 1, -1, 0, 3, 16},
        {FieldId::inputBandType, 56, 1, -1, 0, 10, 16},
        {FieldId::inputBandFrequency, 58, 2, -1, 0, 10, 16},
        {FieldId::inputBandGain, 60, 4, 10, 1, 10, 16, 1, 1, 0, 0, 26},
        {FieldId::inputBandQ, 64, 4, -1, 0, 10, 16},
        {FieldId::inputBandOff, 68, 1, -1, 0, 10, 16},
        {FieldId::inputGain, 216, 4, 4, 2},
        {FieldId::powerampGain, 220, 1, 2957, 1},
        {FieldId::preampGain, 221, 1, 2956, 1},
        {FieldId::bandType, 224, 1, 52, 1, 8, 168, 360, 8, 16, 16},
        {FieldId::bandFrequency, 226, 2, 54, 2, 8, 168, 360, 8, 16, 16},
        {FieldId::bandGain, 228, 4, 56, 4, 8, 168, 360, 8, 16, 16},
        {FieldId::bandQ, 232, 4, 60, 4, 8, 168, 360, 8, 16, 16},
        {FieldId::bandOff, 236, 1, 64, 1, 8, 168, 360, 8, 16, 16},
        {FieldId::crossoverEnabled, 352, 1, 180, 1, 8, 168, 360, 2, 6, 6},
        {FieldId::crossoverKind, 353, 1, 181, 1, 8, 168, 360, 2, 6, 6},
        {FieldId::crossoverFrequency, 354, 2, 182, 2, 8, 168, 360, 2, 6, 6},
        {FieldId::crossoverOrder, 356, 1, 184, 1, 8, 168, 360, 2, 6, 6},
        {FieldId::volume, 364, 4, 40, 4, 8, 168, 360},
        {FieldId::groupGain, 368, 4, 3304, 4, 8, 168, 4},
        {FieldId::gainGroup, 372, 4, 3368, 1, 8, 168, 1},
        {FieldId::channelFlag, 376, 1, 44, 1, 8, 168, 360},
        {FieldId::invertPhase, 377, 1, 45, 1, 8, 168, 360},
        {FieldId::delay, 380, 4, 48, 4, 8, 168, 360},
        {FieldId::groupDelay, 384, 4, 3336, 4, 8, 168, 4},
        {FieldId::delayGroup, 388, 4, 3376, 1, 8, 168, 1},
        {FieldId::routerSource, 1568, 1, 2916, 4, 8, 1, 4},
        {FieldId::surroundOff, 1576, 1, -1, 0},
        {FieldId::roomSize, 1577, 1, 2948, 4},
        {FieldId::surroundMode, 1578, 1, 2952, 4},
        {FieldId::lineInGain, 1836, 1, 2958, 1},
        {FieldId::suppression, 1837, 1, 2959, 1},
        {FieldId::gainDetectionLevel, 1840, 4, 2960, 4},
        {FieldId::turnOffDelayOn, 1844, 1, 2964, 1},
        {FieldId::turnOffDelay, 1846, 2, 2968, 2},
        {FieldId::delaySize1, 1848, 2, 2970, 2},
        {FieldId::delaySize1Copies, 1850, 2, 2970, 2, 3, 2, 0},
        {FieldId::delaySize1Last, 1856, 2, -1, 0},
        {FieldId::delaySize2, 1878, 2, 2972, 2},
        {FieldId::decoderGain, 1880, 2, 2974, 2, 4, 2, 2},
        {FieldId::rearForSurround, 1904, 1, 2982, 1},
        {FieldId::pone, 1906, 2, 2984, 2},
        {FieldId::compressorGain, 1908, 2, 2986, 2},
        {FieldId::compressorLowerLimit, 1910, 2, 2988, 2},
        {FieldId::expanderFactor, 1912, 2, 2990, 2},
        {FieldId::expanderUpperLimit, 1914, 2, 2992, 2},
        {FieldId::compressorAttack, 1916, 2, 2994, 2},
        {FieldId::compressorRelease, 1918, 2, 2996, 2},
        {FieldId::compressorCrossover, 1920, 2, 3104, 2},
        {FieldId::compressorDisabled, 1922, 1, 3040, 1},
        {FieldId::limiterAttack, 1924, 4, 3108, 4, 8, 24, 24},
        {FieldId::limiterRelease, 1928, 4, 3112, 4, 8, 24, 24},
        {FieldId::limiterGain, 1932, 4, 3116, 4, 8, 24, 24},
        {FieldId::limiterActivateLevel, 1936, 4, 3120, 4, 8, 24, 24},
        {FieldId::limiterDeactivateLevel, 1940, 4, 3124, 4, 8, 24, 24},
        {FieldId::limiterEnabled, 1944, 1, 3128, 1, 8, 24, 24},
        {FieldId::lineOutUse, 2116, 1, 3300, 1},
    };
    return all;
}

/// A one-dimensional repetition may stand in either dimension of the table.
std::vector<FieldIndex> elementsOf(const Field& field) {
    std::vector<FieldIndex> elements;
    forEachElement(field, [&](FieldIndex index) { elements.push_back(index); });
    return elements;
}

TEST(FieldTable, PutsEveryFieldAtItsPlacesInRecordAndImage) {
    ASSERT_EQ(extents().size(), fieldCount);
    for (const Extent& extent : extents()) {
        const Field& field = fieldOf(extent.id);
        SCOPED_TRACE(field.path);
        EXPECT_EQ(widthOf(field.type), extent.width);
        if (extent.image >= 0) {
            EXPECT_EQ(widthOf(field.imageType), extent.imageWidth);
        }
        EXPECT_EQ(field.imageOffset, extent.image);
        EXPECT_EQ(field.secondImageOffset, extent.second);
        const std::vector<FieldIndex> elements = elementsOf(field);
        ASSERT_EQ(elements.size(), extent.count * extent.innerCount);
        for (std::size_t i = 0; i < elements.size(); ++i) {
            const std::size_t outer = i / extent.innerCount;
            const std::size_t inner = i % extent.innerCount;
            EXPECT_EQ(recordOffsetOf(field, elements[i]),
                      extent.record + outer * extent.stride + inner * extent.innerStride);
            if (extent.image >= 0) {
                EXPECT_EQ(imageStrideOf(field, elements[i]),
                          outer * extent.imageStride + inner * extent.innerImageStride);
            }
            EXPECT_TRUE(contains(field, elements[i]));
        }
        EXPECT_FALSE(contains(field, {field.outer.count, 0}));
        EXPECT_FALSE(contains(field, {0, field.inner.count}));
    }
}

TEST(FieldTable, IsInRecordOrderAndIndexedByIdentifier) {
    const auto table = fieldTable();
    for (std::size_t i = 0; i < table.size(); ++i) {
        EXPECT_EQ(static_cast<std::size_t>(table[i].id), i);
        EXPECT_EQ(&fieldOf(table[i].id), &table[i]);
        if (i > 0) {
            EXPECT_GT(table[i].recordOffset, table[i - 1].recordOffset) << table[i].path;
        }
    }
}

TEST(FieldTable, HasNoTwoFieldsOnOneByteOfTheRecord) {
    std::map<std::size_t, std::string_view> owners;
    for (std::size_t i = 1580; i < 1836; ++i) {
        owners[i] = "texts";
    }
    for (const Field& field : fieldTable()) {
        forEachElement(field, [&](FieldIndex index) {
            for (std::size_t i = 0; i < widthOf(field.type); ++i) {
                const std::size_t offset = recordOffsetOf(field, index) + i;
                EXPECT_LT(offset, 2120U) << field.path;
                EXPECT_TRUE(owners.emplace(offset, field.path).second)
                    << field.path << " and " << owners[offset] << " share byte " << offset;
            }
        });
    }
}

TEST(FieldTable, HasNoTwoFieldsOnOneByteOfTheImageButTheFourWordsThatShareOne) {
    std::map<std::size_t, FieldId> owners;
    for (const Field& field : fieldTable()) {
        if (field.imageOffset < 0) {
            continue;
        }
        forEachElement(field, [&](FieldIndex index) {
            for (const std::int16_t first : {field.imageOffset, field.secondImageOffset}) {
                for (std::size_t i = 0; first >= 0 && i < widthOf(field.imageType); ++i) {
                    const std::size_t offset =
                        static_cast<std::size_t>(first) + imageStrideOf(field, index) + i;
                    EXPECT_LT(offset, 3384U) << field.path;
                    const bool shared = field.id == FieldId::delaySize1Copies;
                    EXPECT_TRUE(owners.emplace(offset, field.id).second || shared)
                        << field.path << " " << offset;
                }
            }
        });
    }
}

TEST(FieldTable, HasAPathOfItsOwnForEachField) {
    std::set<std::string_view> paths;
    for (const Field& field : fieldTable()) {
        EXPECT_FALSE(field.path.empty());
        EXPECT_FALSE(field.meaning.empty()) << field.path;
        EXPECT_TRUE(paths.insert(field.path).second) << field.path;
    }
}

TEST(FieldTable, HasItsDefaultsWithinItsRanges) {
    for (const Field& field : fieldTable()) {
        EXPECT_LE(field.minimum, field.maximum) << field.path;
        EXPECT_GT(field.storedPerShown, 0.0) << field.path;
        for (const double value : field.defaults) {
            EXPECT_GE(value, field.minimum) << field.path;
            EXPECT_LE(value, field.maximum) << field.path;
        }
    }
}

TEST(FieldTable, HasCodesThatFillTheRangeOfTheirField) {
    for (const Field& field : fieldTable()) {
        if (field.codes.empty()) {
            continue;
        }
        EXPECT_EQ(field.minimum, field.codes.front().code) << field.path;
        EXPECT_EQ(field.maximum, field.codes.back().code) << field.path;
        EXPECT_EQ(std::ranges::adjacent_find(field.codes, std::ranges::greater_equal(), &FieldCode::code),
                  field.codes.end())
            << field.path;
    }
}

TEST(FieldTable, HasTheRangesOfThePages) {
    const auto range = [](FieldId id, double lowest, double highest) {
        EXPECT_EQ(fieldOf(id).minimum, lowest) << fieldOf(id).path;
        EXPECT_EQ(fieldOf(id).maximum, highest) << fieldOf(id).path;
    };
    range(FieldId::bandFrequency, 20, 20000);
    range(FieldId::bandGain, -18, 18);
    range(FieldId::bandQ, 0.1, 20);
    range(FieldId::crossoverFrequency, 20, 20000);
    range(FieldId::volume, -6, 18);
    range(FieldId::delay, 0, 2);
    range(FieldId::limiterAttack, 0, 200);
    range(FieldId::limiterRelease, 0, 200);
    range(FieldId::limiterGain, -20, 0);
    range(FieldId::limiterActivateLevel, -40, 0);
    range(FieldId::limiterDeactivateLevel, -40, 0);
    range(FieldId::inputBandGain, -20, 20);
    range(FieldId::toneGain, -20, 20);
    range(FieldId::routerSource, 0, 13);
    range(FieldId::gainGroup, 0, 7);
    range(FieldId::delayGroup, 0, 7);
    range(FieldId::roomSize, 0, 4);
    range(FieldId::surroundMode, 0, 2);
}

TEST(StoredValues, ComeBackAndTouchTheirElementAlone) {
    std::mt19937_64 random(12);
    for (const Field& field : fieldTable()) {
        forEachElement(field, [&](FieldIndex index) {
            Bytes bytes(setSize);
            for (std::uint8_t& byte : bytes) {
                byte = static_cast<std::uint8_t>(random());
            }
            auto set = recordOf<ParameterSet>(bytes);
            const double value = field.type == FieldType::f32 ? 2.5 : 77;
            setStoredValue(set, field, index, value);
            ASSERT_EQ(storedValue(set, field, index), value) << field.path;
            Bytes after = bytesOf(set);
            const auto from = static_cast<std::ptrdiff_t>(recordOffsetOf(field, index));
            std::copy_n(bytes.begin() + from, widthOf(field.type), after.begin() + from);
            ASSERT_SAME_BYTES(after, bytes) << field.path;
        });
    }
}

TEST(Numbers, OfEveryTypeSaturateTruncateAndComeBack) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    const auto throughType = [](FieldType type, double value) {
        std::array<unsigned char, 9> bytes{};
        bytes.fill(0xA5);
        writeNumber(bytes.data() + 1, type, value);
        EXPECT_EQ(bytes[0], 0xA5);
        for (std::size_t i = 1 + widthOf(type); i < bytes.size(); ++i) {
            EXPECT_EQ(bytes[i], 0xA5);
        }
        return readNumber(bytes.data() + 1, type);
    };
    const auto limits = [&](FieldType type, double lowest, double highest) {
        EXPECT_EQ(throughType(type, -inf), lowest);
        EXPECT_EQ(throughType(type, inf), highest);
        EXPECT_EQ(throughType(type, lowest), lowest);
        EXPECT_EQ(throughType(type, highest), highest);
        EXPECT_EQ(throughType(type, std::numeric_limits<double>::quiet_NaN()), 0.0);
        EXPECT_EQ(throughType(type, 5.99), 5.0);
    };
    limits(FieldType::u8, 0, 255);
    limits(FieldType::i8, -128, 127);
    limits(FieldType::u16, 0, 65535);
    limits(FieldType::i16, -32768, 32767);
    limits(FieldType::u32, 0, 4294967295.0);
    limits(FieldType::i32, -2147483648.0, 2147483647.0);
    EXPECT_EQ(throughType(FieldType::f32, 0.1), static_cast<double>(0.1F));
    EXPECT_EQ(throughType(FieldType::i16, -5.99), -5.0);
}

TEST(ShownValues, ScaleTenthsAndRoundBack) {
    ParameterSet set;
    const Field& level = fieldOf(FieldId::limiterActivateLevel);
    setStoredValue(set, level, {2, 0}, -123);
    EXPECT_EQ(shownValue(set, level, {2, 0}), -12.3);
    EXPECT_EQ(storedFromShown(level, -12.3), -123.0);
    EXPECT_EQ(storedFromShown(level, -12.34), -123.0);
    EXPECT_EQ(storedFromShown(fieldOf(FieldId::volume), 2.3), static_cast<double>(2.3F));
}

}  // namespace
}  // namespace tessavo::test
