#include "copies/target_sets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "copies/copy_target.h"

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::Optional;

TEST(TargetSets, HaveNamesForPeopleAndForFiles) {
    EXPECT_EQ(targetSetText(1), "set 1");
    EXPECT_EQ(targetSetText(5), "set 5");
    EXPECT_EQ(targetSetText(0), "the default set");
    EXPECT_EQ(targetSetTitle(1), "Set 1");
    EXPECT_EQ(targetSetTitle(5), "Set 5");
    EXPECT_EQ(targetSetTitle(0), "Default Set");
    EXPECT_EQ(targetSetWord(3), "set3");
    EXPECT_EQ(targetSetWord(0), "default");
}

TEST(TargetSets, ListsOfThemComeInTheOrderInWhichTheyAreRead) {
    EXPECT_THAT(targetSetsOf("default"), Optional(ElementsAre(0)));
    EXPECT_THAT(targetSetsOf("5"), Optional(ElementsAre(5)));
    EXPECT_THAT(targetSetsOf("default,4,1"), Optional(ElementsAre(1, 4, 0)));
    EXPECT_THAT(targetSetsOf("5,4,3,2,1,default"), Optional(ElementsAre(1, 2, 3, 4, 5, 0)));
}

TEST(TargetSets, WhatIsNoListOfThemIsRefused) {
    for (const char* list : {"", ",", "1,", ",1", "0", "6", "01", "1,1", "default,default", "Default", "1 ",
                             " 1", "1;2", "-1", "257", "set1", "all"}) {
        EXPECT_EQ(targetSetsOf(list), std::nullopt) << list;
    }
}

TEST(TargetSets, AReplyIsSoundOnlyWithTheDigestOfEveryByteOfItsImage) {
    TargetReply reply{};
    const ImageBytes image = imageOf(3);
    std::ranges::copy(image, reply.begin());
    std::ranges::copy(md5(image), reply.begin() + 3404);
    ASSERT_TRUE(isSound(reply));
    EXPECT_EQ(bytesOf(imageOfReply(reply)), image);
    for (std::size_t i = 0; i < reply.size(); ++i) {
        reply.at(i) ^= 0x10;
        const bool counts = i < 3384 || (i >= 3404 && i < 3420);
        EXPECT_EQ(isSound(reply), !counts) << i;
        reply.at(i) ^= 0x10;
    }
}

TEST(TargetSets, ImagesAreComparedToTheLastByte) {
    const ParameterImage one = parametersOf(imageOf(1));
    EXPECT_TRUE(equalBytes(one, parametersOf(imageOf(1))));
    for (std::size_t i = 0; i < parameterImageSize; ++i) {
        ImageBytes other = imageOf(1);
        other.at(i) ^= 1;
        EXPECT_FALSE(equalBytes(one, parametersOf(other))) << i;
    }
}

}  // namespace
}  // namespace tessavo::test
