#include "filtertext/filter_import.h"

#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numbers>

#include "dsp/filter_methods.h"

namespace tessavo {
namespace {

using testing::IsEmpty;
using testing::Not;

constexpr double butterworth = std::numbers::sqrt2 / 2.0;

/// A line as the readers give it.
void addLine(FilterText& text, FilterLineKind kind, CookbookFilter meaning) {
    FilterLine line;
    line.line = text.lines.size() + 1;
    line.kind = kind;
    line.source = SourceFilter{"any", meaning.frequencyHz, meaning.gainDb, meaning.q};
    line.meaning = meaning;
    SteppedFilter stepped = onDeviceSteps(toDevice(meaning, text.samplingRateHz));
    line.device = stepped.filter;
    line.clamped = stepped.clamped;
    text.lines.push_back(line);
}

void addPeak(FilterText& text, double frequencyHz, double gainDb, double q = 1.0) {
    addLine(text, FilterLineKind::band, {FilterShape::peak, frequencyHz, gainDb, q});
}

void addCrossover(FilterText& text, FilterShape shape, double frequencyHz, int order = 2) {
    addLine(text, FilterLineKind::crossover, {shape, frequencyHz, 0.0, butterworth, order});
}

/// A channel in which no two bands and no two bytes of a band are alike.
OutputChannelParams usedChannel() {
    OutputChannelParams channel;
    for (std::size_t k = 0; k < bandCount; ++k) {
        EqBandParams& band = channel.bands[k];
        band.type = static_cast<std::uint8_t>(k % 3);
        band.spare1 = static_cast<std::uint8_t>(0xA0 + k);
        band.frequencyHz = static_cast<std::uint16_t>(100 * (k + 1));
        band.gainDb = static_cast<float>(k) - 4.0F;
        band.q = 1.0F + static_cast<float>(k);
        band.off = static_cast<std::uint8_t>(k % 2);
        band.spare13 = {1, 2, static_cast<std::uint8_t>(k)};
    }
    channel.crossovers[0] = {0, 0, 20, 2, 0x51};
    channel.crossovers[1] = {0, 1, 20000, 2, 0x52};
    channel.volumeDb = -2.0F;
    channel.groupGainDb = 1.5F;
    channel.delayMs = 3.0F;
    channel.invertPhase = 1;
    return channel;
}

bool sameBytes(const OutputChannelParams& one, const OutputChannelParams& other) {
    return std::memcmp(&one, &other, sizeof one) == 0;
}

TEST(FilterImport, FiltersTakeTheChosenBandsInTheOrderOfTheTextAndTheOthersAreOff) {
    FilterText text;
    addPeak(text, 500, -3);
    text.lines.emplace_back();
    addPeak(text, 200, 6);
    ImportChoice choice;
    choice.bands = {false, true, false, true, true, false, false, false};
    const OutputChannelParams before = usedChannel();
    const ImportPlan plan = planImport(text, before, choice);
    OutputChannelParams expected = before;
    for (EqBandParams& band : expected.bands) {
        band.off = 1;
    }
    const auto fill = [](EqBandParams& band, const FilterLine& line) {
        band.type = 2;
        band.frequencyHz = static_cast<std::uint16_t>(line.device->frequencyHz);
        band.gainDb = static_cast<float>(line.device->gainDb);
        band.q = static_cast<float>(line.device->q);
        band.off = 0;
    };
    fill(expected.bands[1], text.lines[0]);
    fill(expected.bands[3], text.lines[2]);
    EXPECT_TRUE(sameBytes(plan.after, expected));
    ASSERT_EQ(plan.lines.size(), 2U);
    EXPECT_EQ(plan.lines[0].index, 0U);
    EXPECT_EQ(plan.lines[0].band, 1U);
    EXPECT_EQ(plan.lines[1].index, 2U);
    EXPECT_EQ(plan.lines[1].band, 3U);
}

TEST(FilterImport, BandsThatNoFilterTakesStayWhereThatIsChosen) {
    FilterText text;
    addPeak(text, 500, -3);
    ImportChoice choice;
    choice.keepOthers = true;
    const OutputChannelParams before = usedChannel();
    OutputChannelParams after = planImport(text, before, choice).after;
    EXPECT_EQ(after.bands[0].frequencyHz, 500);
    after.bands[0] = before.bands[0];
    EXPECT_TRUE(sameBytes(after, before));
}

TEST(FilterImport, OfMoreFiltersThanBandsThoseThatDoMostAreKeptInTheOrderOfTheText) {
    FilterText text;
    addPeak(text, 100, 1);
    addPeak(text, 200, -9);
    addPeak(text, 300, 3);
    addPeak(text, 400, 6);
    addPeak(text, 500, 6, 20);
    addLine(text, FilterLineKind::off, {FilterShape::lowShelf, 600, 18, 0.7});
    ImportChoice choice;
    choice.bands = {false, false, false, false, false, true, true, true};
    const ImportPlan plan = planImport(text, usedChannel(), choice);
    EXPECT_EQ(plan.after.bands[5].frequencyHz, 200);
    EXPECT_EQ(plan.after.bands[6].frequencyHz, 300);
    EXPECT_EQ(plan.after.bands[7].frequencyHz, 400);
    ASSERT_EQ(plan.lines.size(), 6U);
    for (const std::size_t out : {0U, 4U, 5U}) {
        EXPECT_FALSE(plan.lines[out].band.has_value()) << out;
        EXPECT_THAT(plan.lines[out].reason, Not(IsEmpty())) << out;
    }
    for (const std::size_t in : {1U, 2U, 3U}) {
        EXPECT_TRUE(plan.lines[in].band.has_value()) << in;
        EXPECT_THAT(plan.lines[in].reason, IsEmpty()) << in;
    }
}

TEST(FilterImport, AFilterThatIsOffTakesABandThatIsBypassed) {
    FilterText text;
    addLine(text, FilterLineKind::off, {FilterShape::peak, 3150, -5.5, 3.6});
    addPeak(text, 200, -9);
    const ImportPlan plan = planImport(text, usedChannel());
    EXPECT_EQ(plan.lines[0].band, 0U);
    EXPECT_EQ(plan.after.bands[0].off, 1);
    EXPECT_EQ(plan.after.bands[0].frequencyHz, 3150);
    EXPECT_EQ(plan.lines[1].band, 1U);
    EXPECT_EQ(plan.after.bands[1].off, 0);
}

TEST(FilterImport, LinesWithoutAFilterOfTheTargetTakeNothing) {
    FilterText text;
    for (const FilterLineKind kind :
         {FilterLineKind::none, FilterLineKind::empty, FilterLineKind::unsupported, FilterLineKind::error,
          FilterLineKind::off}) {
        text.lines.emplace_back().kind = kind;
    }
    ImportChoice choice;
    choice.keepOthers = true;
    const ImportPlan plan = planImport(text, usedChannel(), choice);
    EXPECT_THAT(plan.lines, IsEmpty());
    EXPECT_TRUE(sameBytes(plan.after, usedChannel()));
}

TEST(FilterImport, ACrossoverTakesThePlaceOfAnEnabledOneOfItsKindElseAFreeOne) {
    FilterText text;
    addCrossover(text, FilterShape::highPass, 99);
    OutputChannelParams before = usedChannel();
    before.crossovers[0] = {0, 0, 20, 2, 0x51};
    before.crossovers[1] = {1, 0, 80, 4, 0x52};
    ImportPlan plan = planImport(text, before);
    EXPECT_EQ(plan.lines[0].crossover, 1U);
    EXPECT_EQ(plan.after.crossovers[1].frequencyHz, 88);
    EXPECT_EQ(plan.after.crossovers[1].order, 2);
    EXPECT_EQ(plan.after.crossovers[1].spare5, 0x52);
    EXPECT_EQ(plan.after.crossovers[0].enabled, 0);
    before.crossovers[1] = {0, 1, 20000, 2, 0x52};
    plan = planImport(text, before);
    EXPECT_EQ(plan.lines[0].crossover, 0U);
    EXPECT_EQ(plan.after.crossovers[0].enabled, 1);
    before.crossovers[0] = {1, 1, 20000, 2, 0x51};
    plan = planImport(text, before);
    EXPECT_EQ(plan.lines[0].crossover, 1U);
    EXPECT_EQ(plan.after.crossovers[1].kind, 0);
    before.crossovers[1] = {1, 1, 5000, 2, 0x52};
    plan = planImport(text, before);
    EXPECT_FALSE(plan.lines[0].crossover.has_value());
    EXPECT_THAT(plan.lines[0].reason, Not(IsEmpty()));
    EXPECT_EQ(std::memcmp(&plan.after.crossovers, &before.crossovers, sizeof before.crossovers), 0);
}

TEST(FilterImport, TwoEqualCrossoversOfSecondOrderAreOneOfFourthOrder) {
    FilterText text;
    addCrossover(text, FilterShape::lowPass, 2000);
    addCrossover(text, FilterShape::highPass, 100);
    addCrossover(text, FilterShape::lowPass, 2000);
    const ImportPlan plan = planImport(text, usedChannel());
    EXPECT_EQ(plan.lines[0].crossover, 1U);
    EXPECT_EQ(plan.lines[2].crossover, 1U);
    EXPECT_EQ(plan.after.crossovers[1].order, 4);
    EXPECT_EQ(plan.after.crossovers[1].frequencyHz, 1782);
    EXPECT_EQ(plan.lines[1].crossover, 0U);
    EXPECT_EQ(plan.after.crossovers[0].order, 2);
    EXPECT_EQ(plan.after.crossovers[0].kind, 0);
}

TEST(FilterImport, TwoEqualCrossoversTakeBothPlacesWhereBothPlayTheirKind) {
    FilterText text;
    addCrossover(text, FilterShape::lowPass, 2000);
    addCrossover(text, FilterShape::highPass, 100);
    addCrossover(text, FilterShape::lowPass, 2000);
    OutputChannelParams before = usedChannel();
    before.crossovers[0] = {1, 1, 500, 4, 0x51};
    before.crossovers[1] = {1, 1, 700, 2, 0x52};
    const ImportPlan plan = planImport(text, before);
    // The second would otherwise play on, and the channel would fall by 6th order.
    EXPECT_EQ(plan.lines[0].crossover, 0U);
    EXPECT_EQ(plan.lines[2].crossover, 1U);
    EXPECT_FALSE(plan.lines[1].crossover.has_value());
    for (const CrossoverParams& crossover : plan.after.crossovers) {
        EXPECT_EQ(crossover.enabled, 1);
        EXPECT_EQ(crossover.kind, 1);
        EXPECT_EQ(crossover.frequencyHz, 1782);
        EXPECT_EQ(crossover.order, 2);
    }
    EXPECT_EQ(plan.after.crossovers[1].spare5, 0x52);
}

TEST(FilterImport, TwoEqualCrossoversStayOneWhereTheOtherPlaceIsWanted) {
    FilterText text;
    addCrossover(text, FilterShape::lowPass, 2000);
    addCrossover(text, FilterShape::lowPass, 2000);
    addCrossover(text, FilterShape::lowPass, 9000);
    OutputChannelParams before = usedChannel();
    before.crossovers[0] = {1, 1, 500, 4, 0x51};
    before.crossovers[1] = {1, 1, 700, 2, 0x52};
    const ImportPlan plan = planImport(text, before);
    EXPECT_EQ(plan.after.crossovers[0].frequencyHz, 1782);
    EXPECT_EQ(plan.after.crossovers[0].order, 4);
    EXPECT_EQ(plan.after.crossovers[1].frequencyHz, 8018);
    EXPECT_EQ(plan.after.crossovers[1].order, 2);
}

TEST(FilterImport, ThePreampGoesIntoTheVolumeOnceAsFarAsItsRangeGoes) {
    const struct {
        float volumeDb;
        double preampDb;
        float afterDb;
        double addedDb;
        double leftDb;
    } cases[] = {
        {-2.0F, -3.5, -5.5F, -3.5, 0.0}, {-2.0F, -6.3, -6.0F, -4.0, -2.3}, {-6.0F, -1.0, -6.0F, 0.0, -1.0},
        {0.0F, 20.0, 18.0F, 18.0, 2.0},  {0.1F, 0.25, 0.4F, 0.3, -0.05},   {30.0F, -1.0, 29.0F, -1.0, 0.0},
        {30.0F, 1.0, 30.0F, 0.0, 1.0},   {-9.0F, 2.0, -7.0F, 2.0, 0.0},
    };
    for (const auto& one : cases) {
        FilterText text;
        text.hasPreamp = true;
        text.preampDb = one.preampDb;
        OutputChannelParams before = usedChannel();
        before.volumeDb = one.volumeDb;
        const ImportPlan plan = planImport(text, before);
        EXPECT_EQ(plan.after.volumeDb, one.afterDb) << one.preampDb;
        EXPECT_NEAR(plan.preampAddedDb, one.addedDb, 1e-9) << one.preampDb;
        EXPECT_NEAR(plan.preampLeftDb, one.leftDb, 1e-9) << one.preampDb;
        EXPECT_EQ(plan.after.groupGainDb, before.groupGainDb);
        ImportChoice without;
        without.withPreamp = false;
        const ImportPlan plain = planImport(text, before, without);
        EXPECT_EQ(plain.after.volumeDb, before.volumeDb);
        EXPECT_EQ(plain.preampAddedDb, 0.0);
        EXPECT_NEAR(plain.preampLeftDb, one.preampDb, 1e-9);
    }
}

TEST(FilterImport, TheDeviationIsThatOfRoundingWithTheExactMethodAndThatOfTheFormsWithAnother) {
    FilterText text;
    addPeak(text, 1000, 6, 2.0);
    addPeak(text, 9000, -12, 1.0);
    addCrossover(text, FilterShape::highPass, 990);
    const ImportPlan plan = planImport(text, usedChannel());
    const FilterMethods methods = makeFilterMethods();
    const ImportDeviation exact = importDeviation(text, plan, *methods[0]).value();
    EXPECT_LT(std::abs(exact.db), 0.1);
    const ImportDeviation matched = importDeviation(text, plan, *methods[1]).value();
    EXPECT_GT(std::abs(matched.db), 0.5);
    EXPECT_GE(matched.hz, 20.0);
    EXPECT_LE(matched.hz, 20000.0);
    FilterText none;
    EXPECT_FALSE(importDeviation(none, planImport(none, usedChannel()), *methods[0]).has_value());
}

TEST(FilterImport, ACrossoverOfFourthOrderFromTwoLinesIsComparedAsBoth) {
    FilterText text;
    addCrossover(text, FilterShape::lowPass, 1980);
    addCrossover(text, FilterShape::lowPass, 1980);
    const FilterMethods methods = makeFilterMethods();
    const ImportPlan plan = planImport(text, usedChannel());
    // 1980 Hz become 1764 Hz without rounding, so that nothing is left but noise.
    EXPECT_LT(std::abs(importDeviation(text, plan, *methods[0]).value().db), 1e-3);
}

}  // namespace
}  // namespace tessavo
