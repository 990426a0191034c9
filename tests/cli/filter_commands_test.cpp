#include <locale>

#include "cli/filter_fixture.h"

namespace tessavo::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class FiltersCommand : public FilterTextTest {
 protected:
    [[nodiscard]] Json json(const std::string& file) const {
        const CommandResult result = run({"filters", file, "--json"});
        EXPECT_EQ(result.code, 0) << result.err;
        EXPECT_THAT(result.err, IsEmpty());
        return Json::parse(result.out);
    }
};

/// The members of an object, in the order of the alphabet.
std::vector<std::string> keysOf(const nlohmann::json& object) {
    std::vector<std::string> keys;
    for (const auto& item : object.items()) {
        keys.push_back(item.key());
    }
    return keys;
}

TEST_F(FiltersCommand, PrintsTheShapeThatTheDocumentsTell) {
    const std::string file = writeText("a.txt",
                                       "Preamp: -2.5 dB\n"
                                       "Filter 1: ON PK Fc 100 Hz Gain -8.0 dB Q 2.00\n"
                                       "Filter 2: ON HP Fc 80 Hz\n");
    const CommandResult result = run({"filters", file, "--json"});
    EXPECT_EQ(result.code, 0);
    // By hand: 2 * 10^(8/40) = 3.17, and 80 * 44100 / 49500 = 71.3.
    EXPECT_EQ(
        result.out,
        "{\n  \"preamp_db\": -2.5,\n  \"sample_rate_hz\": 49500,\n  \"decimal\": \".\",\n"
        "  \"channels\": [],\n  \"channel\": null,\n  \"lines\": [\n"
        "    {\"line\": 2, \"kind\": \"band\", \"text\": \"Filter 1: ON PK Fc 100 Hz Gain -8.0 dB Q 2.00\", "
        "\"source\": {\"type\": \"PK\", \"frequency_hz\": 100, \"gain_db\": -8, \"q\": 2}, "
        "\"device\": {\"type\": \"peak\", \"frequency_hz\": 100, \"gain_db\": -8, \"q\": 3.2}, "
        "\"clamped\": [], \"reason\": \"\"},\n"
        "    {\"line\": 3, \"kind\": \"crossover\", \"text\": \"Filter 2: ON HP Fc 80 Hz\", "
        "\"source\": {\"type\": \"HP\", \"frequency_hz\": 80, \"gain_db\": null, \"q\": null}, "
        "\"device\": {\"type\": \"high-pass\", \"frequency_hz\": 71, \"gain_db\": null, \"q\": null, "
        "\"order\": 2}, \"clamped\": [], \"reason\": \"\"}\n  ]\n}\n");
}

/// One line of each kind and of each type of the target, among lines that speak of no filter.
constexpr std::string_view everyKind =
    "Filter settings file\n"                            // 1
    "\n"                                                // 2
    "# Filter 9: ON PK Fc 100 Hz Gain 1 dB Q 1\n"       // 3
    "Preamp: -4.0 dB\n"                                 // 4
    "Filter 1: ON PK Fc 50 Hz Gain 3.0 dB Q 1.00\n"     // 5
    "Filter 2: ON LSC Fc 90 Hz Gain -6.0 dB Q 0.70\n"   // 6
    "Filter 3: ON HSC Fc 9000 Hz Gain 2.0 dB Q 0.70\n"  // 7
    "Filter 4: ON LP Fc 15000 Hz\n"                     // 8
    "Filter 5: ON HPQ Fc 30 Hz Q 0.7071\n"              // 9
    "Filter 6: OFF PK Fc 60 Hz Gain 3.0 dB Q 1.00\n"    // 10
    "Filter 7: ON None\n"                               // 11
    "Filter 8: OFF None\n"                              // 12
    "Filter 9: ON NO Fc 70 Hz\n"                        // 13
    "Filter 10: ON PK Fc 80 Hz Gain 3.0 dB\n"           // 14
    "Filter 11: ON PK Fc 10 Hz Gain 30.0 dB Q 90\n"     // 15
    "Include: other.txt\n"                              // 16
    "Filter 12: ON HP Fc 30 Hz Q 1.2\n"                 // 17
    "Filter 13: ON PK Fc ten Hz Gain 3.0 dB Q 1.00\n"   // 18
    "Filter 14:\n";                                     // 19

TEST_F(FiltersCommand, HasARowForEveryLineThatSpeaksOfAFilter) {
    const Json all = json(writeText("a.txt", everyKind));
    const std::vector<std::pair<int, std::string>> expected{
        {5, "band"},  {6, "band"},         {7, "band"},         {8, "crossover"},    {9, "crossover"},
        {10, "off"},  {11, "empty"},       {12, "empty"},       {13, "unsupported"}, {14, "error"},
        {15, "band"}, {16, "unsupported"}, {17, "unsupported"}, {18, "error"},       {19, "error"}};
    ASSERT_EQ(all["lines"].size(), expected.size());
    for (std::size_t k = 0; k < expected.size(); ++k) {
        const Json& row = all["lines"][k];
        EXPECT_EQ(row["line"], expected[k].first);
        EXPECT_EQ(row["kind"], expected[k].second) << row;
        const bool told = row["kind"] == "unsupported" || row["kind"] == "error";
        EXPECT_EQ(!row["reason"].get<std::string>().empty(), told) << row;
        EXPECT_EQ(row.contains("column"), row["kind"] == "error") << row;
        EXPECT_EQ(row["device"].is_null(), told || row["kind"] == "empty") << row;
    }
    EXPECT_EQ(all["preamp_db"], -4);
}

TEST_F(FiltersCommand, EveryRowHasTheSameMembers) {
    const Json all = json(writeText("a.txt", everyKind));
    EXPECT_EQ(keysOf(all), (std::vector<std::string>{"channel", "channels", "decimal", "lines", "preamp_db",
                                                     "sample_rate_hz"}));
    for (Json row : all["lines"]) {
        row.erase("column");
        EXPECT_EQ(keysOf(row), (std::vector<std::string>{"clamped", "device", "kind", "line", "reason",
                                                         "source", "text"}));
        EXPECT_EQ(keysOf(row["source"]), (std::vector<std::string>{"frequency_hz", "gain_db", "q", "type"}));
        if (!row["device"].is_null()) {
            row["device"].erase("order");
            EXPECT_EQ(keysOf(row["device"]),
                      (std::vector<std::string>{"frequency_hz", "gain_db", "q", "type"}));
        }
        EXPECT_TRUE(row["clamped"].is_array());
    }
    std::vector<std::string> types;
    for (std::size_t k = 0; k < 5; ++k) {
        types.push_back(all["lines"][k]["device"]["type"]);
    }
    EXPECT_EQ(types, (std::vector<std::string>{"peak", "low-shelf", "high-shelf", "low-pass", "high-pass"}));
}

TEST_F(FiltersCommand, NamesTheValuesThatWereClamped) {
    const Json row = json(writeText("a.txt", "Filter 1: ON PK Fc 10 Hz Gain 30.0 dB Q 90\n"))["lines"][0];
    EXPECT_EQ(row["clamped"], (Json{"frequency", "gain", "q"}));
    EXPECT_EQ(row["source"]["gain_db"], 30);
    EXPECT_EQ(row["device"]["frequency_hz"], 20);
    EXPECT_EQ(row["device"]["gain_db"], 18);
    EXPECT_EQ(row["device"]["q"], 20);
    const Json one = json(writeText("b.txt", "Filter 1: ON PK Fc 100 Hz Gain 3.0 dB Q 90\n"))["lines"][0];
    EXPECT_EQ(one["clamped"], Json{"q"});
    // The Q comes from the gain of the text: 1 * 10^(30/40) = 5.6, not 1 * 10^(18/40) = 2.8.
    const Json own = json(writeText("c.txt", "Filter 1: ON PK Fc 100 Hz Gain 30.0 dB Q 1\n"))["lines"][0];
    EXPECT_EQ(own["clamped"], Json{"gain"});
    EXPECT_EQ(own["device"]["q"], 5.6);
}

TEST_F(FiltersCommand, WritesNumbersWithoutExponents) {
    const std::string file = writeText("a.txt",
                                       "Preamp: -0.0000001 dB\n"
                                       "Filter 1: ON PK Fc 0.00000025 Hz Gain 0.0000125 dB Q 0.000001\n"
                                       "Filter 2: ON PK Fc 1e30 Hz Gain 1e-9 dB Q 1\n");
    const CommandResult result = run({"filters", file, "--json"});
    EXPECT_EQ(result.code, 0);
    const Json all = Json::parse(result.out);
    EXPECT_THAT(result.out, HasSubstr("\"preamp_db\": -0.0000001,"));
    EXPECT_THAT(result.out,
                HasSubstr("\"frequency_hz\": 0.00000025, \"gain_db\": 0.0000125, \"q\": 0.000001}"));
    // 10^30 is written out, to the digits that a double has.
    EXPECT_EQ(all["lines"][1]["source"]["frequency_hz"].get<double>(), 1e30);
    // Texts, which are for people, may have exponents.
    const std::size_t source = result.out.rfind("\"source\"");
    const std::string numbers = result.out.substr(source, result.out.rfind("\"reason\"") - source);
    EXPECT_THAT(numbers, HasSubstr("\"frequency_hz\": 1000000000000000"));
    for (const std::string exponent : {"e+", "e-", "E"}) {
        EXPECT_THAT(numbers, Not(HasSubstr(exponent)));
    }
    EXPECT_THAT(numbers, HasSubstr("\"gain_db\": 0.000000001, "));
    // Not rounded: every number reads back as the same double.
    const Json fine = json(writeText("b.txt",
                                     "Filter 1: ON PK Fc 0.00000012345678901234567 Hz Gain "
                                     "0.0000000000000000000012345 dB Q 1\n"));
    EXPECT_EQ(fine["lines"][0]["source"]["frequency_hz"].get<double>(), 1.2345678901234567e-7);
    EXPECT_EQ(fine["lines"][0]["source"]["gain_db"].get<double>(), 1.2345e-21);
}

TEST_F(FiltersCommand, WritesZeroWithoutASign) {
    const std::string file = writeText("a.txt",
                                       "Preamp: -0.0 dB\n"
                                       "Filter 1: ON PK Fc 100 Hz Gain -0.0 dB Q 1\n"
                                       "Filter 2: ON PK Fc 100 Hz Gain -0.04 dB Q 1\n");
    const std::string text = run({"filters", file, "--json"}).out;
    EXPECT_THAT(text, HasSubstr("\"preamp_db\": 0,"));
    EXPECT_THAT(text, Not(HasSubstr("-0,")));
    EXPECT_THAT(run({"filters", file}).out, HasSubstr("Preamp 0 dB. "));
}

TEST_F(FiltersCommand, LetsNoTextSteerTheTerminal) {
    const std::string escape = "\x1b[2J";
    const std::string file = writeText("a.txt", "Channel: L" + escape + "\nFilter 1: ON P" + escape +
                                                    "K Fc 100 Hz Gain 1 dB Q 1\x07\n"
                                                    "Filter 2: ON PK Fc 1" +
                                                    escape +
                                                    "00 Hz Gain 1 dB Q 1\n"
                                                    "Filter 3:\tON\tPK Fc 100 Hz Gain 1\xC2\x9B"
                                                    "2J dB Q 1\n");
    const CommandResult result = run({"filters", file});
    const CommandResult refused = run({"import-filters", file, "--into", fresh("car.eqs"), "--set", "1",
                                       "--channel", "1", "-o", path("b.eqs")});
    EXPECT_EQ(refused.code, 1);
    EXPECT_THAT(refused.err, HasSubstr(":3:"));
    for (const std::string& told : {result.out, result.err, refused.out, refused.err}) {
        for (const std::string steering : {"\x1b", "\x07", "\t", "\xC2\x9B"}) {
            EXPECT_THAT(told, Not(HasSubstr(steering)));
        }
    }
    // A program gets the line as it stands there.
    EXPECT_THAT(Json::parse(run({"filters", file, "--json"}).out)["lines"][1]["text"].get<std::string>(),
                HasSubstr(escape));
}

TEST_F(FiltersCommand, TellsTheDecimalSignAndTheRate) {
    const Json comma = json(writeText("a.txt", "Filter 1: ON PK Fc 91,9 Hz Gain -3,0 dB Q 2,00\n"));
    EXPECT_EQ(comma["decimal"], ",");
    EXPECT_EQ(comma["lines"][0]["source"]["frequency_hz"], 91.9);
    EXPECT_EQ(comma["sample_rate_hz"], 49500);
    const Json yaml = json(writeText("a.yml",
                                     "devices:\n  samplerate: 44100\nfilters:\n  one:\n    type: Biquad\n"
                                     "    parameters: {type: Peaking, freq: 100, gain: 1.5, q: 2}\n"));
    EXPECT_EQ(yaml["decimal"], ".");
    EXPECT_EQ(yaml["sample_rate_hz"], 44100);
    ASSERT_EQ(yaml["lines"].size(), 1U);
    EXPECT_EQ(yaml["lines"][0]["line"], 4);
    EXPECT_EQ(yaml["lines"][0]["source"]["type"], "Peaking");
}

TEST_F(FiltersCommand, ReadsTheChannelThatIsAskedFor) {
    const std::string file =
        writeText("a.txt",
                  "Channel: L\nFilter 1: ON PK Fc 100 Hz Gain 1 dB Q 1\n"
                  "Channel: R\nPreamp: -3 dB\nFilter 1: ON PK Fc 200 Hz Gain 1 dB Q 1\n");
    const Json first = json(file);
    EXPECT_EQ(first["channels"], (Json{"L", "R"}));
    EXPECT_EQ(first["channel"], "L");
    EXPECT_EQ(first["preamp_db"], 0);
    const CommandResult result = run({"filters", file, "--json", "--channel-name", "r"});
    EXPECT_EQ(result.code, 0);
    const Json second = Json::parse(result.out);
    EXPECT_EQ(second["channel"], "R");
    EXPECT_EQ(second["preamp_db"], -3);
    std::vector<std::string> kinds;
    for (const Json& row : second["lines"]) {
        kinds.push_back(row["kind"]);
    }
    EXPECT_EQ(kinds, (std::vector<std::string>{"unsupported", "unsupported", "unsupported", "band"}));
    const CommandResult other = run({"filters", file, "--channel-name", "C"});
    EXPECT_EQ(other.code, 1);
    EXPECT_THAT(other.err, HasSubstr("\"C\" in it; there are L and R."));
}

TEST_F(FiltersCommand, PrintsATableOfTheSameLines) {
    const std::string file = writeText("a.txt", everyKind);
    const CommandResult result = run({"filters", file});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, IsEmpty());
    std::istringstream lines(result.out);
    std::string line;
    const Json all = json(file);
    for (const Json& row : all["lines"]) {
        ASSERT_TRUE(std::getline(lines, line));
        EXPECT_EQ(std::stoi(line), row["line"].get<int>()) << line;
        EXPECT_TRUE(line.ends_with(row["text"].get<std::string>())) << line;
        const std::string reason = row["reason"];
        EXPECT_THAT(line, HasSubstr(reason));
    }
    std::string rest(std::istreambuf_iterator<char>(lines), {});
    EXPECT_THAT(rest, StartsWith("19 lines: "));
    EXPECT_THAT(rest, HasSubstr("Preamp -4 dB. The decimal sign is a point. Converted for 49500 Hz.\n"));
}

TEST_F(FiltersCommand, NamesThePlaceOfTrouble) {
    const std::string biquads = writeText("b.txt", "\n# REW\nbiquad1,\nb0=1.0,\nb1=0,\nb2=0,\na1=0,\na2=0\n");
    CommandResult result = run({"filters", biquads, "--json"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err,
                StartsWith("tessavoctl: " + biquads + ":3:1: It is a list of biquad coefficients,"));
    EXPECT_EQ(Json::parse(result.out)["lines"][0]["kind"], "unsupported");

    const std::string yaml = writeText("a.yml", "filters:\n  one: [1, 2\n  two: 3\n");
    result = run({"filters", yaml});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, StartsWith("tessavoctl: " + yaml + ":3:"));

    const std::string binary = writeText("a.bin", std::string_view("text\nmore\0text", 14));
    result = run({"filters", binary});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, StartsWith("tessavoctl: " + binary + ":2:5: It is no text"));

    for (const std::string_view nothing : {"", "\n\n", "hello\n", "# Preamp: -3 dB\n"}) {
        const std::string file = writeText("n.txt", nothing);
        result = run({"filters", file});
        EXPECT_EQ(result.code, 1) << nothing;
        EXPECT_THAT(result.err, HasSubstr(file + ": There is no filter in it."));
    }
}

TEST_F(FiltersCommand, RefusesWhatIsNoFile) {
    CommandResult result = run({"filters", path("none.txt"), "--json"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(result.err, "tessavoctl: " + path("none.txt") + ": no such file\n");
    result = run({"filters", folder_.string()});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(result.err, "tessavoctl: " + folder_.string() + ": is a directory\n");
    const std::string large = writeText("large.txt", std::string((4U << 20U) + 1, '\n'));
    result = run({"filters", large});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("larger than 4 MiB"));
}

TEST_F(FiltersCommand, ChangesNoFile) {
    const std::string file = writeText("a.txt", everyKind);
    EXPECT_FALSE(json(file)["lines"].empty());
    EXPECT_EQ(textOf(file), everyKind);
    EXPECT_EQ(files(), std::vector<std::string>{"a.txt"});
}

class CommaAndGroups : public std::numpunct<char> {
 protected:
    [[nodiscard]] char do_decimal_point() const override { return ','; }
    [[nodiscard]] char do_thousands_sep() const override { return '.'; }
    [[nodiscard]] std::string do_grouping() const override { return "\3"; }
};

TEST_F(FiltersCommand, IsTheSameInEveryLocale) {
    const std::string file = writeText("a.txt", "Filter 1: ON PK Fc 12345.5 Hz Gain -3.25 dB Q 2.125\n");
    const CommandResult usual = run({"filters", file, "--json"});
    const std::locale before = std::locale::global(std::locale(std::locale(), new CommaAndGroups));
    const CommandResult comma = run({"filters", file, "--json"});
    std::locale::global(before);
    EXPECT_EQ(comma.out, usual.out);
    EXPECT_THAT(comma.out, HasSubstr("12345.5"));
}

TEST_F(FiltersCommand, QuotesWhatStandsInALine) {
    const std::string file = writeText("a.txt", "Filter 1: ON \"P\\K\"\tFc 100 Hz Gain 1 dB Q 1\xE9\n");
    const Json row = json(file)["lines"][0];
    EXPECT_EQ(row["text"], "Filter 1: ON \"P\\K\"\tFc 100 Hz Gain 1 dB Q 1\u00E9");
    EXPECT_EQ(row["source"]["type"], "\"P\\K\"");
}

}  // namespace
}  // namespace tessavo::test
