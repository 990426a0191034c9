#include "pages/form/input_base.h"

#include <QApplication>
#include <gtest/gtest.h>

#include "controls/bitmap_slider.h"
#include "controls/number_edit.h"
#include "pages/form/input_advanced.h"

namespace tessavo::test {
namespace {

class InputBaseTest : public testing::Test {
 protected:
    void type(const char* text) { edit_.setText(QString::fromUtf8(text)); }
    std::string shown() { return edit_.text().toStdString(); }

    QWidget host_;
    CBitmapSlider slider_{Qt::Vertical, 1, &host_};
    NumberEdit edit_{2, &host_};
    CInputBase input_{slider_, edit_, &host_, -20, 20, 10};
};

TEST_F(InputBaseTest, LimitsCountInStepsAndTheTopIsTheHighest) {
    EXPECT_EQ(input_.lower(), -200);
    EXPECT_EQ(input_.upper(), 200);
    EXPECT_EQ(input_.divisor(), 10);
    EXPECT_EQ(slider_.minimum(), -200);
    EXPECT_EQ(slider_.maximum(), 200);
    EXPECT_EQ(input_.owner(), &host_);
    EXPECT_EQ(&input_.slider(), &slider_);
    EXPECT_EQ(&input_.valueEdit(), &edit_);

    const CInputBase oneSided(slider_, edit_, nullptr, 0, 2, 10);
    EXPECT_EQ(slider_.minimum(), -20);
    EXPECT_EQ(slider_.maximum(), 0);
    EXPECT_EQ(oneSided.owner(), nullptr);
}

TEST_F(InputBaseTest, APositionIsShownNegated) {
    for (const auto& [position, text] :
         {std::pair{0, "0.0"}, {-1, "0.1"}, {1, "-0.1"}, {-33, "3.3"}, {-200, "20.0"}, {200, "-20.0"}}) {
        slider_.setPosition(position);
        input_.showPosition();
        EXPECT_EQ(shown(), text) << position;
    }
}

TEST_F(InputBaseTest, ATypedValueIsTruncatedToTheStepsAndKeepsItsText) {
    for (const auto& [text, position] : {std::pair{"3.27", -32},
                                         {"-3.27", 32},
                                         {"0.09", 0},
                                         {"-0.09", 0},
                                         {"20", -200},
                                         {"-20", 200},
                                         {" 5", -50},
                                         {"+5", -50},
                                         {"1e1", -100},
                                         {"5 dB", -50},
                                         {"7.", -70},
                                         {".5", -5},
                                         {"2,5", -25}}) {
        slider_.setPosition(111);
        type(text);
        input_.applyText();
        EXPECT_EQ(slider_.position(), position) << text;
        EXPECT_EQ(shown(), text);
    }
}

TEST_F(InputBaseTest, EveryTenthThatCanBeTypedIsHit) {
    for (int tenths = -200; tenths <= 200; ++tenths) {
        const QString text = QString::number(tenths / 10.0, 'f', 1);
        edit_.setText(text);
        input_.applyText();
        EXPECT_EQ(slider_.position(), -tenths) << text.toStdString();
    }
}

TEST_F(InputBaseTest, AValueBeyondALimitIsRewritten) {
    for (const auto& [text, position, rewritten] : {std::tuple{"25", -200, "20.0"},
                                                    {"-25", 200, "-20.0"},
                                                    {"20.01", -200, "20.0"},
                                                    {"1e30", -200, "20.0"},
                                                    {"-1e300", 200, "-20.0"},
                                                    {"1e999", -200, "20.0"},
                                                    {"-1e999", 200, "-20.0"},
                                                    {"inf", -200, "20.0"},
                                                    {"-inf", 200, "-20.0"},
                                                    {"9999999999999999", -200, "20.0"}}) {
        slider_.setPosition(0);
        type(text);
        input_.applyText();
        EXPECT_EQ(slider_.position(), position) << text;
        EXPECT_EQ(shown(), rewritten) << text;
    }
}

TEST_F(InputBaseTest, WhatIsNoNumberCountsAsZero) {
    for (const char* text : {"", "-", "abc", "dB 5", "--5", "+-5", ".", "nan", "-nan", "1e-999", "e5", "٣"}) {
        slider_.setPosition(123);
        type(text);
        input_.applyText();
        EXPECT_EQ(slider_.position(), 0) << text;
        EXPECT_EQ(shown(), text);
    }
}

TEST_F(InputBaseTest, ZeroIsClampedToLimitsThatExcludeIt) {
    CInputBase above(slider_, edit_, &host_, 3, 9, 10);
    type("word");
    above.applyText();
    EXPECT_EQ(slider_.position(), -30);
    EXPECT_EQ(shown(), "3.0");
    CInputBase below(slider_, edit_, &host_, -9, -3, 10);
    type("word");
    below.applyText();
    EXPECT_EQ(slider_.position(), 30);
    EXPECT_EQ(shown(), "-3.0");
}

TEST_F(InputBaseTest, TheSlidersOwnRangeHasTheLastWord) {
    slider_.setRange(-50, 40);
    type("19.5");
    input_.applyText();
    EXPECT_EQ(slider_.position(), -50);
    EXPECT_EQ(shown(), "19.5");
    type("-25");
    input_.applyText();
    EXPECT_EQ(slider_.position(), 40);
    EXPECT_EQ(shown(), "-20.0");
}

TEST_F(InputBaseTest, AValueIsShownWithItsSign) {
    for (const auto& [steps, text] : {std::pair{0, "0.0"}, {15, "1.5"}, {-15, "-1.5"}, {12345, "1234.5"}}) {
        input_.showValue(steps);
        EXPECT_EQ(shown(), text);
        EXPECT_EQ(slider_.position(), 0);
    }
}

TEST_F(InputBaseTest, TheSecondTextMeansNothingHere) {
    type("7");
    slider_.setPosition(5);
    CInputBase& base = input_;
    base.applySecondText();
    EXPECT_EQ(slider_.position(), 5);
    EXPECT_EQ(shown(), "7");
}

TEST_F(InputBaseTest, AnotherDivisorCountsOtherSteps) {
    CInputBase halves(slider_, edit_, &host_, -4, 4, 2);
    EXPECT_EQ(slider_.minimum(), -8);
    type("1.9");
    halves.applyText();
    EXPECT_EQ(slider_.position(), -3);
    halves.showPosition();
    EXPECT_EQ(shown(), "1.5");
}

class InputAdvancedTest : public testing::Test {
 protected:
    std::pair<std::string, std::string> shown() {
        return {value_.text().toStdString(), second_.text().toStdString()};
    }
    using Texts = std::pair<std::string, std::string>;

    QWidget host_;
    CBitmapSlider slider_{Qt::Vertical, 1, &host_};
    NumberEdit value_{2, &host_};
    NumberEdit second_{3, &host_};
    CInputAdvanced input_{slider_, value_, second_, &host_, 0, 2, 10};
};

TEST_F(InputAdvancedTest, APositionIsShownInBothBoxes) {
    for (const auto& [position, texts] : {std::pair{0, Texts{"0.0", "0.0"}},
                                          {-1, {"0.1", "3.4"}},
                                          {-4, {"0.4", "13.7"}},
                                          {-10, {"1.0", "34.3"}},
                                          {-20, {"2.0", "68.6"}}}) {
        slider_.setPosition(position);
        input_.showPosition();
        EXPECT_EQ(shown(), texts) << position;
    }
}

TEST_F(InputAdvancedTest, TheSecondBoxIsCalculatedInSinglePrecision) {
    // 182.5 times 34.3 lies just below 6259.75 in double precision and on it in single precision.
    CInputAdvanced wide(slider_, value_, second_, &host_, 0, 200, 10);
    slider_.setPosition(-1825);
    wide.showPosition();
    EXPECT_EQ(shown(), Texts("182.5", "6259.8"));
}

TEST_F(InputAdvancedTest, APositionBelowZeroIsShownWithItsSign) {
    CInputAdvanced both(slider_, value_, second_, &host_, -20, 20, 10);
    slider_.setPosition(10);
    both.showPosition();
    EXPECT_EQ(shown(), Texts("-1.0", "-34.3"));
}

TEST_F(InputAdvancedTest, ATypedValueIsConvertedAsItWasTyped) {
    value_.setText(QStringLiteral("1.27"));
    input_.applyText();
    EXPECT_EQ(slider_.position(), -12);
    EXPECT_EQ(shown(), Texts("1.27", "43.6"));
}

TEST_F(InputAdvancedTest, ATypedValueBeyondALimitIsConvertedAfterItsCorrection) {
    value_.setText(QStringLiteral("7"));
    input_.applyText();
    EXPECT_EQ(slider_.position(), -20);
    EXPECT_EQ(shown(), Texts("2.0", "68.6"));
    value_.setText(QStringLiteral("-1"));
    input_.applyText();
    EXPECT_EQ(slider_.position(), 0);
    EXPECT_EQ(shown(), Texts("0.0", "0.0"));
}

TEST_F(InputAdvancedTest, TheSecondBoxTakesAValueWithoutTheDivisor) {
    input_.showValue(10);
    EXPECT_EQ(shown(), Texts("1.0", "343.0"));
    input_.showValue(-10);
    EXPECT_EQ(shown(), Texts("-1.0", "-343.0"));
}

TEST_F(InputAdvancedTest, ATypedDistanceIsDividedByThirtyFour) {
    value_.setText(QStringLiteral("untouched"));
    for (const auto& [text, position] : {std::pair{"34", -10},
                                         {"34.3", -10},
                                         {"37.3", -10},
                                         {"37.4", -11},
                                         {"33.9", -9},
                                         {"3.3", 0},
                                         {"3.4", -1},
                                         {"68", -20},
                                         {"68.6", -20},
                                         {"68.7", -20},
                                         {"100", -20},
                                         {"1e30", -20},
                                         {"-3", 0},
                                         {"-1e30", 0},
                                         {"word", 0},
                                         {"", 0},
                                         {"17,0", -5}}) {
        slider_.setPosition(-7);
        second_.setText(QString::fromUtf8(text));
        input_.applySecondText();
        EXPECT_EQ(slider_.position(), position) << text;
        EXPECT_EQ(shown(), Texts("untouched", text));
    }
}

TEST_F(InputAdvancedTest, EveryMultipleOfThirtyFourIsHit) {
    for (int tenths = 0; tenths <= 20; ++tenths) {
        second_.setText(QString::number(tenths * 3.4, 'f', 1));
        input_.applySecondText();
        EXPECT_EQ(slider_.position(), -tenths);
    }
}

TEST_F(InputAdvancedTest, IsReachedThroughItsBase) {
    CInputBase& base = input_;
    slider_.setPosition(-10);
    base.showPosition();
    EXPECT_EQ(shown(), Texts("1.0", "34.3"));
    second_.setText(QStringLiteral("68"));
    base.applySecondText();
    EXPECT_EQ(slider_.position(), -20);
    value_.setText(QStringLiteral("0.5"));
    base.applyText();
    EXPECT_EQ(second_.text(), QStringLiteral("17.1"));
    base.showValue(1);
    EXPECT_EQ(shown(), Texts("0.1", "34.3"));
}

}  // namespace
}  // namespace tessavo::test
