#include <cstddef>
#include <gtest/gtest.h>
#include <optional>
#include <type_traits>

#include "params/channels.h"
#include "params/parameter_image.h"
#include "params/records.h"
#include "params/tuning_state.h"

namespace tessavo::test {
namespace {

// Sizes and offsets are pinned beside the records; these members are not.
static_assert(sizeof(ParameterSet::inputToneBands) == 48 && sizeof(ParameterSet::inputEqBands) == 160 &&
              sizeof(ParameterSet::channels) == 1344 && sizeof(ParameterSet::routerSource) == 8 &&
              sizeof(ParameterSet::setName) == 128 && sizeof(ParameterSet::setVersion) == 128 &&
              sizeof(ParameterSet::decoderGain) == 8 && sizeof(ParameterSet::limiters) == 192);
static_assert(std::is_signed_v<decltype(ParameterSet::preampGainDb)> &&
              std::is_signed_v<decltype(ParameterSet::lineInGainDb)> &&
              std::is_unsigned_v<decltype(ParameterSet::powerampGainDb)> &&
              std::is_unsigned_v<decltype(ParameterSet::suppression)>);

TEST(LastSelected, IsTheLastTickedChannelOfThePagesForEveryMask) {
    for (int mask = 0; mask < 256; ++mask) {
        std::optional<RecordChannel> last;
        for (std::uint8_t position = 0; position < 8; ++position) {
            if ((mask & selectionBit({position})) != 0) {
                last = recordChannelAt({position});
            }
        }
        EXPECT_EQ(lastSelected(static_cast<std::uint8_t>(mask)), last) << mask;
    }
}

TEST(ChannelMap, IsTheOneOfThePages) {
    constexpr std::array<std::uint8_t, 8> expected{7, 3, 0, 4, 1, 5, 2, 6};
    EXPECT_EQ(channelMap, expected);
    for (std::uint8_t p = 0; p < 8; ++p) {
        EXPECT_EQ(recordChannelAt({p}).value, expected[p]);
    }
}

TEST(ChannelMap, PagePositionZeroEditsRecordChannelSevenAndTwoEditsZero) {
    EXPECT_EQ(recordChannelAt({0}).value, 7);
    EXPECT_EQ(recordChannelAt({2}).value, 0);
}

TEST(ChannelMap, OfTheGroupSlidersAndTheCheckBoxes) {
    EXPECT_EQ(groupSliderMap, (std::array<std::uint8_t, 8>{2, 4, 6, 0, 3, 5, 7, 1}));
    EXPECT_EQ(channelCheckBoxMap, (std::array<std::uint8_t, 8>{4, 8, 1, 5, 2, 6, 3, 7}));
}

TEST(SelectionBit, StartsAtTheHighestBit) {
    EXPECT_EQ(selectionBit({0}), 0x80);
    EXPECT_EQ(selectionBit({1}), 0x40);
    EXPECT_EQ(selectionBit({7}), 0x01);
}

TEST(LimiterFieldCodes, AreThoseOfTheOperation) {
    EXPECT_EQ(static_cast<int>(LimiterField::gain), 0);
    EXPECT_EQ(static_cast<int>(LimiterField::activateLevel), 1);
    EXPECT_EQ(static_cast<int>(LimiterField::deactivateLevel), 2);
    EXPECT_EQ(static_cast<int>(LimiterField::attack), 3);
    EXPECT_EQ(static_cast<int>(LimiterField::release), 4);
    EXPECT_EQ(static_cast<int>(LimiterField::enable), 5);
    EXPECT_EQ(static_cast<int>(LimiterField::disable), 6);
    EXPECT_EQ(static_cast<int>(BandValue::gain), 0);
    EXPECT_EQ(static_cast<int>(BandValue::q), 1);
}

}  // namespace
}  // namespace tessavo::test
