#include "filtertext/filter_export.h"

#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>

#include "dsp/filter_kind.h"
#include "filtertext/filter_import.h"

namespace tessavo {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr std::array allForms{ExportForm::text, ExportForm::csv, ExportForm::yaml};

/// A channel as a person could have set it: every value on its step and in its range.
OutputChannelParams randomChannel(std::mt19937& random) {
    const auto below = [&](unsigned count) { return static_cast<unsigned>(random() % count); };
    OutputChannelParams channel;
    for (EqBandParams& band : channel.bands) {
        band.type = static_cast<std::uint8_t>(below(3));
        band.frequencyHz = static_cast<std::uint16_t>(below(4) == 0 ? 20000 - below(50) : 20 + below(19981));
        band.gainDb = static_cast<float>((static_cast<double>(below(361)) - 180.0) / 10.0);
        band.q = static_cast<float>((1.0 + below(200)) / 10.0);
        band.off = static_cast<std::uint8_t>(below(3) == 0 ? 1 : 0);
    }
    std::uint8_t kind = 0;
    for (CrossoverParams& crossover : channel.crossovers) {
        crossover.enabled = static_cast<std::uint8_t>(below(2));
        crossover.kind = kind++;
        crossover.frequencyHz = static_cast<std::uint16_t>(20 + below(19981));
        crossover.order = static_cast<std::uint8_t>(below(2) == 0 ? 2 : 4);
    }
    channel.volumeDb = static_cast<float>((static_cast<double>(below(241)) - 60.0) / 10.0);
    return channel;
}

TEST(FilterExport, WhatIsExportedAndImportedAgainIsTheSameSetOfBandsInEveryForm) {
    std::mt19937 random(20);
    for (int round = 0; round < 300; ++round) {
        const OutputChannelParams channel = randomChannel(random);
        for (const ExportForm form : allForms) {
            const std::string text = exportFilters(channel, form, {"a title", false});
            const FilterText read = readFilterText(text);
            ASSERT_EQ(read.trouble, "") << text;
            OutputChannelParams before = randomChannel(random);
            const OutputChannelParams after = planImport(read, before).after;
            ASSERT_EQ(std::memcmp(&after.bands, &channel.bands, sizeof channel.bands), 0) << text;
            for (std::size_t k = 0; k < crossoverCount; ++k) {
                if (channel.crossovers[k].enabled != 0) {
                    ASSERT_EQ(
                        std::memcmp(&after.crossovers[k], &channel.crossovers[k], sizeof(CrossoverParams)), 0)
                        << text;
                }
            }
            ASSERT_EQ(after.volumeDb, before.volumeDb);
        }
    }
}

TEST(FilterExport, TheVolumeIsAPreampWhereThatIsAskedForAndACommentOtherwise) {
    OutputChannelParams channel;
    channel.volumeDb = -2.5F;
    channel.groupGainDb = 1.0F;
    for (const ExportForm form : allForms) {
        const FilterText with = readFilterText(exportFilters(channel, form, {{}, true}));
        EXPECT_TRUE(with.hasPreamp);
        EXPECT_EQ(with.preampDb, -1.5);
        const FilterText without = readFilterText(exportFilters(channel, form));
        EXPECT_FALSE(without.hasPreamp);
    }
    EXPECT_THAT(exportFilters(channel, ExportForm::text),
                HasSubstr("# The channel's volume of -1.5 dB is not in it.\n"));
}

TEST(FilterExport, ATextSaysWhatTheCookbookMeans) {
    OutputChannelParams channel;
    channel.bands[0] = {2, 0, 1000, 12.0F, 2.0F, 0, {}};
    channel.bands[1] = {1, 0, 100, 0.0F, 0.7F, 1, {}};
    channel.bands[2] = {9, 0, 100, 3.0F, 1.0F, 0, {}};
    for (std::size_t k = 3; k < bandCount; ++k) {
        channel.bands[k] = {2, 0, 0, 0.0F, 0.0F, 0, {}};
    }
    channel.crossovers[0] = {1, 0, 441, 4, 0};
    channel.crossovers[1] = {0, 1, 441, 4, 0};
    // 2 / 10^(12/40) = 1.002374467; 441 * 49500 / 44100 = 495.
    EXPECT_EQ(exportFilters(channel, ExportForm::text, {"Front\nleft", true}),
              "# Front left\n"
              "# In the forms of the audio EQ cookbook, exact at 49500 Hz.\n"
              "Preamp: 0.0 dB\n"
              "Filter 1: ON PK Fc 1000 Hz Gain 12 dB Q 1.002374467\n"
              "Filter 2: OFF LSC Fc 100 Hz Gain 0 dB Q 0.7\n"
              "Filter 3: ON None\n"
              "Filter 4: ON None\n"
              "Filter 5: ON None\n"
              "Filter 6: ON None\n"
              "Filter 7: ON None\n"
              "Filter 8: ON None\n"
              "Filter 9: ON HP Fc 495 Hz\n"
              "Filter 10: ON HP Fc 495 Hz\n");
}

TEST(FilterExport, EveryFormHasItsNameAndItsEnding) {
    EXPECT_EQ(exportFormOf("text"), ExportForm::text);
    EXPECT_EQ(exportFormOf("csv"), ExportForm::csv);
    EXPECT_EQ(exportFormOf("yaml"), ExportForm::yaml);
    EXPECT_FALSE(exportFormOf("TEXT").has_value());
    EXPECT_FALSE(exportFormOf("").has_value());
    EXPECT_EQ(endingOf(ExportForm::text), ".txt");
    EXPECT_EQ(endingOf(ExportForm::csv), ".csv");
    EXPECT_EQ(endingOf(ExportForm::yaml), ".yml");
}

TEST(FilterExport, NoTitleBreaksTheText) {
    const OutputChannelParams channel;
    for (const ExportForm form : {ExportForm::text, ExportForm::yaml}) {
        const std::string text =
            exportFilters(channel, form, {"one\r\nFilter 1: ON PK Fc 100 Hz Gain 3 dB Q 1", false});
        EXPECT_THAT(text, Not(HasSubstr("\r")));
        EXPECT_TRUE(text.starts_with("# one  Filter 1"));
    }
}

}  // namespace
}  // namespace tessavo
