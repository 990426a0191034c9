#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <map>

#include "base/number_text.h"
#include "history/element_words.h"
#include "history/step_text.h"
#include "support/harness.h"

// Every field of the table, in every element: a step that changes it alone says so in words of its own.

namespace tessavo::test {
namespace {

std::size_t lengthOf(const std::string& text) {
    return static_cast<std::size_t>(std::ranges::count_if(
        text, [](char letter) { return (static_cast<unsigned char>(letter) & 0xC0U) != 0x80U; }));
}

/// A value that is neither the default nor 0, in its stored form.
double otherValue(const Field& field, FieldIndex index) {
    const double highest = storedFromShown(field, field.maximum);
    const double lowest = storedFromShown(field, field.minimum);
    for (const double value : {lowest, highest}) {
        if (value != storedDefault(field, index)) {
            return value;
        }
    }
    ADD_FAILURE() << field.path << " has one value only";
    return 0;
}

/// What a person reads of the value, as little of it as the field table settles.
std::string expectedValue(const Field& field, double stored) {
    if (field.id == FieldId::decoderGain) {
        return stored == 0 ? "\u2212Inf." : "0.0 dB";
    }
    if (const FieldCode* code = codeOf(field, stored)) {
        return std::string(code->shown);
    }
    if (field.minimum == 0 && field.maximum == 1) {
        return "o";
    }
    const double shown = stored / field.storedPerShown;
    std::string text = fixedText(std::abs(shown), shownDecimals(field));
    if (shown < 0) {
        text.insert(0, "\u2212");
    }
    return field.unit.empty() ? text : text + " " + std::string(field.unit);
}

class FieldTexts : public ::testing::Test {
 protected:
    FieldTexts() { tuning_.state.takeSnapshot(before_); }

    std::string textOf(const Field& field, FieldIndex index, double stored, std::size_t set = 0) {
        TuningSnapshot after = before_;
        setStoredValue(after.store.sets[set], field, index, stored);
        return describeStep(before_, after);
    }

    Tuning tuning_;
    TuningSnapshot before_;
};

TEST_F(FieldTexts, EveryElementOfEveryFieldHasATextOfItsOwnWithItsValue) {
    std::map<std::string, std::string> known;
    for (const Field& field : fieldTable()) {
        if (!field.editable) {
            continue;
        }
        forEachElement(field, [&](FieldIndex index) {
            const double stored = otherValue(field, index);
            const std::string text = textOf(field, index, stored);
            const std::string where = std::string(field.path) + " " + std::to_string(index.outer) + " " +
                                      std::to_string(index.inner);
            EXPECT_TRUE(text.ends_with(expectedValue(field, stored)) || text.ends_with("on") ||
                        text.ends_with("off") || text.ends_with("\u2212Inf. dB"))
                << where << ": " << text;
            EXPECT_EQ(text.find(" -"), std::string::npos) << text;
            EXPECT_LE(lengthOf(text), 60U) << text;
            EXPECT_TRUE(text.front() >= 'A' && text.front() <= 'Z') << text;
            EXPECT_EQ(text.find("[]"), std::string::npos) << text;
            EXPECT_EQ(text.find("  "), std::string::npos) << text;
            const auto [other, isNew] = known.emplace(text, where);
            EXPECT_TRUE(isNew) << where << " and " << other->second << " are both \"" << text << '"';
        });
    }
    EXPECT_GT(known.size(), 500U);
}

TEST_F(FieldTexts, AnotherValueOfAnElementIsAnotherText) {
    for (const Field& field : fieldTable()) {
        forEachElement(field, [&](FieldIndex index) {
            const double low = storedFromShown(field, field.minimum);
            const double high = storedFromShown(field, field.maximum);
            if (low == high) {
                return;
            }
            before_ = {};
            setStoredValue(before_.store.sets[0], field, index, high);
            const std::string toLow = textOf(field, index, low);
            setStoredValue(before_.store.sets[0], field, index, low);
            EXPECT_NE(toLow, textOf(field, index, high)) << field.path;
        });
    }
}

TEST_F(FieldTexts, AnElementOfAnotherSetNamesTheSet) {
    for (const Field& field : fieldTable()) {
        const FieldIndex last{field.outer.count - 1U, field.inner.count - 1U};
        const double stored = field.editable ? otherValue(field, last) : 99;
        EXPECT_EQ(textOf(field, last, stored, 3), "Set 4: " + textOf(field, last, stored)) << field.path;
    }
}

TEST_F(FieldTexts, ValuesThatNobodyCouldSetStayReadable) {
    for (const Field& field : fieldTable()) {
        for (const double stored : {-3e38, -1.0, 5.0, 77.0, 4e9, 3e38, std::nan("")}) {
            TuningSnapshot after = before_;
            setStoredValue(after.store.sets[0], field, {}, stored);
            if (std::memcmp(&after, &before_, sizeof after) == 0) {
                continue;
            }
            const std::string text = describeStep(before_, after);
            EXPECT_FALSE(text.empty());
            EXPECT_LE(lengthOf(text), 60U) << text;
            EXPECT_EQ(text.find(" -"), std::string::npos) << text;
        }
    }
}

TEST(ValueTexts, AreThoseOfThePages) {
    const auto text = [](FieldId field, double stored) { return valueText(fieldOf(field), stored); };
    EXPECT_EQ(text(FieldId::bandGain, -4.5), "\u22124.5 dB");
    EXPECT_EQ(text(FieldId::bandGain, 0), "0.0 dB");
    EXPECT_EQ(text(FieldId::bandGain, -0.0), "0.0 dB");
    EXPECT_EQ(text(FieldId::bandGain, -0.01), "0.0 dB");
    EXPECT_EQ(text(FieldId::bandGain, 1e30), "1e+30 dB");
    EXPECT_EQ(text(FieldId::bandGain, -1e30), "\u22121e+30 dB");
    EXPECT_EQ(text(FieldId::bandFrequency, 1250), "1250 Hz");
    EXPECT_EQ(text(FieldId::bandQ, 0.7F), "0.7");
    EXPECT_EQ(text(FieldId::bandType, 0), "High Shelf");
    EXPECT_EQ(text(FieldId::bandType, 9), "code 9");
    EXPECT_EQ(text(FieldId::bandOff, 0), "on");
    EXPECT_EQ(text(FieldId::bandOff, 1), "off");
    EXPECT_EQ(text(FieldId::bandOff, 2), "code 2");
    EXPECT_EQ(text(FieldId::limiterEnabled, 1), "on");
    EXPECT_EQ(text(FieldId::limiterGain, -65), "\u22126.5 dB");
    EXPECT_EQ(text(FieldId::compressorDisabled, 1), "off");
    EXPECT_EQ(text(FieldId::surroundOff, 0), "on");
    EXPECT_EQ(text(FieldId::invertPhase, 1), "on");
    EXPECT_EQ(text(FieldId::turnOffDelayOn, 1), "on");
    EXPECT_EQ(text(FieldId::decoderGain, 0), "\u2212Inf. dB");
    EXPECT_EQ(text(FieldId::decoderGain, 1), "\u221229.9 dB");
    EXPECT_EQ(text(FieldId::decoderGain, 300), "0.0 dB");
    EXPECT_EQ(text(FieldId::gainGroup, 2), "C");
    EXPECT_EQ(text(FieldId::routerSource, 13), "RearRightTotal");
}

}  // namespace
}  // namespace tessavo::test
