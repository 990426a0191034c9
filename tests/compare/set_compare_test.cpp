#include "compare/set_compare.h"

#include <gtest/gtest.h>

#include "compare/sets.h"
#include "params/set_text.h"

namespace tessavo::test {
namespace {

TEST(SetCompare, EqualSetsHaveNoLineAndAllOfThemWhenAskedFor) {
    std::mt19937_64 random(1);
    const ParameterSet set = randomSet(random);
    EXPECT_TRUE(compareSets(set, set).groups.empty());
    const SetComparison all = compareSets(set, set, ListedElements::all);
    EXPECT_EQ(all.differenceCount(), 0U);
    EXPECT_EQ(all.realDifferenceCount(), 0U);
    EXPECT_TRUE(all.differing().empty());
    // Everything but the record's size and the four copies of a delay, with the two texts.
    EXPECT_EQ(linesOf(all).size(), tableElements().size() - 5 + 2);
    for (const ComparedLine& line : linesOf(all)) {
        EXPECT_EQ(line.left, line.right) << line.name;
    }
    ASSERT_EQ(all.groups.size(), 11U);
}

TEST(SetCompare, GroupsStandInTheOrderOfThePagesWithBothNumbersAndSource) {
    ParameterSet left = freshSet();
    left.routerSource[2] = 1;
    ParameterSet right = freshSet();
    right.routerSource[2] = 9;
    const SetComparison all = compareSets(left, right, ListedElements::all);
    std::vector<std::string> headings;
    std::vector<std::string> numbers;
    for (const CompareGroup& group : all.groups) {
        headings.push_back(group.heading);
        numbers.push_back(group.otherNumber);
    }
    EXPECT_EQ(headings,
              (std::vector<std::string>{"Set", "Input", "Channel 1", "Channel 2", "Channel 3", "Channel 4",
                                        "Channel 5", "Channel 6", "Channel 7", "Channel 8", "Router"}));
    EXPECT_EQ(numbers, (std::vector<std::string>{"", "", "Ch 7", "Ch 5", "Ch 4", "Ch 2", "Ch 8", "Ch 6",
                                                 "Ch 1", "Ch 3", ""}));
    const CompareGroup& seventh = all.groups[8];
    EXPECT_EQ(seventh.channel.value, 2);
    EXPECT_EQ(seventh.leftSource, "FrontLeft");
    EXPECT_EQ(seventh.rightSource, "LeftTotal");
    EXPECT_EQ(all.groups[10].leftSource, "");
    for (std::size_t i = 0; i < channelCount; ++i) {
        EXPECT_EQ(all.groups[10].lines[i].name, "Channel " + std::to_string(i + 1) + " source");
    }
}

TEST(SetCompare, FindsEachElementAloneInItsGroup) {
    const ParameterSet left = freshSet();
    for (const TableElement& element : tableElements()) {
        SCOPED_TRACE(element.name());
        ParameterSet right = left;
        setStoredValue(right, *element.field, element.index,
                       anotherValue(left, *element.field, element.index));
        const SetComparison comparison = compareSets(left, right);
        EXPECT_EQ(comparison.spareBytes, 0U);
        if (element.field->id == FieldId::recordSize) {
            EXPECT_TRUE(comparison.groups.empty());
            continue;
        }
        ASSERT_EQ(comparison.groups.size(), 1U);
        EXPECT_EQ(comparison.groups[0].kind, groupKindOf(element.key()));
        if (comparison.groups[0].kind == CompareGroupKind::channel) {
            EXPECT_EQ(comparison.groups[0].channel.value, element.index.outer);
        }
        ASSERT_EQ(comparison.groups[0].lines.size(), 1U);
        const ComparedLine& line = comparison.groups[0].lines[0];
        EXPECT_TRUE(line.element == element.key());
        EXPECT_TRUE(line.differs);
        EXPECT_NE(line.left, line.right);
        EXPECT_EQ(line.name, shortNameOf(element.key()));
    }
}

TEST(SetCompare, CountsTheCopiesOfADelayWithIt) {
    const ParameterSet left = freshSet();
    ParameterSet right = left;
    right.delaySize1Ms.fill(42);
    const SetComparison written = compareSets(left, right);
    ASSERT_EQ(written.differenceCount(), 1U);
    EXPECT_EQ(linesOf(written)[0].name, "Delay size 1");
    right.delaySize1Ms[0] = left.delaySize1Ms[0];
    EXPECT_EQ(compareSets(left, right).differenceCount(), 4U);
}

TEST(SetCompare, TellsTextsByWhatTheyRead) {
    ParameterSet left = freshSet();
    ParameterSet right = left;
    writeSetText(right.setName, u"H\u00f6ren");
    writeSetText(right.setVersion, u"2.0");
    const auto lines = linesOf(compareSets(left, right));
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].name, "Name");
    EXPECT_EQ(lines[0].left, "Type 1");
    EXPECT_EQ(lines[0].right, "H\u00f6ren");
    EXPECT_TRUE(lines[0].isReal);
    EXPECT_EQ(lines[1].right, "2.0");
    EXPECT_EQ(compareSets(left, right).spareBytes, 0U);

    right = left;
    right.setName[40] = u'x';
    right.setVersion[63] = 0x1234;
    EXPECT_TRUE(compareSets(left, right).groups.empty());
    EXPECT_EQ(compareSets(left, right).spareBytes, 3U);
}

TEST(SetCompare, CountsEveryByteThatBelongsToNoField) {
    const ParameterSet left = freshSet();
    std::vector<bool> isKnown(parameterSetSize);
    for (const TableElement& element : tableElements()) {
        for (std::size_t i = 0; i < widthOf(element.field->type); ++i) {
            isKnown[recordOffsetOf(*element.field, element.index) + i] = true;
        }
    }
    for (std::size_t i = 0; i < parameterSetSize; ++i) {
        Bytes bytes = bytesOf(left);
        bytes[i] ^= 1U;
        const SetComparison comparison = compareSets(left, recordOf<ParameterSet>(bytes));
        const bool isText = i >= 1580 && i < 1836;
        if (!isText) {
            EXPECT_EQ(comparison.spareBytes, isKnown[i] ? 0U : 1U) << i;
        }
        EXPECT_EQ(comparison.differenceCount() + comparison.spareBytes, i < 4 ? 0U : 1U) << i;
    }
}

TEST(SetCompare, ListsAChannelFilterByFilter) {
    const ParameterSet left = freshSet();
    ParameterSet right = left;
    right.channels[0].bands[1].frequencyHz = 640;
    right.channels[0].bands[1].q = 1.8F;
    right.channels[0].bands[4].off = 0;
    right.channels[0].bands[2].frequencyHz = 777;
    right.channels[0].volumeDb = -2.5F;
    right.limiters[0].enabled = 0;
    std::vector<std::string> names;
    for (const ComparedLine& line : linesOf(compareSets(left, right))) {
        names.push_back(line.name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"Filter 2 frequency", "Filter 2 Q", "Filter 3 frequency",
                                               "Filter 5", "Volume", "Limiter"}));
}

}  // namespace
}  // namespace tessavo::test
