#include "dsp/golden_words.h"

#include <cmath>
#include <complex>
#include <cstdlib>
#include <gtest/gtest.h>
#include <numbers>
#include <string>

namespace tessavo::test {
namespace {

#include "dsp/golden_words.inc"

// One unit in the last place: the tan, exp and pow of two platforms may differ by that much at a word's edge.
// Words that are 0 by a failed conversion, and those behind it, stand exactly.
void expectWords(const Computed& result, bool converted, const Words& golden) {
    EXPECT_EQ(result.converted, converted);
    const Words words = wordsOf(result.section);
    for (std::size_t i = 0; i < words.size(); ++i) {
        const bool behindFailure = !converted && (golden[i] == untouched || golden[i] == 0);
        const std::int64_t distance =
            std::abs(static_cast<std::int64_t>(words[i]) - static_cast<std::int64_t>(golden[i]));
        EXPECT_LE(distance, behindFailure ? 0 : 1)
            << "word " << i << " is " << words[i] << ", not " << golden[i];
    }
}

template <typename Row>
std::string describeBand(const Row& row) {
    return "generator " + std::to_string(static_cast<int>(row.generator)) + " type " +
           std::to_string(row.type) + " at " + std::to_string(row.frequencyHz) + " Hz, " +
           std::to_string(row.gainDb) + " dB, Q " + std::to_string(row.q);
}

template <typename Row>
std::string describeCrossover(const Row& row) {
    return "generator " + std::to_string(static_cast<int>(row.generator)) + " direction " +
           std::to_string(row.kind) + " at " + std::to_string(row.frequencyHz) + " Hz";
}

// |H| from the words, and how far truncation to words (two units each) may have moved it.
void expectMagnitude(const BiquadWords& section, double angle, double golden, const char* where) {
    const std::complex<double> z = std::polar(1.0, -angle);
    const double numeratorUnit = std::ldexp(1.0, -28);
    const double denominatorUnit = std::ldexp(1.0, -30);
    const double numerator = std::abs((static_cast<double>(section.b0) + static_cast<double>(section.b1) * z +
                                       static_cast<double>(section.b2) * z * z) *
                                      numeratorUnit);
    const double denominator =
        std::abs(1.0 + (static_cast<double>(section.a1) * z + static_cast<double>(section.a2) * z * z) *
                           denominatorUnit);
    const double numeratorError = 6 * numeratorUnit;
    const double denominatorError = 4 * denominatorUnit;
    ASSERT_GT(denominator, 100 * denominatorError) << where;
    const double bound = (numeratorError + golden * denominatorError) / (denominator - denominatorError);
    ASSERT_LT(bound, 1e-3 * golden + 1e-6 / denominator) << where << ": the bound says nothing";
    EXPECT_NEAR(numerator / denominator, golden, bound) << where;
}

class GoldenWords : public ::testing::TestWithParam<Generator> {
 protected:
    [[nodiscard]] double bandRate() const { return GetParam() == Generator::bzt ? 49500.0 : 44100.0; }
    std::unique_ptr<IcoefficientGenerator> generator_ = makeGenerator(GetParam());
};

std::string nameOf(const ::testing::TestParamInfo<Generator>& info) {
    constexpr std::array<const char*, 3> names{"BZT", "MZT", "Mixed"};
    return names[static_cast<std::size_t>(info.param)];
}

INSTANTIATE_TEST_SUITE_P(, GoldenWords, ::testing::ValuesIn(allGenerators), nameOf);

TEST_P(GoldenWords, OfEveryBandTypeInBoostAndCut) {
    int rows = 0;
    for (const GoldenBand& row : goldenBands) {
        if (row.generator == GetParam()) {
            SCOPED_TRACE(describeBand(row));
            expectWords(computeBand(*generator_, row.type, row.frequencyHz, row.gainDb, row.q), row.converted,
                        row.words);
            ++rows;
        }
    }
    EXPECT_EQ(rows, 75);
}

TEST_P(GoldenWords, OfBandsAtTheEdgesOfWhatARecordHolds) {
    int rows = 0;
    for (const GoldenEdgeBand& row : goldenEdgeBands) {
        if (row.generator == GetParam()) {
            SCOPED_TRACE(describeBand(row));
            expectWords(computeBand(*generator_, row.type, row.frequencyHz, row.gainDb, row.q), row.converted,
                        row.words);
            ++rows;
        }
    }
    EXPECT_EQ(rows, 93);
}

TEST_P(GoldenWords, OfHighPassAndLowPassCrossovers) {
    int rows = 0;
    for (const GoldenCrossover& row : goldenCrossovers) {
        if (row.generator == GetParam()) {
            SCOPED_TRACE(describeCrossover(row));
            expectWords(computeCrossover(*generator_, row.kind, row.frequencyHz), row.converted, row.words);
            ++rows;
        }
    }
    EXPECT_EQ(rows, 12);
}

TEST_P(GoldenWords, OfCrossoversAtTheEdgesOfTheFrequencyRange) {
    int rows = 0;
    for (const GoldenEdgeCrossover& row : goldenEdgeCrossovers) {
        if (row.generator == GetParam()) {
            SCOPED_TRACE(describeCrossover(row));
            expectWords(computeCrossover(*generator_, row.kind, row.frequencyHz), row.converted, row.words);
            ++rows;
        }
    }
    EXPECT_EQ(rows, 12);
}

TEST_P(GoldenWords, OfBandsGiveTheDesignedGainAtZeroCornerAndHalfRate) {
    int rows = 0;
    for (const GoldenBand& row : goldenBands) {
        if (row.generator == GetParam() && row.converted) {
            SCOPED_TRACE(describeBand(row));
            const BiquadWords section =
                computeBand(*generator_, row.type, row.frequencyHz, row.gainDb, row.q).section;
            expectMagnitude(section, 0.0, row.gainAtZero, "0 Hz");
            expectMagnitude(section, 2 * std::numbers::pi * row.frequencyHz / bandRate(), row.gainAtCorner,
                            "corner");
            expectMagnitude(section, std::numbers::pi, row.gainAtHalfRate, "half the sampling rate");
            ++rows;
        }
    }
    EXPECT_GE(rows, 70);
}

TEST_P(GoldenWords, OfCrossoversGiveTheDesignedGainAtZeroCornerAndHalfRate) {
    int rows = 0;
    for (const GoldenCrossover& row : goldenCrossovers) {
        if (row.generator == GetParam() && row.frequencyHz >= 60) {
            SCOPED_TRACE(describeCrossover(row));
            const BiquadWords section = computeCrossover(*generator_, row.kind, row.frequencyHz).section;
            expectMagnitude(section, 0.0, row.gainAtZero, "0 Hz");
            expectMagnitude(section, 2 * std::numbers::pi * row.frequencyHz / 44100.0, row.gainAtCorner,
                            "corner");
            expectMagnitude(section, std::numbers::pi, row.gainAtHalfRate, "half the sampling rate");
            ++rows;
        }
    }
    EXPECT_EQ(rows, 10);
}

}  // namespace
}  // namespace tessavo::test
