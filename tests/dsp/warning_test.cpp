#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "dsp/golden_words.h"

namespace tessavo::test {
namespace {

constexpr std::uint8_t highShelf = 0;

struct Warned {
    std::vector<std::string> texts;
    std::unique_ptr<IcoefficientGenerator> generator;

    explicit Warned(Generator which)
        : generator(makeGenerator(which, [this](std::string_view text) { texts.emplace_back(text); })) {}

    /// Fails in every generator: frequencies above 32767 are negative, so the poles lie outside the circle.
    bool fail() { return computeCrossover(*generator, 0, 65535).converted; }
};

class Warning : public ::testing::TestWithParam<Generator> {};

INSTANTIATE_TEST_SUITE_P(, Warning, ::testing::ValuesIn(allGenerators));

TEST_P(Warning, HasTheFixedText) {
    Warned warned(GetParam());
    warned.fail();
    ASSERT_EQ(warned.texts.size(), 1U);
    EXPECT_EQ(warned.texts[0],
              "Your filter settings would lead to a instable filter.\r\nPlease change the parameters.");
}

TEST_P(Warning, ComesOnceAndNeverAgain) {
    Warned warned(GetParam());
    EXPECT_TRUE(warned.generator->warnUnstable());
    warned.fail();
    EXPECT_FALSE(warned.generator->warnUnstable());
    for (int i = 0; i < 5; ++i) {
        warned.fail();
    }
    EXPECT_TRUE(computeBand(*warned.generator, 2, 1000, 3.0F, 1.0F).converted);
    warned.fail();
    EXPECT_EQ(warned.texts.size(), 1U);
    EXPECT_FALSE(warned.generator->warnUnstable());
}

TEST_P(Warning, DoesNotComeForSectionsThatConvert) {
    Warned warned(GetParam());
    EXPECT_TRUE(computeBand(*warned.generator, 2, 1000, 6.0F, 1.0F).converted);
    EXPECT_TRUE(computeCrossover(*warned.generator, 1, 1000).converted);
    EXPECT_TRUE(computeBand(*warned.generator, 2, 1000, 6.0F, 0.0F).converted);
    EXPECT_TRUE(warned.texts.empty());
    EXPECT_TRUE(warned.generator->warnUnstable());
}

TEST_P(Warning, AFailureWithoutAnybodyToTellStillCounts) {
    const auto generator = makeGenerator(GetParam());
    EXPECT_FALSE(computeCrossover(*generator, 0, 65535).converted);
    EXPECT_FALSE(generator->warnUnstable());
}

TEST(WarningOfOneGenerator, LeavesTheOthersTheirOwn) {
    Warned bzt(Generator::bzt);
    Warned mzt(Generator::mzt);
    Warned mixed(Generator::mixed);
    bzt.fail();
    EXPECT_TRUE(mzt.generator->warnUnstable());
    EXPECT_TRUE(mixed.generator->warnUnstable());
    mixed.fail();
    EXPECT_TRUE(mzt.generator->warnUnstable());
    mzt.fail();
    EXPECT_EQ(bzt.texts.size() + mzt.texts.size() + mixed.texts.size(), 3U);
}

TEST(WarningOfOneGenerator, IsSharedByBandsAndCrossovers) {
    Warned warned(Generator::bzt);
    EXPECT_FALSE(computeBand(*warned.generator, highShelf, 10000, 24.0F, 1.0F).converted);
    EXPECT_FALSE(computeCrossover(*warned.generator, 0, 65535).converted);
    EXPECT_EQ(warned.texts.size(), 1U);
}

TEST(WarningOfOneGenerator, FollowsANumeratorGainOfEightAndMore) {
    Warned warned(Generator::bzt);
    EXPECT_TRUE(computeBand(*warned.generator, highShelf, 10000, 18.0F, 1.0F).converted);
    const Computed loud = computeBand(*warned.generator, highShelf, 10000, 24.0F, 1.0F);
    EXPECT_FALSE(loud.converted);
    EXPECT_EQ(wordsOf(loud.section), (Words{0, untouched, untouched, untouched, untouched}));
    EXPECT_EQ(warned.texts.size(), 1U);
    EXPECT_FALSE(computeBand(*warned.generator, highShelf, 10000, 24.0F, 1.0F).converted);
    EXPECT_EQ(warned.texts.size(), 1U);
}

TEST(WarningOfOneGenerator, IsNoTestOfThePoles) {
    // A negative Q turns the poles out of the circle; a2 lies between 1 and 2 and passes.
    Warned warned(Generator::mzt);
    const Computed unstable = computeBand(*warned.generator, 2, 8000, 0.0F, -1.0F);
    EXPECT_TRUE(unstable.converted);
    EXPECT_GT(unstable.section.a2, 1 << 30);
    EXPECT_TRUE(warned.texts.empty());
}

}  // namespace
}  // namespace tessavo::test
