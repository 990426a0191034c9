#include "pages/input/value_scale.h"

#include <gtest/gtest.h>

namespace tessavo {
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
    EXPECT_EQ(typedPosition(scale, QStringLiteral("-Inf.")), 0);
    EXPECT_EQ(typedPosition(scale, QStringLiteral("-inf.")), 0);
    EXPECT_EQ(typedPosition(scale, QStringLiteral(" -inf. ")), 0);
    EXPECT_EQ(typedPosition(scale, QStringLiteral("-30")), 0);
    EXPECT_EQ(typedPosition(scale, QStringLiteral("-1000")), 0);
    EXPECT_EQ(typedPosition(scale, QStringLiteral("-29.99")), -1);
    EXPECT_EQ(typedPosition(scale, QStringLiteral("-4,5")), -255);
    EXPECT_EQ(typedPosition(scale, QStringLiteral("3")), -300);
    // Not one of the two ways to write silence.
    EXPECT_EQ(typedPosition(scale, QStringLiteral("-INF.")), -300);
    EXPECT_EQ(typedPosition(scale, QString()), -300);
}

TEST(Attenuation, ABeginningIsNotTakenForTheLoudestLevel) {
    const ValueScale scale = sliderScale(FieldId::decoderGain, Qt::Vertical);
    for (const char* text : {"", "-", "-I", "-Inf", "-in", "loud"}) {
        EXPECT_FALSE(isWholeText(scale, QString::fromLatin1(text))) << text;
    }
    for (const char* text : {"-Inf.", "-inf.", "0", "-3", "-3.", "-.5"}) {
        EXPECT_TRUE(isWholeText(scale, QString::fromLatin1(text))) << text;
    }
    EXPECT_TRUE(isWholeText(sliderScale(FieldId::turnOffDelay, Qt::Horizontal), QString()));
}

TEST(ValueScale, OnlyTheDecoderGainsAreAttenuations) {
    for (const Field& field : fieldTable()) {
        EXPECT_EQ(sliderScale(field.id, Qt::Vertical).attenuation, field.id == FieldId::decoderGain)
            << field.path;
    }
}

}  // namespace
}  // namespace tessavo
