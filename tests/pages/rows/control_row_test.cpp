#include "pages/rows/control_row.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>

#include "pages/rows/audio_router_rows.h"
#include "pages/rows/input_eq_rows.h"
#include "pages/rows/output_eq_rows.h"
#include "pages/rows/output_group_rows.h"

namespace tessavo::test {
namespace {

std::vector<std::string> wordsOf(const ControlRow& row) {
    std::vector<std::string> words;
    for (const ControlEntry& entry : entriesOf(row)) {
        words.push_back(std::to_string(entry.code) + " " + std::string(entry.word));
    }
    return words;
}

TEST(ControlRows, AListHasTheWordsOfItsFieldInTheOrderOfTheRow) {
    using testing::ElementsAre;
    EXPECT_THAT(wordsOf({.kind = ControlKind::combo, .field = FieldId::bandType}),
                ElementsAre("0 High Shelf", "1 Low Shelf", "2 Peak"));
    EXPECT_THAT(wordsOf({.kind = ControlKind::combo, .field = FieldId::bandType, .codes = {1, 2, 0}}),
                ElementsAre("1 Low Shelf", "2 Peak", "0 High Shelf"));
    EXPECT_THAT(
        wordsOf({.kind = ControlKind::combo, .field = FieldId::turnOffDelayOn, .entries = {"Off", "On"}}),
        ElementsAre("0 Off", "1 On"));
    EXPECT_THAT(wordsOf({.kind = ControlKind::combo, .entries = {"two", "four"}, .codes = {2, 4}}),
                ElementsAre("2 two", "4 four"));
    EXPECT_THAT(wordsOf({.kind = ControlKind::spin, .field = FieldId::surroundMode}), ElementsAre())
        << "a number is shown as a number";
}

TEST(ControlRows, TheInnermostGroupBeforeARowIsAroundIt) {
    const ControlRows rows{
        {.kind = ControlKind::group, .caption = "card", .bounds = {0, 0, 100, 100}},
        {.kind = ControlKind::group, .caption = "inset", .bounds = {10, 10, 50, 50}},
        {.kind = ControlKind::check, .bounds = {20, 20, 10, 10}},
        {.kind = ControlKind::check, .bounds = {55, 20, 10, 10}},
        {.kind = ControlKind::check, .bounds = {95, 20, 10, 10}},
        {.kind = ControlKind::group, .caption = "unseen", .bounds = {0, 0, 100, 100}, .isHidden = true},
        {.kind = ControlKind::check},
        {.kind = ControlKind::check, .bounds = {70, 70, 10, 10}}};
    EXPECT_EQ(groupAround(rows, rows[0]), nullptr);
    EXPECT_EQ(groupAround(rows, rows[1]), &rows[0]);
    EXPECT_EQ(groupAround(rows, rows[2]), &rows[1]);
    EXPECT_EQ(groupAround(rows, rows[3]), &rows[0]) << "not wholly in the inset";
    EXPECT_EQ(groupAround(rows, rows[4]), nullptr);
    EXPECT_EQ(groupAround(rows, rows[6]), &rows[5]) << "without a place of its own";
    EXPECT_EQ(groupAround(rows, rows[7]), &rows[0]) << "nothing that is seen stands in what is hidden";
}

TEST(ControlRows, AValueTakesTheColourOfItsUnit) {
    const std::map<FieldId, Colour> expected{{FieldId::compressorCrossover, theme::frequency},
                                             {FieldId::turnOffDelay, theme::quality},
                                             {FieldId::bandQ, theme::quality},
                                             {FieldId::preampGain, theme::level},
                                             {FieldId::decoderGain, theme::level},
                                             {FieldId::expanderFactor, theme::level}};
    for (const auto& [field, colour] : expected) {
        EXPECT_EQ(valueColour({.kind = ControlKind::slider, .field = field}), colour);
        EXPECT_EQ(valueColour({.kind = ControlKind::slider, .field = field, .colour = 7}), 7U);
    }
}

TEST(ControlRows, EveryFieldOfAPageStandsOnceForEachOfItsElements) {
    for (const ControlRows* page :
         {&inputEqRows(), &audioRouterRows(), &outputEqRows(), &outputGroupRows()}) {
        // The output equalizer shows one channel at a time.
        const bool isOfOneChannel = page == &outputEqRows();
        std::map<FieldId, std::set<std::size_t>> elements;
        for (const ControlRow& row : *page) {
            if (row.field) {
                EXPECT_TRUE(elements[*row.field].insert(row.element).second) << row.identifier;
                EXPECT_EQ(findRow(*page, row.identifier), &row);
                EXPECT_NE(row.manual.effect.empty(), !row.isHidden)
                    << row.identifier << " is told in the manual where a person sees it";
            }
        }
        for (const auto& [field, seen] : elements) {
            const Field& described = fieldOf(field);
            const std::size_t count = isOfOneChannel ? described.inner.count : described.outer.count;
            EXPECT_EQ(seen.size(), count) << described.path;
            EXPECT_EQ(*seen.rbegin(), count - 1) << described.path;
        }
    }
}

}  // namespace
}  // namespace tessavo::test
