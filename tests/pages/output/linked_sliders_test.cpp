#include "pages/output/linked_sliders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace tessavo::test {
namespace {

constexpr LinkedSliders::Groups apart{0, 1, 2, 3, 4, 5, 6, 7};
constexpr std::array<int, LinkedSliders::count> tenths{10, 10, 10, 10, 10, 10, 10, 10};

std::array<int, LinkedSliders::count> positionsOf(const LinkedSliders& sliders) {
    std::array<int, LinkedSliders::count> positions{};
    for (std::size_t i = 0; i < positions.size(); ++i) {
        positions[i] = sliders.position(i);
    }
    return positions;
}

class LinkedSlidersTest : public testing::Test {
 protected:
    LinkedSliders sliders_{-6, 18, tenths};
};

TEST_F(LinkedSlidersTest, OneWithoutCompanyMovesAlone) {
    const LinkedSliders::Move outcome = sliders_.move(3, -25, apart);
    EXPECT_FALSE(outcome.refused);
    EXPECT_THAT(outcome.followed, testing::Each(false));
    EXPECT_THAT(positionsOf(sliders_), testing::ElementsAre(0, 0, 0, -25, 0, 0, 0, 0));
    EXPECT_DOUBLE_EQ(sliders_.value(3), 2.5);
}

TEST_F(LinkedSlidersTest, ThoseOfOneGroupMoveByTheSameAmount) {
    const LinkedSliders::Groups groups{0, 4, 0, 3, 4, 5, 0, 7};
    sliders_.setPosition(0, -10);
    sliders_.setPosition(2, 35);
    const LinkedSliders::Move outcome = sliders_.move(6, -20, groups);
    EXPECT_FALSE(outcome.refused);
    EXPECT_THAT(outcome.followed, testing::ElementsAre(true, false, true, false, false, false, false, false));
    EXPECT_THAT(positionsOf(sliders_), testing::ElementsAre(-30, 0, 15, 0, 0, 0, -20, 0));
}

TEST_F(LinkedSlidersTest, AMoveThatTakesOneOverABoundIsRefusedForAll) {
    const LinkedSliders::Groups groups{0, 0, 0, 3, 4, 5, 6, 7};
    sliders_.setPosition(1, -170);
    const LinkedSliders::Move refused = sliders_.move(0, -20, groups);
    EXPECT_TRUE(refused.refused);
    EXPECT_THAT(refused.followed, testing::Each(false));
    EXPECT_THAT(positionsOf(sliders_), testing::ElementsAre(0, -170, 0, 0, 0, 0, 0, 0));
    EXPECT_FALSE(sliders_.move(0, -10, groups).refused) << "the bound itself is allowed";
    EXPECT_THAT(positionsOf(sliders_), testing::ElementsAre(-10, -180, -10, 0, 0, 0, 0, 0));
    EXPECT_TRUE(sliders_.move(2, -11, groups).refused) << "a tenth more is not";
}

TEST_F(LinkedSlidersTest, TheLowerBoundRefusesToo) {
    const LinkedSliders::Groups groups{2, 1, 2, 3, 4, 5, 6, 7};
    sliders_.setPosition(0, 60);
    EXPECT_TRUE(sliders_.move(2, 1, groups).refused);
    EXPECT_FALSE(sliders_.move(2, -1, groups).refused);
    EXPECT_EQ(sliders_.position(0), 59);
}

TEST_F(LinkedSlidersTest, WithoutASelectionNothingIsLinked) {
    const LinkedSliders::Groups groups{-1, -1, 0, -1, 0, -1, -1, -1};
    EXPECT_THAT(sliders_.move(0, -20, groups).followed, testing::Each(false));
    EXPECT_EQ(sliders_.position(1), 0);
    EXPECT_THAT(sliders_.move(4, -20, groups).followed,
                testing::ElementsAre(false, false, true, false, false, false, false, false));
}

TEST_F(LinkedSlidersTest, AMoveByNothingTakesNobodyAlong) {
    const LinkedSliders::Groups groups{};
    sliders_.setPosition(5, -180);
    const LinkedSliders::Move outcome = sliders_.move(0, 0, groups);
    EXPECT_FALSE(outcome.refused);
    EXPECT_THAT(outcome.followed, testing::Each(false));
}

TEST_F(LinkedSlidersTest, PositionsBeyondTheRangeAreClamped) {
    sliders_.move(0, std::numeric_limits<int>::min(), apart);
    EXPECT_EQ(sliders_.position(0), -180);
    sliders_.move(0, std::numeric_limits<int>::max(), apart);
    EXPECT_EQ(sliders_.position(0), 60);
    sliders_.setPosition(1, -9999);
    EXPECT_EQ(sliders_.position(1), -180);
    EXPECT_DOUBLE_EQ(sliders_.value(1), 18);
}

TEST_F(LinkedSlidersTest, StartsInsideARangeThatExcludesZero) {
    const LinkedSliders above(3, 9, tenths);
    EXPECT_EQ(above.position(0), -30);
    EXPECT_DOUBLE_EQ(above.value(0), 3);
}

TEST_F(LinkedSlidersTest, ValueZeroHasNoSign) {
    sliders_.setPosition(0, 0);
    EXPECT_FALSE(std::signbit(sliders_.value(0)));
}

TEST_F(LinkedSlidersTest, EachSliderHasItsOwnScale) {
    LinkedSliders mixed(-10, 10, {10, 1, 4, 10, 10, 10, 10, 10});
    const LinkedSliders::Groups groups{0, 0, 0, 1, 1, 1, 1, 1};
    mixed.move(0, -20, groups);
    EXPECT_EQ(mixed.position(1), -2);
    EXPECT_EQ(mixed.position(2), -8);
    EXPECT_DOUBLE_EQ(mixed.value(2), 2);
}

TEST_F(LinkedSlidersTest, MovesToAndFroLoseNothing) {
    const LinkedSliders::Groups groups{};
    std::mt19937 random(8);
    for (std::size_t i = 0; i < LinkedSliders::count; ++i) {
        sliders_.setPosition(i, -static_cast<int>(i));
    }
    int refused = 0;
    int accepted = 0;
    for (int turn = 0; turn < 10000; ++turn) {
        const std::size_t slider = random() % LinkedSliders::count;
        const int position = static_cast<int>(random() % 301) - 200;
        (sliders_.move(slider, position, groups).refused ? refused : accepted)++;
        for (std::size_t i = 1; i < LinkedSliders::count; ++i) {
            ASSERT_EQ(sliders_.position(i), sliders_.position(0) - static_cast<int>(i));
            ASSERT_GE(sliders_.position(i), -180);
            ASSERT_LE(sliders_.position(i), 60);
        }
    }
    EXPECT_GT(refused, 100);
    EXPECT_GT(accepted, 1000);
}

}  // namespace
}  // namespace tessavo::test
