#include "filtertext/filter_words.h"

#include <gtest/gtest.h>

namespace tessavo {
namespace {

FilterLine filterLine(FilterLineKind kind, SourceFilter source, DeviceFilter device) {
    FilterLine line;
    line.kind = kind;
    line.source = std::move(source);
    line.device = device;
    return line;
}

FilterLine band(double frequencyHz, double gainDb, double q, DeviceFilter device) {
    return filterLine(FilterLineKind::band, {"PK", frequencyHz, gainDb, q}, device);
}

TEST(FilterWords, WhatRoundsToItselfIsTaken) {
    const FilterLine line = band(90.2, 3.46, 0.71, {FilterShape::lowShelf, 90, 3.5, 0.7});
    EXPECT_EQ(verdictOf(line), Verdict::taken);
    EXPECT_EQ(verdictText(line), "taken");
}

TEST(FilterWords, EveryConvertedValueIsToldFromAndTo) {
    const FilterLine q = band(170, -6, 2, {FilterShape::peak, 170, -6, 2.8});
    EXPECT_EQ(verdictOf(q), Verdict::converted);
    EXPECT_EQ(verdictText(q), "converted: Q 2.00 -> 2.8");
    const FilterLine rounded = band(641.5, -2.5, 1.4, {FilterShape::peak, 642, -2.5, 1.6});
    EXPECT_EQ(verdictText(rounded), "converted: 642 Hz, Q 1.40 -> 1.6");
    const FilterLine moved = band(90, 12, 0.7, {FilterShape::lowShelf, 64, 12, 0.7});
    EXPECT_EQ(verdictText(moved), "converted: 90 -> 64 Hz");
    FilterLine slope = band(90, 12, 0.7, {FilterShape::lowShelf, 64, 12, 0.7});
    slope.source->q.reset();
    EXPECT_EQ(verdictText(slope), "converted: 90 -> 64 Hz, Q 0.7");
}

TEST(FilterWords, AClampedLineTellsTheValuesOutsideAndInside) {
    FilterLine line = band(1250, 21, 0.9, {FilterShape::peak, 1250, 18, 3.0});
    line.clamped = {FilterValue::gain};
    EXPECT_EQ(verdictOf(line), Verdict::clamped);
    EXPECT_EQ(verdictText(line), "clamped: 21.0 -> 18.0 dB, Q 0.90 -> 3.0");
}

TEST(FilterWords, AValueThatItsRangeBroughtBackToThatOfTheTextIsToldToo) {
    FilterLine line = band(1000, 0.5, 20, {FilterShape::peak, 1000, 0.5, 20});
    line.clamped = {FilterValue::q};
    EXPECT_EQ(verdictText(line), "clamped: Q 20.0");
    FilterLine shelf = band(20, 6, 0.7, {FilterShape::lowShelf, 20, 6, 0.7});
    shelf.clamped = {FilterValue::frequency};
    EXPECT_EQ(verdictText(shelf), "clamped: 20 Hz");
}

TEST(FilterWords, WhatIsOffEmptyNoFilterOrNotPossibleIsToldAsSuch) {
    FilterLine off = band(3150, -5.5, 3.6, {FilterShape::peak, 3150, -5.5, 4.9});
    off.kind = FilterLineKind::off;
    EXPECT_EQ(verdictOf(off), Verdict::off);
    EXPECT_EQ(verdictText(off), "off: taken as a band that is off, Q 4.9");
    off.device.reset();
    off.reason = "a notch; the target has none";
    EXPECT_EQ(verdictText(off), "off: a notch; the target has none");
    FilterLine line;
    EXPECT_EQ(verdictOf(line), Verdict::none);
    EXPECT_EQ(verdictText(line), "no filter in this line");
    line.kind = FilterLineKind::empty;
    EXPECT_EQ(verdictText(line), "empty");
    line.kind = FilterLineKind::error;
    line.reason = "\"12k5\" is not a number";
    EXPECT_EQ(verdictOf(line), Verdict::notPossible);
    EXPECT_EQ(verdictText(line), "not possible: \"12k5\" is not a number");
    line.kind = FilterLineKind::unsupported;
    EXPECT_EQ(verdictOf(line), Verdict::notPossible);
}

TEST(FilterWords, ACrossoverTellsItsFrequencyAndWhatElseThereIsToSay) {
    FilterLine line =
        filterLine(FilterLineKind::crossover, {"LP", 2000.0, {}, {}}, {FilterShape::lowPass, 1782, 0, 0, 2});
    EXPECT_EQ(verdictText(line), "converted: 2000 -> 1782 Hz");
    line.reason = "said besides";
    EXPECT_EQ(verdictText(line), "converted: 2000 -> 1782 Hz; said besides");
}

TEST(FilterWords, TheCountsLeaveOutWhatDoesNotOccur) {
    FilterText text;
    EXPECT_EQ(verdictCounts(text), "0 lines.");
    text.lines.push_back(band(90, 3, 1, {FilterShape::lowShelf, 90, 3, 1}));
    EXPECT_EQ(verdictCounts(text), "1 line: 1 taken.");
    text.lines.emplace_back();
    text.lines.emplace_back().kind = FilterLineKind::empty;
    text.lines.emplace_back().kind = FilterLineKind::error;
    text.lines.emplace_back().kind = FilterLineKind::unsupported;
    text.lines.push_back(band(90, 3, 1, {FilterShape::peak, 90, 3, 1.2}));
    text.lines.back().clamped = {FilterValue::q};
    text.lines.push_back(band(90, 3, 1, {FilterShape::peak, 90, 3, 1.2}));
    text.lines.push_back(band(90, 3, 1, {FilterShape::peak, 90, 3, 1.2}));
    text.lines.back().kind = FilterLineKind::off;
    EXPECT_EQ(verdictCounts(text),
              "8 lines: 1 taken, 1 converted, 1 clamped, 1 off, 1 empty, 2 not possible, 1 no filter.");
}

}  // namespace
}  // namespace tessavo
