#include <gtest/gtest.h>
#include <limits>

#include "plot/response_curve.h"
#include "support/harness.h"

namespace tessavo::test {
namespace {

std::size_t rowPlace(std::size_t row, std::size_t band) {
    return row + (band < 10 ? 4 + band : band - 9);
}

class InputBandGain : public ::testing::TestWithParam<std::size_t> {};

INSTANTIATE_TEST_SUITE_P(, InputBandGain, ::testing::Range<std::size_t>(0, 13));

TEST_P(InputBandGain, WritesRecordBothRowsWordsAndTheInputCurve) {
    std::mt19937_64 random(GetParam());
    const Bytes store = randomStore(random);
    Tuning tuning;
    for (std::uint32_t mode = 0; mode < 3; ++mode) {
        tuning.state.setFilterMode(mode);
        for (const bool final : {false, true}) {
            tuning.load(store, 1);
            const std::size_t byteOffset = setSize + inputBandOffset(GetParam());
            Bytes expectedStore = tuning.store();
            writeAt(expectedStore, byteOffset + 4, -7.9F);
            Bytes expectedImage = tuning.image();
            writeAt(expectedImage, rowPlace(6, GetParam()), std::int8_t{-7});
            writeAt(expectedImage, rowPlace(22, GetParam()), std::int8_t{-7});
            std::vector<BiquadWords> cascade;
            for (std::size_t band = 0; band < 13; ++band) {
                cascade.push_back(tuning.state.inputWords(band));
            }
            ASSERT_TRUE(bandWordsOf(mode, expectedStore, byteOffset, cascade[GetParam()]));

            tuning.state.setInputBandGain(GetParam(), -7.9F, final);
            EXPECT_SAME_BYTES(tuning.store(), expectedStore);
            EXPECT_SAME_BYTES(tuning.image(), expectedImage);
            for (std::size_t band = 0; band < 13; ++band) {
                EXPECT_EQ(tuning.state.inputWords(band), cascade[band]) << band;
            }
            EXPECT_EQ(tuning.state.updatePending(), final);
            ASSERT_EQ(tuning.display.curves.size(), 1U);
            EXPECT_EQ(tuning.display.curves[0], computeResponse(cascade));
        }
    }
}

TEST(InputBandGains, LieInBothRowsAtTheirBytes) {
    Tuning tuning;
    for (std::size_t band = 0; band < 13; ++band) {
        tuning.state.setInputBandGain(band, static_cast<float>(band) + 1.0F, true);
    }
    const Bytes image = tuning.image();
    for (std::size_t k = 0; k < 10; ++k) {
        EXPECT_EQ(image[10 + k], k + 1);
        EXPECT_EQ(image[26 + k], k + 1);
    }
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_EQ(image[7 + k], k + 11);
        EXPECT_EQ(image[23 + k], k + 11);
    }
    EXPECT_EQ(image[6], 0);
    EXPECT_EQ(image[22], 0);
}

TEST(InputBandGains, AreTruncatedTowardsZeroToAByte) {
    Tuning tuning;
    const auto byteOf = [&](float gainDb) {
        tuning.state.setInputBandGain(4, gainDb, true);
        EXPECT_EQ(tuning.image()[14], tuning.image()[30]);
        return readAt<std::int8_t>(tuning.image(), 14);
    };
    EXPECT_EQ(byteOf(3.9F), 3);
    EXPECT_EQ(byteOf(-3.9F), -3);
    EXPECT_EQ(byteOf(0.9F), 0);
    EXPECT_EQ(byteOf(-0.9F), 0);
    EXPECT_EQ(byteOf(-20.0F), -20);
    EXPECT_EQ(byteOf(500.0F), 127);
    EXPECT_EQ(byteOf(-500.0F), -128);
    EXPECT_EQ(byteOf(std::numeric_limits<float>::quiet_NaN()), 0);
    EXPECT_EQ(byteOf(std::numeric_limits<float>::infinity()), 127);
}

TEST(InputBandGains, OutsideTheThirteenBandsChangeNothing) {
    Tuning tuning;
    const Bytes store = tuning.store();
    const Bytes image = tuning.image();
    tuning.state.setInputBandGain(13, 3.0F, true);
    tuning.state.setInputBandGain(std::numeric_limits<std::size_t>::max(), 3.0F, true);
    EXPECT_SAME_BYTES(tuning.store(), store);
    EXPECT_SAME_BYTES(tuning.image(), image);
    EXPECT_TRUE(tuning.display.curves.empty());
}

TEST(InputEqSwitch, WritesRecordAndBothBypassBytesAndRaisesAPendingUpdate) {
    Tuning tuning;
    tuning.state.selectSet(2);
    tuning.settle();
    tuning.display.curves.clear();
    for (const bool on : {true, false, true}) {
        Bytes expectedStore = tuning.store();
        expectedStore[2 * setSize + 4] = on ? 1 : 0;
        Bytes expectedImage = tuning.image();
        expectedImage[6] = on ? 0 : 1;
        expectedImage[22] = on ? 0 : 1;
        tuning.state.setInputEqOn(on);
        EXPECT_SAME_BYTES(tuning.store(), expectedStore);
        EXPECT_SAME_BYTES(tuning.image(), expectedImage);
        EXPECT_TRUE(tuning.state.updatePending());
        tuning.settle();
    }
    EXPECT_TRUE(tuning.display.curves.empty());
}

/// A field that edit() writes: where it lies in the record and in the image, and which bytes it gets.
struct PlainField {
    FieldId id;
    std::size_t inner;
    std::size_t recordOffset;
    double value;
    Bytes recordBytes;
    std::size_t imageOffset;
    Bytes imageBytes;
};

std::vector<PlainField> plainFields() {
    const auto u16 = [](int value) { return littleEndian(static_cast<std::uint16_t>(value)); };
    const auto u32 = [](unsigned value) { return littleEndian(std::uint32_t{value}); };
    return {
        {FieldId::inputGain, 0, 216, -12.5, littleEndian(-12.5F), 4, u16(-12)},
        {FieldId::powerampGain, 0, 220, 200, Bytes{200}, 2957, Bytes{200}},
        {FieldId::preampGain, 0, 221, -3, Bytes{0xFD}, 2956, Bytes{0xFD}},
        {FieldId::surroundOff, 0, 1576, 1, Bytes{1}, 0, {}},
        {FieldId::roomSize, 0, 1577, 4, Bytes{4}, 2948, u32(4)},
        {FieldId::surroundMode, 0, 1578, 2, Bytes{2}, 2952, u32(2)},
        {FieldId::lineInGain, 0, 1836, -9, Bytes{0xF7}, 2958, Bytes{0xF7}},
        {FieldId::suppression, 0, 1837, 99, Bytes{99}, 2959, Bytes{99}},
        {FieldId::gainDetectionLevel, 0, 1840, 0x12345678, u32(0x12345678), 2960, u32(0x12345678)},
        {FieldId::turnOffDelayOn, 0, 1844, 1, Bytes{1}, 2964, Bytes{1}},
        {FieldId::turnOffDelay, 0, 1846, 54321, u16(54321), 2968, u16(54321)},
        {FieldId::delaySize1, 0, 1848, 1234, u16(1234), 2970, u16(1234)},
        {FieldId::delaySize2, 0, 1878, 4321, u16(4321), 2972, u16(4321)},
        {FieldId::decoderGain, 0, 1880, 300, u16(300), 2974, u16(300)},
        {FieldId::decoderGain, 1, 1882, 301, u16(301), 2976, u16(301)},
        {FieldId::decoderGain, 2, 1884, 302, u16(302), 2978, u16(302)},
        {FieldId::decoderGain, 3, 1886, 303, u16(303), 2980, u16(303)},
        {FieldId::rearForSurround, 0, 1904, 1, Bytes{1}, 2982, Bytes{1}},
        {FieldId::pone, 0, 1906, -111, u16(-111), 2984, u16(-111)},
        {FieldId::compressorGain, 0, 1908, 222, u16(222), 2986, u16(222)},
        {FieldId::compressorLowerLimit, 0, 1910, -333, u16(-333), 2988, u16(-333)},
        {FieldId::expanderFactor, 0, 1912, -444, u16(-444), 2990, u16(-444)},
        {FieldId::expanderUpperLimit, 0, 1914, -555, u16(-555), 2992, u16(-555)},
        {FieldId::compressorAttack, 0, 1916, 66, u16(66), 2994, u16(66)},
        {FieldId::compressorRelease, 0, 1918, 77, u16(77), 2996, u16(77)},
        {FieldId::compressorCrossover, 0, 1920, 188, u16(188), 3104, u16(188)},
        {FieldId::compressorDisabled, 0, 1922, 1, Bytes{1}, 3040, Bytes{1}},
        {FieldId::lineOutUse, 0, 2116, 1, Bytes{1}, 3300, Bytes{1}},
    };
}

TEST(PlainFieldEdit, WritesTheFieldsBytesOfRecordAndImageAndNothingElse) {
    std::mt19937_64 random(99);
    const Bytes store = randomStore(random);
    Tuning tuning;
    for (const PlainField& field : plainFields()) {
        for (const bool final : {false, true}) {
            SCOPED_TRACE(std::string(fieldOf(field.id).path) + " " + std::to_string(field.inner));
            tuning.load(store, 4);
            Bytes expectedStore = tuning.store();
            Bytes expectedImage = tuning.image();
            applyPatches(expectedStore, {{4 * setSize + field.recordOffset, field.recordBytes}});
            applyPatches(expectedImage, {{field.imageOffset, field.imageBytes}});
            const bool isOuter = fieldOf(field.id).outer.count > 1;
            tuning.state.edit(field.id, isOuter ? FieldIndex{field.inner, 0} : FieldIndex{0, field.inner},
                              field.value, final);
            EXPECT_SAME_BYTES(tuning.store(), expectedStore);
            EXPECT_SAME_BYTES(tuning.image(), expectedImage);
            EXPECT_EQ(tuning.state.updatePending(), final);
            EXPECT_TRUE(tuning.display.curves.empty());
        }
    }
}

TEST(PlainFieldEdit, SaturatesAndTruncates) {
    Tuning tuning;
    const auto stored = [&](FieldId id, double value, std::size_t offset) {
        tuning.state.edit(id, {}, value, true);
        return readAt<std::int16_t>(tuning.store(), offset);
    };
    EXPECT_EQ(stored(FieldId::pone, 1e9, 1906), 32767);
    EXPECT_EQ(stored(FieldId::pone, -1e9, 1906), -32768);
    EXPECT_EQ(stored(FieldId::pone, -99.9, 1906), -99);
    EXPECT_EQ(stored(FieldId::pone, std::numeric_limits<double>::quiet_NaN(), 1906), 0);
    tuning.state.edit(FieldId::inputGain, {}, 1e9, true);
    EXPECT_EQ(readAt<std::int16_t>(tuning.image(), 4), 32767);
}

TEST(PlainFieldEdit, OfAnElementThatDoesNotExistChangesNothing) {
    Tuning tuning;
    const Bytes store = tuning.store();
    const Bytes image = tuning.image();
    tuning.state.edit(FieldId::pone, {1, 0}, 5, true);
    tuning.state.edit(FieldId::pone, {0, 1}, 5, true);
    tuning.state.edit(FieldId::decoderGain, {4, 4}, 5, true);
    EXPECT_SAME_BYTES(tuning.store(), store);
    EXPECT_SAME_BYTES(tuning.image(), image);
}

TEST(SetName, KeepsThirtyOneUnitsZeroFilledAndRaisesNothing) {
    Tuning tuning;
    tuning.state.selectSet(1);
    tuning.settle();
    const Bytes image = tuning.image();
    Bytes expected = tuning.store();
    for (std::size_t i = 0; i < 64; ++i) {
        writeAt(expected, setSize + 1580 + 2 * i, i < 31 ? static_cast<char16_t>(u'a' + i % 26) : u'\0');
    }
    std::u16string name;
    for (std::size_t i = 0; i < 40; ++i) {
        name += static_cast<char16_t>(u'a' + i % 26);
    }
    tuning.state.setName(name);
    EXPECT_SAME_BYTES(tuning.store(), expected);
    EXPECT_SAME_BYTES(tuning.image(), image);
    EXPECT_FALSE(tuning.state.updatePending());
    EXPECT_TRUE(tuning.display.curves.empty());
}

TEST(SetName, ReplacesALongerOneWhole) {
    Tuning tuning;
    tuning.state.setName(u"a long name of a set");
    tuning.state.setName(u"x");
    Bytes expected(128, 0);
    expected[0] = 'x';
    const Bytes store = tuning.store();
    EXPECT_SAME_BYTES(Bytes(store.begin() + 1580, store.begin() + 1708), expected);
}

}  // namespace
}  // namespace tessavo::test
