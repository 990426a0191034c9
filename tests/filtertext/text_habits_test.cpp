#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "filter_lines.h"

namespace tessavo {
namespace {

using testing::HasSubstr;

constexpr double butterworthQ = 0.7071067811865476;

TEST(TextHabits, EveryHabitOfALineIsTheSameFilter) {
    for (const char* line : {
             "Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00",
             "Filter 1 : ON PK Fc 100 Hz Gain -3.0 dB Q 2.00",
             "Filter 12: ON  PK       Fc     100 Hz  Gain  -3.0 dB  Q  2.00",
             "filter 12: on pk fc 100hz gain -3db q 2",
             "FILTER 3: ON PEQ FC 100 HZ GAIN -3 DB Q 2",
             "Filter: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00",
             "Filter 1:\tON\tPK\tFc\t100\tHz\tGain\t-3.0\tdB\tQ\t2.00",
             "Filter 1:ON PK Fc 100 Hz Gain -3.0 dB Q 2.00",
             "  Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00  ",
             "Filter 1: ON PK Fc 100H z Gain -3.0 dB Q 2.00",
             "Filter 1: ON PK Fc 100 Gain -3.0 Q 2.00",
             "Filter 1: ON PK Fc 0.1 kHz Gain -3.0 dB Q 2.00",
             "Filter 1: ON PK Fc 100 Hz Gain \u22123.0 dB Q 2.00",
             "Filter\u00a01: "
             "ON\u00a0PK\u00a0Fc\u00a0100\u00a0Hz\u00a0Gain\u00a0-3.0\u00a0dB\u00a0Q\u00a02.00",
             "Filter 1: ON PK Fc +100 Hz Gain -3.0 dB Q +2.00",
             "Filter 1: ON Modal Fc 100 Hz Gain -3.0 dB Q 2.00 T60 target 100 ms",
             "Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00 # the room",
             "Filter 1: ON PK Q 2.00 Gain -3.0 dB Fc 100 Hz",
         }) {
        const FilterLine filter = onlyFilter(line);
        expectMeaning(filter, {FilterShape::peak, 100, -3, 2, 2});
        ASSERT_TRUE(filter.source) << line;
        EXPECT_EQ(filter.source->frequencyHz, 100.0) << line;
        EXPECT_EQ(filter.source->gainDb, -3.0) << line;
        EXPECT_EQ(filter.source->q, 2.0) << line;
        EXPECT_EQ(filter.text, line);
        EXPECT_EQ(filter.line, 1U);
        ASSERT_TRUE(filter.device) << line;
        // 2 * 10^(3/40) = 2.377
        EXPECT_NEAR(filter.device->q, 2.4, 1e-12) << line;
    }
}

TEST(TextHabits, TheTypeIsToldAsItStandsThere) {
    for (const std::string type : {"PK", "pk", "PEQ", "Modal", "MODAL", "LSC", "hsq"}) {
        const FilterLine filter = onlyFilter("Filter 1: ON " + type + " Fc 100 Hz Gain -3.0 dB Q 0.9");
        ASSERT_TRUE(filter.source) << type;
        EXPECT_EQ(filter.source->type, type);
    }
    EXPECT_EQ(onlyFilter("Filter 1: ON LS 12dB Fc 100 Hz Gain -3.0 dB").source.value().type, "LS 12dB");
}

TEST(TextHabits, EveryEndOfALineIsTaken) {
    for (const std::string end : {"\n", "\r\n", "\r\r\n", "\r"}) {
        const std::string line = "Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00";
        std::string lines = "Notes:";
        lines.append(end).append(line).append(end).append(end).append(line).append(end);
        const FilterText text = readFilterText(lines);
        ASSERT_EQ(text.lines.size(), 4U);
        for (const std::size_t at : {1U, 3U}) {
            EXPECT_EQ(text.lines[at].line, at + 1);
            EXPECT_EQ(text.lines[at].text, line);
            expectMeaning(text.lines[at], {FilterShape::peak, 100, -3, 2, 2});
        }
        EXPECT_EQ(text.lines[0].kind, FilterLineKind::none);
        EXPECT_EQ(text.lines[2].kind, FilterLineKind::none);
    }
}

TEST(TextHabits, ABandwidthBecomesItsQ) {
    const double w = 2.0 * std::acos(-1.0) * 5000.0 / 49500.0;
    for (const char* line : {"Filter 1: ON PK Fc 5000 Hz Gain 6 dB BW Oct 0.5",
                             "Filter 1: on pk fc 5000 hz gain +6.0 db bw oct 0.5"}) {
        const FilterLine filter = onlyFilter(line);
        expectMeaning(filter, {FilterShape::peak, 5000, 6,
                               1.0 / (2.0 * std::sinh(std::log(2.0) / 2.0 * 0.5 * w / std::sin(w))), 2});
        EXPECT_EQ(filter.source.value().q, std::nullopt);
    }
}

TEST(TextHabits, ShelvesOfEveryTypeHaveTheirCentreAndQ) {
    const double gain = 7.2;
    const auto corner = [&](double slope) { return std::pow(10.0, gain / (80.0 * slope)); };
    const double a = std::pow(10.0, gain / 40.0);
    const double slopeOfQ = 1.0 / ((1.0 / 0.36 - 2.0) / (a + 1.0 / a) + 1.0);  // of Q 0.6
    const struct {
        const char* type;
        const char* rest;
        bool isLow;
        double factor;
        double q;
    } cases[] = {
        {"LS", "", true, 1.0, shelfQ(0.9, gain)},
        {"HS", "", false, 1.0, shelfQ(0.9, gain)},
        {"LSC", "", true, 1.0, shelfQ(0.9, gain)},
        {"HSC", "", false, 1.0, shelfQ(0.9, gain)},
        {"LS", " Q 0.6", true, corner(slopeOfQ), 0.6},
        {"HS", " Q 0.6", false, 1.0 / corner(slopeOfQ), 0.6},
        {"LSC", " Q 0.6", true, 1.0, 0.6},
        {"HSC", " Q 0.6", false, 1.0, 0.6},
        {"LSQ", " Q 0.6", true, 1.0, 0.6},
        {"HSQ", " Q 0.6", false, 1.0, 0.6},
        {"LS 6dB", "", true, corner(0.5), shelfQ(0.5, gain)},
        {"HS 6dB", "", false, 1.0 / corner(0.5), shelfQ(0.5, gain)},
        {"LS 12dB", "", true, corner(1.0), butterworthQ},
        {"HS 12dB", "", false, 1.0 / corner(1.0), butterworthQ},
        {"LS 12 dB", "", true, corner(1.0), butterworthQ},
        {"LS 9.6 dB", "", true, corner(0.8), shelfQ(0.8, gain)},
        {"LSC 9.6 dB", "", true, 1.0, shelfQ(0.8, gain)},
        {"HSC 9.6 dB", "", false, 1.0, shelfQ(0.8, gain)},
        {"HSC 9.6dB", "", false, 1.0, shelfQ(0.8, gain)},
    };
    for (const auto& [type, rest, isLow, factor, q] : cases) {
        for (const double sign : {1.0, -1.0}) {
            const FilterLine filter = onlyFilter(std::string("Filter 1: ON ") + type + " Fc 500 Hz Gain " +
                                                 (sign < 0 ? "-7.2" : "+7.2") + " dB" + rest);
            const FilterShape shape = isLow ? FilterShape::lowShelf : FilterShape::highShelf;
            expectMeaning(filter, {shape, 500.0 * factor, sign * gain, q, 2});
            ASSERT_TRUE(filter.source);
            EXPECT_EQ(filter.source->frequencyHz, 500.0);
            EXPECT_EQ(filter.source->gainDb, sign * gain);
            EXPECT_EQ(filter.source->q, *rest != '\0' ? std::optional(0.6) : std::nullopt) << type;
        }
    }
}

TEST(TextHabits, CrossoversAreButterworthFilters) {
    const struct {
        const char* line;
        FilterShape shape;
        double q;
        std::optional<double> told;
    } cases[] = {
        {"Filter 3: ON LP Fc 8000 Hz", FilterShape::lowPass, butterworthQ, std::nullopt},
        {"Filter: ON HP Fc 8000 Hz", FilterShape::highPass, butterworthQ, std::nullopt},
        {"Filter: ON LPQ Fc 8000 Hz Q 0.707", FilterShape::lowPass, 0.707, 0.707},
        {"Filter: ON HPQ Fc 8000 Hz Q 0.7071", FilterShape::highPass, 0.7071, 0.7071},
    };
    for (const auto& [line, shape, q, told] : cases) {
        const FilterLine filter = onlyFilter(line);
        expectMeaning(filter, {shape, 8000, 0, q, 2});
        EXPECT_EQ(filter.source.value().q, told);
        EXPECT_EQ(filter.source.value().gainDb, std::nullopt);
        // 8000 * 44100 / 49500 = 7127.27
        EXPECT_EQ(filter.device.value().frequencyHz, 7127.0);
        EXPECT_EQ(filter.device.value().shape, shape);
    }
}

TEST(TextHabits, CrossoversOfAnotherQAreUnsupported) {
    for (const char* line : {"Filter: ON LPQ Fc 8000 Hz Q 0.400", "Filter: ON HPQ Fc 20 Hz Q 0.5"}) {
        const FilterLine filter = onlyFilter(line);
        EXPECT_EQ(filter.kind, FilterLineKind::unsupported);
        EXPECT_THAT(filter.reason, HasSubstr("0.707"));
        EXPECT_FALSE(filter.device);
        EXPECT_EQ(filter.column, 0U);
    }
}

TEST(TextHabits, NoneIsEmptyOnAndOff) {
    for (const char* line :
         {"Filter 3: OFF None", "Filter 10: ON  None   ", "filter: off none", "Filter 3: ON NONE"}) {
        const FilterLine filter = onlyFilter(line);
        EXPECT_EQ(filter.kind, FilterLineKind::empty) << line;
        EXPECT_EQ(filter.column, 0U);
        EXPECT_FALSE(filter.meaning);
        EXPECT_FALSE(filter.device);
    }
}

TEST(TextHabits, AFilterThatIsOffKeepsItsMeaning) {
    for (const char* word : {"OFF", "off", "Off"}) {
        const FilterLine filter =
            onlyFilter(std::string("Filter 3: ") + word + " PK Fc 3150 Hz Gain -5.5 dB Q 3.6");
        EXPECT_EQ(filter.kind, FilterLineKind::off);
        ASSERT_TRUE(filter.meaning && filter.device && filter.source);
        EXPECT_EQ(filter.meaning->frequencyHz, 3150.0);
        EXPECT_EQ(filter.meaning->gainDb, -5.5);
        EXPECT_EQ(filter.meaning->q, 3.6);
        EXPECT_NEAR(filter.device->q, 4.9, 1e-12);
        EXPECT_EQ(filter.reason, "");
    }
    const FilterLine notch = onlyFilter("Filter 3: OFF NO Fc 3150 Hz");
    EXPECT_EQ(notch.kind, FilterLineKind::off);
    EXPECT_FALSE(notch.meaning);
    EXPECT_FALSE(notch.device);
    EXPECT_NE(notch.reason, "");
    EXPECT_EQ(onlyFilter("Filter 3: OFF PK Fc 3150 Hz Gain -5.5 dB").kind, FilterLineKind::error);
    EXPECT_EQ(onlyFilter("Filter 3: OFF PK Fc 3150 Hz Gain x dB Q 2").kind, FilterLineKind::error);
}

TEST(TextHabits, TypesThatTheTargetLacksAreUnsupported) {
    for (const std::string type : {"NO", "AP", "BP"}) {
        const FilterLine filter = onlyFilter("Filter 13: ON " + type + " Fc 800 Hz Q 2.5");
        EXPECT_EQ(filter.kind, FilterLineKind::unsupported) << type;
        EXPECT_NE(filter.reason, "");
        EXPECT_EQ(filter.column, 0U);
        EXPECT_FALSE(filter.device);
        ASSERT_TRUE(filter.source) << type;
        EXPECT_EQ(filter.source->type, type);
        EXPECT_EQ(filter.source->frequencyHz, 800.0);
        EXPECT_EQ(filter.source->q, 2.5);
    }
    for (const char* line : {"Filter: ON IIR Order 2 Coefficients 1 0 0 1 0 0",
                             "Filter: ON XYZ Fc 800 Hz Gain 3 dB Q 2", "Filter 1: ON NO Fc 800 Hz"}) {
        const FilterLine filter = onlyFilter(line);
        EXPECT_EQ(filter.kind, FilterLineKind::unsupported) << line;
        EXPECT_NE(filter.reason, "") << line;
    }
}

TEST(TextHabits, AMissingValueIsAnErrorThatNamesIt) {
    const struct {
        const char* line;
        const char* value;
    } cases[] = {
        {"Filter 1: ON PK Gain -3.0 dB Q 2", "frequency"},
        {"Filter 1: ON PK Fc 100 Hz Q 2", "gain"},
        {"Filter 1: ON PK Fc 100 Hz Gain -3.0 dB", "Q"},
        {"Filter 1: ON LSC Fc 100 Hz Q 0.7", "gain"},
        {"Filter 1: ON HS Gain 3 dB", "frequency"},
        {"Filter 1: ON LP", "frequency"},
        {"Filter 1: ON LPQ Fc 100 Hz", "Q"},
        {"Filter 1: ON HPQ Q 0.7071", "frequency"},
        {"Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q", "Q"},
        {"Filter 1: ON PK Fc Hz Gain -3.0 dB Q 2", "frequency"},
        {"Filter 1: ON PK Fc 100 Hz Gain dB Q 2", "gain"},
        {"Filter 1: OFF PK", "frequency"},
    };
    for (const auto& [line, value] : cases) {
        const FilterLine filter = onlyFilter(line);
        EXPECT_EQ(filter.kind, FilterLineKind::error) << line;
        EXPECT_THAT(filter.reason, HasSubstr(value)) << line;
        EXPECT_GE(filter.column, 14U) << line;
        EXPECT_LE(filter.column, std::string(line).size() + 1) << line;
        EXPECT_FALSE(filter.meaning) << line;
    }
}

TEST(TextHabits, AFilterWithoutATypeIsAnErrorBehindItsSwitch) {
    expectError(onlyFilter("Filter 1: ON"), 13, "type");
    EXPECT_EQ(onlyFilter("Filter 1: OFF").kind, FilterLineKind::error);
    EXPECT_EQ(onlyFilter("Filter 1: ON Fc 100 Hz Gain -3.0 dB Q 2").kind, FilterLineKind::error);
}

TEST(TextHabits, LinesAboutOtherThingsSpeakOfNoFilter) {
    for (const char* line : {"Filter Settings file", "Dated: 16.05.2013 21:56:38", "Notes:Filter test", "",
                             "   ", "# Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2", "Equaliser: Generic",
                             "No measurement", "  # Preamp: -6 dB", "nov 11 16:10:59"}) {
        const FilterText text =
            readFilterText(std::string(line) + "\nFilter: ON PK Fc 100 Hz Gain -3.0 dB Q 2\n");
        ASSERT_EQ(text.lines.size(), 2U) << line;
        EXPECT_EQ(text.lines[0].kind, FilterLineKind::none) << line;
        EXPECT_EQ(text.lines[0].column, 0U) << line;
        EXPECT_FALSE(text.hasPreamp);
        EXPECT_EQ(text.lines[1].kind, FilterLineKind::band) << line;
        EXPECT_EQ(text.trouble, "");
    }
    EXPECT_NE(readFilterText("Filter Settings file\n").trouble, "");
    EXPECT_NE(readFilterText("").trouble, "");
}

TEST(TextHabits, ValuesOutOfEveryRangeAreToldNotGuessed) {
    for (const char* line : {"Filter: ON PK Fc 25000 Hz Gain -3 dB Q 2",
                             "Filter: ON PK Fc 24750 Hz Gain -3 dB Q 2", "Filter: ON LP Fc 30000 Hz"}) {
        const FilterLine filter = onlyFilter(line);
        EXPECT_EQ(filter.kind, FilterLineKind::unsupported) << line;
        EXPECT_THAT(filter.reason, HasSubstr("half the sampling rate")) << line;
    }
    for (const char* line :
         {"Filter: ON PK Fc 0 Hz Gain -3 dB Q 2", "Filter: ON PK Fc -50 Hz Gain -3 dB Q 2",
          "Filter: ON PK Fc 50 Hz Gain -3 dB Q 0", "Filter: ON PK Fc 50 Hz Gain -3 dB Q -1",
          "Filter: ON PK Fc 50 Hz Gain -3 dB BW Oct 0", "Filter: ON LS Fc 50 Hz Gain 6 dB Q 0",
          "Filter: ON LS 0dB Fc 50 Hz Gain 6 dB", "Filter: ON LS 500dB Fc 50 Hz Gain 60 dB",
          "Filter: ON LS Fc 50 Hz Gain 60 dB Q 900", "Filter: ON LS 12dB Fc 50 Hz Gain 1000000 dB"}) {
        const FilterLine filter = onlyFilter(line);
        EXPECT_TRUE(filter.kind == FilterLineKind::unsupported || filter.kind == FilterLineKind::error ||
                    (filter.kind == FilterLineKind::band && !filter.clamped.empty()))
            << line << ": " << kindWord(filter.kind);
        EXPECT_TRUE(filter.kind == FilterLineKind::band || filter.reason != "") << line;
    }
    const FilterLine high = onlyFilter("Filter: ON PK Fc 21000 Hz Gain -30 dB Q 5");
    EXPECT_EQ(high.kind, FilterLineKind::band);
    EXPECT_THAT(high.clamped,
                testing::ElementsAre(FilterValue::frequency, FilterValue::gain, FilterValue::q));
}

}  // namespace
}  // namespace tessavo
