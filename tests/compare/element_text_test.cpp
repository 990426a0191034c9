#include "compare/element_text.h"

#include <gtest/gtest.h>
#include <map>
#include <set>

#include "compare/sets.h"

namespace tessavo::test {
namespace {

std::string nameOfElement(FieldId field, FieldIndex index = {}) {
    return shortNameOf({ElementKind::field, field, index});
}

TEST(ElementText, NamesEachElementOnceInItsGroup) {
    std::map<std::pair<CompareGroupKind, std::size_t>, std::set<std::string>> names;
    for (const TableElement& element : tableElements()) {
        const CompareGroupKind kind = groupKindOf(element.key());
        const std::size_t channel = kind == CompareGroupKind::channel ? element.index.outer : 0;
        const std::string name = shortNameOf(element.key());
        EXPECT_TRUE((names[{kind, channel}].insert(name).second)) << name;
        ASSERT_FALSE(name.empty()) << element.name();
        EXPECT_FALSE(name.front() >= 'a' && name.front() <= 'z') << name;
        EXPECT_NE(name.back(), ' ');
    }
    // Eight channels, the input and the router.
    EXPECT_EQ(names.size(), 10U);
}

TEST(ElementText, NamesElementsAsThePagesDo) {
    EXPECT_EQ(nameOfElement(FieldId::bandFrequency, {2, 1}), "Filter 2 frequency");
    EXPECT_EQ(nameOfElement(FieldId::bandQ, {2, 1}), "Filter 2 Q");
    EXPECT_EQ(nameOfElement(FieldId::bandOff, {2, 4}), "Filter 5");
    EXPECT_EQ(nameOfElement(FieldId::crossoverOrder, {2, 0}), "Crossover 1 order");
    EXPECT_EQ(nameOfElement(FieldId::crossoverEnabled, {2, 1}), "Crossover 2");
    EXPECT_EQ(nameOfElement(FieldId::limiterActivateLevel, {2, 0}), "Limiter activate level");
    EXPECT_EQ(nameOfElement(FieldId::limiterEnabled, {2, 0}), "Limiter");
    EXPECT_EQ(nameOfElement(FieldId::volume, {2, 0}), "Volume");
    EXPECT_EQ(nameOfElement(FieldId::delay, {2, 0}), "Delay");
    EXPECT_EQ(nameOfElement(FieldId::groupDelay, {2, 0}), "Group delay");
    EXPECT_EQ(nameOfElement(FieldId::delayGroup, {2, 0}), "Delay group");
    EXPECT_EQ(nameOfElement(FieldId::invertPhase, {2, 0}), "Invert Phase");
    EXPECT_EQ(nameOfElement(FieldId::inputBandGain, {5, 0}), "Equalizer 3K gain");
    EXPECT_EQ(nameOfElement(FieldId::inputBandGain, {1, 0}), "Equalizer 170 gain");
    EXPECT_EQ(nameOfElement(FieldId::toneGain, {0, 0}), "Bass gain");
    EXPECT_EQ(nameOfElement(FieldId::routerSource, {4, 0}), "Channel 4 source");
    EXPECT_EQ(nameOfElement(FieldId::decoderGain, {3, 0}), "Rear to front mix gain");
    EXPECT_EQ(shortNameOf({.kind = ElementKind::name}), "Name");
    EXPECT_EQ(shortNameOf({.kind = ElementKind::version}), "Version");
}

TEST(ElementText, TellsEachTwoValuesApart) {
    std::mt19937_64 random(4);
    for (int round = 0; round < 20; ++round) {
        const ParameterSet left = randomSet(random);
        const ParameterSet right = randomSet(random);
        for (const TableElement& element : tableElements()) {
            const auto [one, other] = elementTexts(*element.field, element.index, left, right);
            const bool isSame = storedValue(left, *element.field, element.index) ==
                                storedValue(right, *element.field, element.index);
            EXPECT_EQ(one == other, isSame) << element.name() << " " << one;
        }
    }
}

TEST(ElementText, ShowsWhatADisplayedDecimalHides) {
    ParameterSet left = freshSet();
    ParameterSet right = freshSet();
    const auto texts = [&](float one, float other) {
        left.channels[0].volumeDb = one;
        right.channels[0].volumeDb = other;
        return elementTexts(fieldOf(FieldId::volume), {0, 0}, left, right);
    };
    using Pair = std::pair<std::string, std::string>;
    EXPECT_EQ(texts(-1, -2.5F), Pair("\u22121.0 dB", "\u22122.5 dB"));
    EXPECT_EQ(texts(-1, -1.02F), Pair("\u22121 dB", "\u22121.02 dB"));
    EXPECT_EQ(texts(0, -0.0F), Pair("0 dB", "\u22120 dB"));
    EXPECT_EQ(texts(2, 2), Pair("2.0 dB", "2.0 dB"));
    const float quiet = recordOf<float>(littleEndian(0x7fc00000U));
    const float other = recordOf<float>(littleEndian(0x7fc00001U));
    EXPECT_EQ(texts(quiet, other), Pair("nan dB (0x7FC00000)", "nan dB (0x7FC00001)"));
}

}  // namespace
}  // namespace tessavo::test
