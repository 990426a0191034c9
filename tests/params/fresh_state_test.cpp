#include <gtest/gtest.h>

#include "params/factory_defaults.h"
#include "support/harness.h"

namespace tessavo::test {
namespace {

TEST(FreshStore, IsZeroButForTheFiveRecordSizes) {
    Bytes expected(10600, 0);
    for (const std::size_t offset : {0U, 2120U, 4240U, 6360U, 8480U}) {
        expected[offset] = 2120 & 0xFF;
        expected[offset + 1] = 2120 >> 8;
    }
    EXPECT_SAME_BYTES(bytesOf(emptyStore()), expected);
}

TEST(FreshState, BeforeItsStartHoldsAnEmptyStoreAndASizedImage) {
    RecordingBoxes boxes;
    const TuningState state(boxes);
    EXPECT_SAME_BYTES(bytesOf(state.store()), bytesOf(emptyStore()));
    Bytes image(3384, 0);
    image[0] = 3384 & 0xFF;
    image[1] = 3384 >> 8;
    EXPECT_SAME_BYTES(bytesOf(state.image()), image);
    EXPECT_EQ(state.currentSet(), 0U);
    EXPECT_EQ(state.filterMode(), 0U);
    EXPECT_FALSE(state.liveMode());
    EXPECT_FALSE(state.liveTransferEnabled());
    EXPECT_FALSE(state.updatePending());
}

/// The defaults that the pages write, at the record's offsets.
void writeExpectedDefaults(Bytes& store) {
    const std::uint16_t outputHz[8] = {60, 170, 500, 1000, 2500, 6000, 12000, 16000};
    const std::uint16_t inputHz[10] = {60, 170, 310, 600, 1000, 3000, 6000, 12000, 14000, 16000};
    const std::uint8_t groupSliders[8] = {2, 4, 6, 0, 3, 5, 7, 1};
    for (std::size_t s = 0; s < 5; ++s) {
        const std::size_t base = 2120 * s;
        const auto band = [&](std::size_t offset, std::uint8_t type, std::uint16_t hz, float q) {
            store[base + offset] = type;
            writeAt(store, base + offset + 2, hz);
            writeAt(store, base + offset + 4, 0.0F);
            writeAt(store, base + offset + 8, q);
        };
        band(8, 1, 150, 0.7F);
        band(24, 2, 4000, 1.0F);
        band(40, 0, 15000, 0.7F);
        for (std::size_t i = 0; i < 10; ++i) {
            band(56 + 16 * i, 2, inputHz[i], 10.0F);
        }
        for (std::size_t c = 0; c < 8; ++c) {
            const std::size_t channel = 224 + 168 * c;
            for (std::size_t b = 0; b < 8; ++b) {
                band(channel + 16 * b, 2, outputHz[b], 1.0F);
                store[base + channel + 16 * b + 12] = 1;
            }
            store[base + channel + 128] = 0;
            store[base + channel + 129] = 0;
            writeAt(store, base + channel + 130, std::uint16_t{20});
            store[base + channel + 132] = 2;
            store[base + channel + 134] = 0;
            store[base + channel + 135] = 1;
            writeAt(store, base + channel + 136, std::uint16_t{20000});
            store[base + channel + 138] = 2;
            writeAt(store, base + channel + 140, 0.0F);
            store[base + channel + 152] = 0;
            store[base + channel + 153] = 0;
            writeAt(store, base + channel + 156, 0.0F);
            const std::int32_t limiter[5] = {50, 120, -60, -70, -210};
            std::memcpy(store.data() + base + 1924 + 24 * c, limiter, sizeof limiter);
            store[base + 1924 + 24 * c + 20] = 1;
        }
        for (std::uint32_t p = 0; p < 8; ++p) {
            writeAt(store, base + 224 + 168 * groupSliders[p] + 148, p);
            writeAt(store, base + 224 + 168 * groupSliders[p] + 164, p);
        }
        const std::u16string name = {u'T', u'y', u'p', u'e', u' ', static_cast<char16_t>(u'1' + s)};
        std::memcpy(store.data() + base + 1580, name.data(), name.size() * 2);
        std::memcpy(store.data() + base + 1708, u"1.0", 6);
        const std::int16_t compressor[5] = {-100, 80, -300, -200, -500};
        std::memcpy(store.data() + base + 1906, compressor, sizeof compressor);
        writeAt(store, base + 1916, std::uint16_t{10});
        writeAt(store, base + 1918, std::uint16_t{10});
        writeAt(store, base + 1920, std::uint16_t{120});
        store[base + 1922] = 0;
    }
}

TEST(FreshState, HoldsEveryPagesDefaultsInAllFiveSets) {
    Bytes expected = bytesOf(emptyStore());
    writeExpectedDefaults(expected);
    const Tuning tuning;
    EXPECT_SAME_BYTES(tuning.store(), expected);
}

TEST(FreshState, WritesDefaultsOverWhateverTheSetsHoldAndLeavesTheRest) {
    std::mt19937_64 random(5);
    const Bytes before = randomStore(random);
    auto store = recordOf<ParameterStore>(before);
    writeDefaults(store);
    Bytes expected = before;
    for (std::size_t s = 0; s < 5; ++s) {
        std::fill_n(expected.begin() + static_cast<std::ptrdiff_t>(2120 * s + 1580), 256, std::uint8_t{0});
    }
    writeExpectedDefaults(expected);
    EXPECT_SAME_BYTES(bytesOf(store), expected);
}

TEST(FreshState, HasItsImageInStepButForTheBypassBytes) {
    const Tuning tuning;
    Bytes expected(3384, 0);
    mirrorSet(tuning.store(), 0, 0, expected);
    EXPECT_SAME_BYTES(tuning.image(), expected);
    EXPECT_EQ(tuning.image()[6], 0);
    EXPECT_EQ(tuning.image()[22], 0);
    EXPECT_EQ(tuning.store()[4], 0);
}

TEST(FreshState, SelectsTheFirstChannelAndWaitsForNothing) {
    RecordingBoxes boxes;
    TuningState state(boxes);
    state.start();
    EXPECT_EQ(state.selectionMask(), 0x80);
    EXPECT_EQ(state.currentSet(), 0U);
    EXPECT_EQ(state.filterMode(), 0U);
    EXPECT_FALSE(state.updatePending());
    EXPECT_FALSE(state.liveMode());
    EXPECT_TRUE(boxes.shown.empty());
}

}  // namespace
}  // namespace tessavo::test
