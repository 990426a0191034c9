#include <functional>
#include <gtest/gtest.h>
#include <limits>

#include "support/harness.h"

namespace tessavo::test {
namespace {

struct ChannelEdit {
    const char* name;
    std::function<void(TuningState&, RecordChannel)> run;
    std::function<Patches(std::size_t channel)> record;
    std::function<Patches(std::size_t channel, const Bytes& store, std::size_t base)> image;
};

std::vector<ChannelEdit> channelEdits() {
    return {
        {"setGroupGain", [](TuningState& state, RecordChannel c) { state.setGroupGain(c, 2.3F); },
         [](std::size_t c) {
             return Patches{{recordChannelOffset(c) + 144, littleEndian(2.3F)}};
         },
         [](std::size_t c, const Bytes& store, std::size_t base) {
             const auto volumeDb = readAt<float>(store, base + recordChannelOffset(c) + 140);
             return Patches{{imageBlockOffset(c) + 4, littleEndian(gainWordByFormula(volumeDb, 2.3F))},
                            {3304 + 4 * c, littleEndian(std::int32_t{23})}};
         }},
        {"setGroupGainBelowZero", [](TuningState& state, RecordChannel c) { state.setGroupGain(c, -7.7F); },
         [](std::size_t c) {
             return Patches{{recordChannelOffset(c) + 144, littleEndian(-7.7F)}};
         },
         [](std::size_t c, const Bytes& store, std::size_t base) {
             const auto volumeDb = readAt<float>(store, base + recordChannelOffset(c) + 140);
             return Patches{{imageBlockOffset(c) + 4, littleEndian(gainWordByFormula(volumeDb, -7.7F))},
                            {3304 + 4 * c, littleEndian(std::int32_t{-77})}};
         }},
        {"setGroupDelay", [](TuningState& state, RecordChannel c) { state.setGroupDelay(c, 2.3F); },
         [](std::size_t c) {
             return Patches{{recordChannelOffset(c) + 160, littleEndian(2.3F)}};
         },
         [](std::size_t c, const Bytes& store, std::size_t base) {
             const double delayMs =
                 static_cast<double>(readAt<float>(store, base + recordChannelOffset(c) + 156));
             const double samples = (delayMs + static_cast<double>(2.3F)) * 49500 / 1000 + 0.5;
             return Patches{{imageBlockOffset(c) + 12, littleEndian(static_cast<std::uint32_t>(samples))},
                            {3336 + 4 * c, littleEndian(std::uint32_t{23})}};
         }},
        {"setGainGroup", [](TuningState& state, RecordChannel c) { state.setGainGroup(c, 6); },
         [](std::size_t c) {
             return Patches{{recordChannelOffset(c) + 148, littleEndian(std::uint32_t{6})}};
         },
         [](std::size_t c, const Bytes&, std::size_t) {
             return Patches{{3368 + c, Bytes{6}}};
         }},
        {"setDelayGroup", [](TuningState& state, RecordChannel c) { state.setDelayGroup(c, 5); },
         [](std::size_t c) {
             return Patches{{recordChannelOffset(c) + 164, littleEndian(std::uint32_t{5})}};
         },
         [](std::size_t c, const Bytes&, std::size_t) {
             return Patches{{3376 + c, Bytes{5}}};
         }},
        {"setChannelFlag", [](TuningState& state, RecordChannel c) { state.setChannelFlag(c, 1); },
         [](std::size_t c) {
             return Patches{{recordChannelOffset(c) + 152, Bytes{1}}};
         },
         [](std::size_t c, const Bytes&, std::size_t) {
             return Patches{{imageBlockOffset(c) + 8, Bytes{1}}};
         }},
        {"setRouterSource", [](TuningState& state, RecordChannel c) { state.setRouterSource(c, 13); },
         [](std::size_t c) {
             return Patches{{1568 + c, Bytes{13}}};
         },
         [](std::size_t c, const Bytes&, std::size_t) {
             return Patches{{2916 + 4 * c, littleEndian(std::uint32_t{13})}};
         }},
    };
}

class ChannelEdits : public ::testing::TestWithParam<std::size_t> {};

INSTANTIATE_TEST_SUITE_P(, ChannelEdits, ::testing::Range<std::size_t>(0, 8));

TEST_P(ChannelEdits, WriteTheirChannelOfRecordAndImageAndRaiseAPendingUpdate) {
    std::mt19937_64 random(GetParam());
    const Bytes store = randomStore(random);
    Tuning tuning;
    tuning.state.setSelectionMask(0x2A);  // of no meaning here
    for (const ChannelEdit& edit : channelEdits()) {
        SCOPED_TRACE(edit.name);
        tuning.load(store, 2);
        const std::size_t base = 2 * setSize;
        Bytes expectedStore = tuning.store();
        Bytes expectedImage = tuning.image();
        Patches patches = edit.record(GetParam());
        for (Patch& patch : patches) {
            patch.offset += base;
        }
        applyPatches(expectedStore, patches);
        applyPatches(expectedImage, edit.image(GetParam(), expectedStore, base));
        edit.run(tuning.state, {static_cast<std::uint8_t>(GetParam())});
        EXPECT_SAME_BYTES(tuning.store(), expectedStore);
        EXPECT_SAME_BYTES(tuning.image(), expectedImage);
        EXPECT_TRUE(tuning.state.updatePending());
        EXPECT_TRUE(tuning.display.curves.empty()) << "shapes no filter";
        EXPECT_TRUE(tuning.lock.asked.empty());
    }
}

TEST(ChannelEdit, OfAChannelThatDoesNotExistChangesNothing) {
    Tuning tuning;
    const Bytes store = tuning.store();
    const Bytes image = tuning.image();
    for (const std::uint8_t channel : {std::uint8_t{8}, std::uint8_t{9}, std::uint8_t{255}}) {
        for (const ChannelEdit& edit : channelEdits()) {
            edit.run(tuning.state, {channel});
        }
    }
    EXPECT_SAME_BYTES(tuning.store(), store);
    EXPECT_SAME_BYTES(tuning.image(), image);
}

TEST(ChannelEdit, OfASourceTouchesTheCurrentSetAlone) {
    Tuning tuning;
    tuning.state.selectSet(4);
    tuning.state.setRouterSource({3}, 9);
    for (std::size_t set = 0; set < 5; ++set) {
        EXPECT_EQ(tuning.store()[setSize * set + 1568 + 3], set == 4 ? 9 : 0);
    }
}

TEST(ChannelEdit, OfGroupTermsAddsToTheChannelsOwn) {
    Tuning tuning;
    tuning.state.setVolume(18.0F, true);
    tuning.state.setGroupGain({7}, 1.0F);
    EXPECT_EQ(readAt<std::uint32_t>(tuning.image(), 36 + 360 * 7 + 4), 0x07F17AF4U);
    tuning.state.setGroupGain({7}, -18.0F);
    EXPECT_EQ(readAt<std::uint32_t>(tuning.image(), 36 + 360 * 7 + 4), 0x01000000U);
    tuning.state.setDelay(0.1F, true);
    tuning.state.setGroupDelay({7}, 0.9F);
    EXPECT_EQ(readAt<std::uint32_t>(tuning.image(), 36 + 360 * 7 + 12), 49U) << "in double precision";
}

TEST(ChannelEdit, KeepsTenthsOfGroupTermsAsSinglesTruncateThem) {
    Tuning tuning;
    const auto gainTenths = [&](float value) {
        tuning.state.setGroupGain({0}, value);
        return readAt<std::int32_t>(tuning.image(), 3304);
    };
    EXPECT_EQ(gainTenths(2.3F), 23);
    EXPECT_EQ(gainTenths(-2.3F), -23);
    EXPECT_EQ(gainTenths(0.7F), 7);
    EXPECT_EQ(gainTenths(4.7F), 47);
    EXPECT_EQ(gainTenths(-0.05F), 0);
    EXPECT_EQ(gainTenths(1.99F), 19);
    EXPECT_EQ(gainTenths(std::numeric_limits<float>::quiet_NaN()), 0);
    EXPECT_EQ(gainTenths(std::numeric_limits<float>::infinity()), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(gainTenths(-std::numeric_limits<float>::infinity()), std::numeric_limits<std::int32_t>::min());
    const auto delayTenths = [&](float value) {
        tuning.state.setGroupDelay({0}, value);
        return readAt<std::uint32_t>(tuning.image(), 3336);
    };
    EXPECT_EQ(delayTenths(2.3F), 23U);
    EXPECT_EQ(delayTenths(-1.0F), 0U);
    EXPECT_EQ(delayTenths(std::numeric_limits<float>::quiet_NaN()), 0U);
    EXPECT_EQ(delayTenths(1e20F), std::numeric_limits<std::uint32_t>::max());
}

TEST(ChannelEdit, OfTheGroupSliderAtPositionZeroIsRecordChannelTwo) {
    Tuning tuning;
    tuning.state.setGroupGain({groupSliderMap[0]}, 5.0F);
    EXPECT_EQ(readAt<float>(tuning.store(), 224 + 168 * 2 + 144), 5.0F);
    EXPECT_EQ(readAt<std::int32_t>(tuning.image(), 3304 + 4 * 2), 50);
}

}  // namespace
}  // namespace tessavo::test
