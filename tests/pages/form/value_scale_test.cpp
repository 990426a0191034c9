#include "pages/form/value_scale.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace tessavo::test {
namespace {

TEST(Attenuation, ReadsInTenthsBelowItsTopAndAsSilenceAtTheBottom) {
    const ValueScale scale = sliderScale(FieldId::decoderGain, Qt::Vertical);
    EXPECT_EQ(scale.minimum, -300);
    EXPECT_EQ(scale.maximum, 0);
    EXPECT_EQ(textAt(scale, 0), QStringLiteral("-Inf."));
    EXPECT_EQ(textAt(scale, -1), QStringLiteral("-29.9"));
    EXPECT_EQ(textAt(scale, -255), QStringLiteral("-4.5"));
    EXPECT_EQ(textAt(scale, -300), QStringLiteral("0.0"));
}

TEST(Attenuation, TakesEveryTextAsALevel) {
    const ValueScale scale = sliderScale(FieldId::decoderGain, Qt::Vertical);
    EXPECT_EQ(typedPosition(scale, QStringLiteral("-Inf."), -77), 0);
    EXPECT_EQ(typedPosition(scale, QStringLiteral("-inf."), -77), 0);
    EXPECT_EQ(typedPosition(scale, QStringLiteral(" -inf. "), -77), 0);
    EXPECT_EQ(typedPosition(scale, QStringLiteral("-30"), -77), 0);
    EXPECT_EQ(typedPosition(scale, QStringLiteral("-1000"), -77), 0);
    EXPECT_EQ(typedPosition(scale, QStringLiteral("-29.99"), -77), -1);
    EXPECT_EQ(typedPosition(scale, QStringLiteral("-4,5"), -77), -255);
    EXPECT_EQ(typedPosition(scale, QStringLiteral("3"), -77), -300);
    // Not one of the two ways to write silence, and no number: the level stays.
    for (const char* text : {"-INF.", "-inf", "", "-", "loud", "x3"}) {
        EXPECT_EQ(typedPosition(scale, QString::fromLatin1(text), -77), -77) << text;
    }
}

TEST(Attenuation, ABeginningIsNotTakenForTheLoudestLevel) {
    const ValueScale scale = sliderScale(FieldId::decoderGain, Qt::Vertical);
    for (const char* text : {"", "-", "-I", "-Inf", "-in", "loud"}) {
        EXPECT_FALSE(readTyped(scale, QString::fromLatin1(text)).isThere) << text;
    }
    for (const char* text : {"-Inf.", "-inf.", "0", "-3", "-3.", "-.5"}) {
        EXPECT_TRUE(readTyped(scale, QString::fromLatin1(text)).isThere) << text;
    }
}

TEST(TypedNumber, EveryTenthIsReadExactly) {
    for (int tenths = -300000; tenths <= 300000; ++tenths) {
        const int whole = std::abs(tenths) / 10;
        const QString text = QStringLiteral("%1%2,%3")
                                 .arg(tenths < 0 ? QStringLiteral("-") : QString())
                                 .arg(whole)
                                 .arg(std::abs(tenths) % 10);
        EXPECT_EQ(readTenths(text), tenths);
    }
    EXPECT_EQ(readTenths(QStringLiteral(" 7. ")), 70);
    EXPECT_EQ(readTenths(QStringLiteral("-.5 dB")), -5);
    EXPECT_EQ(readTenths(QStringLiteral("1.2.3")), 12);
    EXPECT_EQ(readTenths(QStringLiteral("5-3")), 50);
    EXPECT_DOUBLE_EQ(readTenths(QStringLiteral("3,27")), 32.7);
    for (const char* text : {"", "-", ".", "+5", "--5", "inf", "nan", "-inf", "e5", "dB 5"}) {
        EXPECT_EQ(readTenths(QString::fromLatin1(text)), 0) << text;
    }
    EXPECT_EQ(readTenths(QStringLiteral("1e5")), 10) << "no exponents";
    const QString manyDigits(400, QLatin1Char('9'));
    EXPECT_EQ(readTenths(manyDigits), 1e15);
    EXPECT_EQ(readTenths(QLatin1Char('-') + manyDigits), -1e15);
}

TEST(TypedNumber, AFrequencyMayHaveItsUnit) {
    const ValueScale scale = sliderScale(FieldId::crossoverFrequency, Qt::Horizontal);
    for (const auto& [text, hertz] : {std::pair{"3.2k", 3200},
                                      {"3k2", 3200},
                                      {"3,2 kHz", 3200},
                                      {"3200 Hz", 3200},
                                      {"3200Hz", 3200},
                                      {"3200", 3200},
                                      {"3K2", 3200},
                                      {" 3.2 k ", 3200},
                                      {"3.255k", 3255},
                                      {"3k25", 3250},
                                      {"3k2559", 3255},
                                      {"16k", 16000},
                                      {"3k2 hz", 3200},
                                      {".5k", 500},
                                      {"0k5", 500},
                                      {"5.k", 5000},
                                      {"440.9 Hz", 440},
                                      {"440,9", 440}}) {
        const TypedNumber typed = readTyped(scale, QString::fromLatin1(text));
        EXPECT_EQ(typed.position, hertz) << text;
        EXPECT_TRUE(typed.isThere && typed.isWhole && !typed.isClamped) << text;
    }
    // Anything else is read as ever: the number that the text begins with.
    for (const auto& [text, hertz] : {std::pair{"300kg", 300},
                                      {"3200 Hertz", 3200},
                                      {"320.5k5", 320},
                                      {"400 k2", 400},
                                      {"1e3", 20},
                                      {"5 00", 20},
                                      {"k5", 20},
                                      {"Hz", 20},
                                      {"200kk", 200}}) {
        const TypedNumber typed = readTyped(scale, QString::fromLatin1(text));
        EXPECT_EQ(typed.position, hertz) << text;
        EXPECT_FALSE(typed.isWhole) << text;
    }
    EXPECT_TRUE(readTyped(scale, QStringLiteral("21k")).isClamped);
    EXPECT_TRUE(readTyped(scale, QStringLiteral("-3k")).isClamped);
}

TEST(TypedNumber, OnlyFrequenciesHaveUnits) {
    for (const FieldId field :
         {FieldId::bandGain, FieldId::bandQ, FieldId::turnOffDelay, FieldId::limiterAttack}) {
        const ValueScale scale = sliderScale(field, Qt::Horizontal);
        for (const char* text : {"4k", "4 Hz", "4 dB", "4 ms"}) {
            const TypedNumber typed = readTyped(scale, QString::fromLatin1(text));
            EXPECT_EQ(typed.position, 4 * scale.stepsPerUnit) << text;
            EXPECT_FALSE(typed.isWhole) << text;
        }
    }
}

TEST(ValueScale, EveryLevelHasOneDecimalAndWholeOnesWholeSteps) {
    for (const Field& field : fieldTable()) {
        if (field.unit == "dB") {
            const ValueScale scale = sliderScale(field.id, Qt::Horizontal);
            EXPECT_EQ(scale.decimals, 1) << field.path;
            EXPECT_EQ(scale.stepsPerUnit, field.decimals == 0 ? 1 : 10) << field.path;
            EXPECT_TRUE(textAt(scale, scale.maximum).contains(QLatin1Char('.'))) << field.path;
        }
    }
}

TEST(ValueScale, OnlyTheDecoderGainsAreAttenuations) {
    for (const Field& field : fieldTable()) {
        EXPECT_EQ(sliderScale(field.id, Qt::Vertical).attenuation, field.id == FieldId::decoderGain)
            << field.path;
    }
}

}  // namespace
}  // namespace tessavo::test
