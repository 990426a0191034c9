#include <cmath>
#include <gtest/gtest.h>
#include <string>

#include "filtertext/readers.h"
#include "said_lines.h"
#include "text/text_encoding.h"

namespace tessavo {
namespace {

/// A text with a bit of everything.
constexpr std::string_view everything =
    "Filter Settings file\r\nRoom EQ V5,01\r\nPreamp:\t-4,9 dB\r\nChannel: L R\r\n"
    "Filter  1: ON  PK       Fc    50,0 Hz  Gain -10,0 dB  Q  2,50\r\n"
    "Filter  2: OFF Modal    Fc     100H z  Gain   3,0 dB  Q  5,41  T60 target   100 ms\r\n"
    "Filter: ON LS 6dB Fc 1\u00A0067 Hz Gain \u22127,2 dB\r\nFilter 4: ON PK Fc 8.000 Hz Gain 1 dB BW Oct "
    "0,5\r\n"
    "Filter 5: ON None\r\nFilter 6: ON NO Fc 30 Hz\r\nFilter 7: ON HP Fc 30,5 Hz\r\n"
    "Channel: C\r\nFilter 8: ON PK Fc 1.000 Hz Gain 1 dB Q 2\r\n"
    "Number;Enabled;Control;Type;Frequency(Hz);Gain(dB);Q;Shape;Slope_dB/oct\r\n"
    "1;True;Auto;\"PK\";52,00;-7,80;3,760\r\n2;True;Auto;HP;80;;;L-R;24\r\nbiquad1,\r\nb0=0.99,\r\n1.0 0.0 "
    "0.0 0.0 0.0";

/// Reads a text with and without what comes after the reader.
FilterText readBoth(std::string_view bytes) {
    const FilterText whole = readFilterText(bytes);
    for (const FilterLine& line : whole.lines) {
        EXPECT_TRUE(!line.device || line.meaning) << said(line);
    }
    return readTextLines(utf8Of(bytes), {});
}

/// What must hold whatever the text is.
void expectSound(const FilterText& text) {
    EXPECT_TRUE(text.decimalSign == '.' || text.decimalSign == ',');
    EXPECT_TRUE(std::isfinite(text.preampDb));
    EXPECT_TRUE(text.hasPreamp || text.preampDb == 0.0);
    for (const FilterLine& line : text.lines) {
        const bool plays = line.kind == FilterLineKind::band || line.kind == FilterLineKind::crossover;
        EXPECT_TRUE(!plays || (line.source && line.meaning)) << said(line);
        EXPECT_TRUE(line.meaning.has_value() <= (plays || line.kind == FilterLineKind::off)) << said(line);
        EXPECT_EQ(line.kind == FilterLineKind::error, line.column != 0) << said(line);
        EXPECT_TRUE((line.kind != FilterLineKind::error && line.kind != FilterLineKind::unsupported) ||
                    !line.reason.empty())
            << said(line);
        EXPECT_LT(line.reason.size(), 400U);
        EXPECT_EQ(utf8Of(line.reason), line.reason);
        if (line.meaning) {
            EXPECT_TRUE(std::isfinite(line.meaning->frequencyHz) && std::isfinite(line.meaning->gainDb) &&
                        std::isfinite(line.meaning->q))
                << said(line);
            EXPECT_EQ(isBand(line.meaning->shape),
                      line.kind == FilterLineKind::band ||
                          (line.kind == FilterLineKind::off && isBand(line.meaning->shape)));
        }
    }
}

TEST(TextLinesAttack, AGoodTextIsSound) {
    const FilterText text = readBoth(everything);
    expectSound(text);
    EXPECT_EQ(said(text).size(), 14U);
}

TEST(TextLinesAttack, EveryTruncationIsSound) {
    for (std::size_t size = 0; size < everything.size(); ++size) {
        const FilterText text = readBoth(everything.substr(0, size));
        expectSound(text);
        EXPECT_LE(text.lines.size(), linesOf(everything).size());
    }
}

TEST(TextLinesAttack, ATruncatedFilterIsNeverTakenWithoutItsValues) {
    constexpr std::string_view line = "Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2";
    for (std::size_t size = std::string_view("Filter 1").size(); size < line.size(); ++size) {
        const FilterText text = readTextLines(line.substr(0, size), {});
        const bool isStillAnotherType = text.lines.at(0).kind == FilterLineKind::unsupported;
        EXPECT_TRUE(isStillAnotherType || text.lines.at(0).kind == FilterLineKind::error)
            << line.substr(0, size);
    }
}

TEST(TextLinesAttack, EveryFlippedByteIsSound) {
    for (std::size_t at = 0; at < everything.size(); ++at) {
        for (const unsigned flip : {0x01U, 0x02U, 0x04U, 0x08U, 0x10U, 0x20U, 0x40U, 0x80U, 0xFFU}) {
            std::string damaged(everything);
            damaged[at] = static_cast<char>(static_cast<unsigned char>(damaged[at]) ^ flip);
            expectSound(readBoth(damaged));
        }
    }
}

TEST(TextLinesAttack, EveryByteInEveryPlaceOfALineIsSound) {
    constexpr std::string_view line = "Filter: ON LS 6dB Fc 1,5 Hz Gain 7 dB";
    for (std::size_t at = 0; at <= line.size(); ++at) {
        for (int code = 0; code < 256; ++code) {
            std::string damaged(line);
            damaged.insert(at, 1, static_cast<char>(code));
            expectSound(readBoth(damaged));
        }
    }
}

std::string repeated(std::string_view part, std::size_t bytes) {
    std::string text;
    while (text.size() + part.size() <= bytes) {
        text.append(part);
    }
    return text;
}

// Each of these takes minutes where something is read again for every place of a line or every line of a text.
TEST(TextLinesAttack, HugeLinesAreReadInOneGo) {
    constexpr std::size_t size = std::size_t{1} << 17U;
    constexpr std::string_view row = "Number,Enabled,Type,Frequency,Gain,Q\n1,True,PK,";
    for (const std::string_view part :
         {" ",    "1",    "1 ",    "1 000 ", ".",         "1.",   "1.000",    "-",        "e1",
          "Q ",   "Q 1 ", "Gain ", "BW ",    "BW Oct 1 ", "T60 ", "Fc 1 Hz ", "#",        " #",
          "\"",   "\",",  "\"\"",  ",",      ";",         "\t",   ":",        "\xC2\xA0", "\xE2\x88\x92",
          "\x80", "6dB ", "Hz ",   "h z",    "filter",    "L R ", "oct",      "k",        "''"}) {
        const std::string filler = repeated(part, size);
        for (const std::string_view begin :
             {std::string_view("Filter 1: ON PK Fc 100 "), std::string_view("Filter 1: ON LS "),
              std::string_view("Filter "), std::string_view("Preamp: "), std::string_view("Channel: "),
              std::string_view("1 True Auto PK "), row, std::string_view("b0="), std::string_view("")}) {
            expectSound(readBoth(std::string(begin).append(filler)));
        }
    }
}

TEST(TextLinesAttack, LinesOfMegabytesAreReadAndTheirReasonsAreShort) {
    const std::string filler(std::size_t{3} << 20U, '7');
    EXPECT_EQ(
        said(readFilterText(std::string("Filter: ON PK Fc 100 Hz Gain 1 dB Q ").append(filler)).lines.at(0)),
        std::string("error@37 PK 100 1 -: \"").append(40, '7').append("...\" is not a number"));
    const FilterText type = readFilterText(std::string("Filter: ON T").append(filler));
    EXPECT_EQ(type.lines.at(0).reason,
              std::string("\"T").append(39, '7').append("...\" is no type that is known"));
}

TEST(TextLinesAttack, ManyChannelsAndManyLinesAreReadInOneGo) {
    std::string text("Channel: ");
    for (int index = 0; index < 200000; ++index) {
        text.append(std::to_string(index)).append(" ");
    }
    text.append("\nChannel: ").append(repeated("x", std::size_t{1} << 20U)).append("\n");
    text.append(repeated("Filter: ON None\n", std::size_t{1} << 20U));
    const FilterText read = readFilterText(text);
    expectSound(read);
    EXPECT_EQ(read.channels.size(), 200001U);
    EXPECT_EQ(read.channel, "0");
    EXPECT_EQ(read.lines.at(2).reason, std::string("for channel ").append(40, 'x').append("..."));
}

TEST(TextLinesAttack, MoreLinesThanAnyTextHasAreTrouble) {
    const FilterText most = readFilterText(std::string(99999, '\n').append("Filter: ON None"));
    EXPECT_EQ(most.trouble, "");
    EXPECT_EQ(most.lines.size(), 100000U);
    const FilterText more = readFilterText(std::string(100000, '\n').append("Filter: ON None"));
    EXPECT_EQ(more.trouble, "It has more than 100000 lines; filter texts have fewer.");
    EXPECT_EQ(more.troubleLine, 100001U);
    EXPECT_TRUE(more.lines.empty());
}

TEST(TextLinesAttack, MoreFiltersThanAnybodyMeansAreRefusedAtTheFirstThatIsTooMany) {
    std::string text = "Preamp: -1 dB\nFilter: ON NO Fc 50 Hz\n";
    for (std::size_t filter = 0; filter < mostFilters; ++filter) {
        text.append("Filter: ON PK Fc 100 Hz Gain 1 dB Q 1\n");
    }
    EXPECT_EQ(readFilterText(text).trouble, "");
    const FilterText more = readFilterText(text.append("Filter: OFF LP Fc 100 Hz\n"));
    EXPECT_EQ(more.trouble, "There are more than 1000 filters in it; no channel has so many.");
    EXPECT_EQ(more.troubleLine, mostFilters + 3);
    EXPECT_EQ(more.troubleColumn, 1U);
    EXPECT_EQ(more.lines.size(), mostFilters + 3);
}

}  // namespace
}  // namespace tessavo
