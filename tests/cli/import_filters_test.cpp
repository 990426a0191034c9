#include "cli/filter_fixture.h"

namespace tessavo::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr std::string_view twoBands =
    "Preamp: -2.5 dB\n"
    "Filter 1: ON PK Fc 100 Hz Gain -8.0 dB Q 2.00\n"
    "Filter 2: ON PK Fc 1000 Hz Gain 4.0 dB Q 1.00\n";

class ImportFilters : public FilterTextTest {
 protected:
    [[nodiscard]] CommandResult import(const std::string& text, std::vector<std::string> more = {}) const {
        std::vector<std::string> arguments{"import-filters", text, "--into",   file_,
                                           "--set",          "2",  "--output", output_};
        if (std::find(more.begin(), more.end(), "--channel") == more.end()) {
            arguments.insert(arguments.end(), {"--channel", "3"});
        }
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }

    [[nodiscard]] Json json(const std::string& text, std::vector<std::string> more = {}) const {
        more.emplace_back("--json");
        const CommandResult result = import(text, more);
        EXPECT_EQ(result.code, 0) << result.err;
        return Json::parse(result.out);
    }

    /// Channel 3 of set 2 of what was written.
    [[nodiscard]] OutputChannelParams channel() const { return channelOf(output_, 2, 3); }

    /// Expects that the output is the input but for these channels of set 2, byte by byte.
    void expectOthersTheSame(const std::vector<int>& channels = {3}) const {
        Bytes before = read(file_);
        const Bytes after = read(output_);
        ASSERT_EQ(before.size(), after.size());
        for (const int channel : channels) {
            const PagePosition position{static_cast<std::uint8_t>(channel - 1)};
            const std::size_t begin = parameterSetSize + offsetof(ParameterSet, channels) +
                                      recordChannelAt(position).value * sizeof(OutputChannelParams);
            std::copy_n(after.begin() + static_cast<std::ptrdiff_t>(begin), sizeof(OutputChannelParams),
                        before.begin() + static_cast<std::ptrdiff_t>(begin));
        }
        EXPECT_TRUE(before == after);
    }

    std::mt19937 random_{17};
    std::string file_ = random("car.eqs", random_);
    std::string output_ = path("tuned.eqs");
};

TEST_F(ImportFilters, WritesTheBandsAndSwitchesTheOthersOff) {
    const OutputChannelParams before = channelOf(file_, 2, 3);
    const Bytes source = read(file_);
    const CommandResult result = import(writeText("a.txt", twoBands));
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.err, IsEmpty());
    const OutputChannelParams after = channel();
    // By hand: 2 * 10^(8/40) = 3.17 and 10^(4/40) = 1.26.
    expectBand(after.bands[0], BandType::peak, 100, -8.0F, 3.2F);
    expectBand(after.bands[1], BandType::peak, 1000, 4.0F, 1.3F);
    OutputChannelParams rest = before;
    for (std::size_t band = 0; band < bandCount; ++band) {
        EXPECT_EQ(after.bands[band].spare1, before.bands[band].spare1);
        EXPECT_EQ(after.bands[band].spare13, before.bands[band].spare13);
        if (band >= 2) {
            rest.bands[band].off = 1;
            EXPECT_EQ(std::memcmp(&after.bands[band], &rest.bands[band], sizeof(EqBandParams)), 0) << band;
        }
    }
    rest.bands[0] = after.bands[0];
    rest.bands[1] = after.bands[1];
    EXPECT_NEAR(after.volumeDb, before.volumeDb - 2.5F, 1e-5);
    rest.volumeDb = after.volumeDb;
    EXPECT_EQ(std::memcmp(&after, &rest, sizeof rest), 0);
    expectOthersTheSame();
    EXPECT_EQ(read(file_), source);
    EXPECT_EQ(files(), (std::vector<std::string>{"a.txt", "car.eqs", "tuned.eqs"}));
}

TEST_F(ImportFilters, WritesOverTheFileItReadWhereThatIsAsked) {
    const CommandResult result = run({"import-filters", writeText("a.txt", twoBands), "--into", file_,
                                      "--set", "2", "--channel", "3", "-o", file_});
    EXPECT_EQ(result.code, 0) << result.err;
    expectBand(channelOf(file_, 2, 3).bands[0], BandType::peak, 100, -8.0F, 3.2F);
}

TEST_F(ImportFilters, KeepsWhatStoodThereByKeep) {
    const OutputChannelParams before = channelOf(file_, 2, 3);
    EXPECT_EQ(import(writeText("a.txt", twoBands), {"--keep", "--no-preamp"}).code, 0);
    OutputChannelParams expected = before;
    const OutputChannelParams after = channel();
    expected.bands[0] = after.bands[0];
    expected.bands[1] = after.bands[1];
    expectBand(after.bands[0], BandType::peak, 100, -8.0F, 3.2F);
    expectBand(after.bands[1], BandType::peak, 1000, 4.0F, 1.3F);
    EXPECT_EQ(std::memcmp(&after, &expected, sizeof expected), 0);
    expectOthersTheSame();
}

TEST_F(ImportFilters, WritesTheBandsThatAreNamed) {
    const std::string text = writeText("a.txt", twoBands);
    const std::vector<std::pair<std::string, std::pair<std::size_t, std::size_t>>> cases{
        {"1-8", {0, 1}}, {"3-4", {2, 3}}, {"8,5", {4, 7}}, {"7-8,1", {0, 6}}, {"2,4-6", {1, 3}}};
    for (const auto& [list, places] : cases) {
        for (const bool keep : {true, false}) {
            std::vector<std::string> more{"--bands", list};
            if (keep) {
                more.emplace_back("--keep");
            }
            const OutputChannelParams before = channelOf(file_, 2, 3);
            ASSERT_EQ(import(text, more).code, 0) << list;
            const OutputChannelParams after = channel();
            for (std::size_t band = 0; band < bandCount; ++band) {
                SCOPED_TRACE(list + " " + std::to_string(band));
                if (band == places.first) {
                    expectBand(after.bands[band], BandType::peak, 100, -8.0F, 3.2F);
                } else if (band == places.second) {
                    expectBand(after.bands[band], BandType::peak, 1000, 4.0F, 1.3F);
                } else {
                    const EqBandParams& was = before.bands[band];
                    expectBand(after.bands[band], static_cast<BandType>(was.type), was.frequencyHz,
                               was.gainDb, was.q, !keep || was.off != 0);
                }
            }
            expectOthersTheSame();
        }
    }
}

TEST_F(ImportFilters, KeepsTheFiltersThatDoMostWhereThereAreTooMany) {
    const std::string text = writeText("a.txt",
                                       "Filter 1: ON PK Fc 100 Hz Gain -8.0 dB Q 2.00\n"
                                       "Filter 2: ON PK Fc 500 Hz Gain 0.5 dB Q 9.00\n"
                                       "Filter 3: ON PK Fc 1000 Hz Gain 4.0 dB Q 1.00\n"
                                       "Filter 4: OFF PK Fc 2000 Hz Gain 12.0 dB Q 0.50\n");
    const Json row = json(text, {"--bands", "4,6", "--keep"})["imports"][0];
    const OutputChannelParams after = channel();
    expectBand(after.bands[3], BandType::peak, 100, -8.0F, 3.2F);
    expectBand(after.bands[5], BandType::peak, 1000, 4.0F, 1.3F);
    EXPECT_EQ(row["taken"],
              Json::parse(R"([{"band": 4, "line": 1, "on": true}, {"band": 6, "line": 3, "on": true}])"));
    ASSERT_EQ(row["not_taken"].size(), 2U);
    for (std::size_t k = 0; k < 2; ++k) {
        const Json& out = row["not_taken"][k];
        EXPECT_EQ(out["line"], k == 0 ? 2 : 4);
        EXPECT_THAT(out["text"].get<std::string>(), StartsWith(k == 0 ? "Filter 2: ON" : "Filter 4: OFF"));
        EXPECT_FALSE(out["reason"].get<std::string>().empty());
    }
    const CommandResult table = import(text, {"--bands", "4,6"});
    EXPECT_THAT(table.out, HasSubstr(" line 2     More filters than bands; it does least.\n"));
    EXPECT_THAT(table.out, HasSubstr(" line 4     It is off, and no band is left for it.\n"));
}

TEST_F(ImportFilters, TakesFiltersThatAreOffAsBandsThatAreOff) {
    const Json row =
        json(writeText("a.txt",
                       "Filter 1: OFF LSC Fc 100 Hz Gain 0.0 dB Q 2.00\n"
                       "Filter 2: ON None\nFilter 3: ON PK Fc 200 Hz Gain 0 dB Q 1\n"))["imports"][0];
    expectBand(channel().bands[0], BandType::lowShelf, 100, 0.0F, 2.0F, true);
    expectBand(channel().bands[1], BandType::peak, 200, 0.0F, 1.0F);
    EXPECT_EQ(row["taken"][0]["on"], false);
    EXPECT_EQ(row["taken"][1], Json::parse(R"({"band": 2, "line": 3, "on": true})"));
}

TEST_F(ImportFilters, AddsThePreampAsFarAsTheVolumeGoes) {
    ParameterStore store = storeOf(file_);
    channelIn(store, 2, 3).volumeDb = 1.5F;
    save(file_, store);
    Json row = json(writeText("a.txt", "Preamp: -2.5 dB\nFilter 1: ON None\n"))["imports"][0];
    EXPECT_EQ(channel().volumeDb, -1.0F);
    EXPECT_EQ(row["preamp_added_db"], -2.5);
    EXPECT_EQ(row["preamp_left_db"], 0);
    row = json(writeText("a.txt", "Preamp: -2.5 dB\nFilter 1: ON None\n"), {"--no-preamp"});
    EXPECT_EQ(channel().volumeDb, 1.5F);
    EXPECT_EQ(row["imports"][0]["preamp_added_db"], 0);
    EXPECT_EQ(row["imports"][0]["preamp_left_db"], -2.5);
    EXPECT_EQ(row["preamp_left_db"], -2.5);
    // Step by step as far as the range goes; the rest is told, and both together are the preamp.
    row = json(writeText("a.txt", "Preamp: -300.25 dB\nFilter 1: ON None\n"));
    EXPECT_NEAR(channel().volumeDb - 1.5, row["imports"][0]["preamp_added_db"].get<double>(), 1e-5);
    EXPECT_LT(row["preamp_left_db"].get<double>(), -100);
    EXPECT_NEAR(row["imports"][0]["preamp_added_db"].get<double>() + row["preamp_left_db"].get<double>(),
                -300.25, 1e-9);
    const CommandResult table = import(writeText("a.txt", "Preamp: -300.25 dB\nFilter 1: ON None\n"));
    EXPECT_THAT(table.out, HasSubstr(" dB; of the preamp -"));
    expectOthersTheSame();
}

TEST_F(ImportFilters, FillsSeveralChannelsAlike) {
    const Json row = json(writeText("a.txt", twoBands), {"--channel", "8,1,4"});
    ASSERT_EQ(row["imports"].size(), 3U);
    const std::vector<int> channels{8, 1, 4};
    for (std::size_t k = 0; k < channels.size(); ++k) {
        EXPECT_EQ(row["imports"][k]["channel"], channels[k]);
        const OutputChannelParams before = channelOf(file_, 2, channels[k]);
        const OutputChannelParams after = channelOf(output_, 2, channels[k]);
        expectBand(after.bands[0], BandType::peak, 100, -8.0F, 3.2F);
        expectBand(after.bands[1], BandType::peak, 1000, 4.0F, 1.3F);
        EXPECT_NEAR(after.volumeDb, before.volumeDb - 2.5F, 1e-5);
    }
    expectOthersTheSame(channels);
}

TEST_F(ImportFilters, WritesTheSetThatIsNamed) {
    const std::string text = writeText("a.txt", twoBands);
    for (int set = 1; set <= 5; ++set) {
        ASSERT_EQ(run({"import-filters", text, "--into", file_, "--set", std::to_string(set), "--channel",
                       "1", "-o", output_})
                      .code,
                  0);
        const ParameterStore before = storeOf(file_);
        const ParameterStore after = storeOf(output_);
        for (std::size_t other = 0; other < before.sets.size(); ++other) {
            const bool same = std::memcmp(&before.sets[other], &after.sets[other], sizeof(ParameterSet)) == 0;
            EXPECT_EQ(same, static_cast<int>(other) + 1 != set);
        }
    }
}

TEST_F(ImportFilters, ReadsTheChannelOfTheTextThatIsNamed) {
    const std::string text = writeText("a.txt",
                                       "Channel: L\nFilter 1: ON PK Fc 100 Hz Gain 0 dB Q 1\n"
                                       "Channel: R\nFilter 1: ON PK Fc 200 Hz Gain 0 dB Q 1\n");
    EXPECT_EQ(json(text)["channel"], "L");
    EXPECT_EQ(channel().bands[0].frequencyHz, 100);
    EXPECT_EQ(json(text, {"--channel-name", "R"})["channel"], "R");
    EXPECT_EQ(channel().bands[0].frequencyHz, 200);
    EXPECT_EQ(channel().bands[1].off, 1);
}

TEST_F(ImportFilters, ImportsCrossovers) {
    ParameterStore store = storeOf(file_);
    for (CrossoverParams& crossover : channelIn(store, 2, 3).crossovers) {
        crossover.enabled = 0;
    }
    save(file_, store);
    const Json row = json(writeText("a.txt",
                                    "Filter 1: ON HP Fc 80 Hz\nFilter 2: ON LP Fc 3000 Hz\n"
                                    "Filter 3: ON LPQ Fc 3000 Hz Q 0.707\n"))["imports"][0];
    const auto& crossovers = channel().crossovers;
    // By hand: 80 * 44100 / 49500 = 71.3 and 3000 * 44100 / 49500 = 2672.7; two alike are one of 4th order.
    EXPECT_EQ(crossovers[0].enabled, 1);
    EXPECT_EQ(crossovers[0].kind, static_cast<std::uint8_t>(CrossoverKind::highPass));
    EXPECT_EQ(crossovers[0].frequencyHz, 71);
    EXPECT_EQ(crossovers[0].order, 2);
    EXPECT_EQ(crossovers[1].enabled, 1);
    EXPECT_EQ(crossovers[1].kind, static_cast<std::uint8_t>(CrossoverKind::lowPass));
    EXPECT_EQ(crossovers[1].frequencyHz, 2673);
    EXPECT_EQ(crossovers[1].order, 4);
    EXPECT_EQ(
        row["taken"],
        Json::parse(R"([{"crossover": 1, "line": 1, "on": true}, {"crossover": 2, "line": 2, "on": true},
                                            {"crossover": 2, "line": 3, "on": true}])"));
    expectOthersTheSame();
}

TEST_F(ImportFilters, TellsWhatEachBandAndCrossoverHoldsNow) {
    ParameterStore store = storeOf(file_);
    OutputChannelParams& before = channelIn(store, 2, 3);
    for (EqBandParams& band : before.bands) {
        band = {static_cast<std::uint8_t>(BandType::highShelf), 0, 5000, 0.0F, 0.7F, 0, {}};
    }
    before.bands[6].off = 1;
    before.bands[7].type = 9;
    before.crossovers[0] = {1, static_cast<std::uint8_t>(CrossoverKind::highPass), 30, 2, 0};
    before.crossovers[1].enabled = 0;
    save(file_, store);
    const std::string text = writeText("a.txt",
                                       "Filter 1: ON LP Fc 3000 Hz\n"
                                       "Filter 2: ON PK Fc 100 Hz Gain -0.02 dB Q 2.00\n"
                                       "Filter 3: OFF PK Fc 200 Hz Gain -4.0 dB Q 1.00\n"
                                       "Filter 4: OFF PK Fc 300 Hz Gain -4.0 dB Q 1.00\n"
                                       "Filter 5: ON LP Fc 3000 Hz\n");
    EXPECT_THAT(import(text, {"--bands", "2,5", "--keep"}).out,
                HasSubstr("\nChannel 3:\n"
                          "  band 1       as it was      high-shelf 5000 Hz, 0.0 dB, Q 0.7\n"
                          "  band 2       line 2         peak 100 Hz, 0.0 dB, Q 2.0\n"
                          "  band 3       as it was      high-shelf 5000 Hz, 0.0 dB, Q 0.7\n"
                          "  band 4       as it was      high-shelf 5000 Hz, 0.0 dB, Q 0.7\n"
                          "  band 5       line 3         peak 200 Hz, -4.0 dB, Q 1.3, off\n"
                          "  band 6       as it was      high-shelf 5000 Hz, 0.0 dB, Q 0.7\n"
                          "  band 7       none           off\n"
                          "  band 8       as it was      a band of an unknown type\n"
                          "  crossover 1  as it was      high-pass 30 Hz, order 2\n"
                          "  crossover 2  lines 1 and 5  low-pass 2673 Hz, order 4\n"
                          "  left out     line 4         It is off, and no band is left for it.\n"
                          "  largest deviation from the text: "));
    const CommandResult off = import(text, {"--bands", "2,5"});
    for (const std::string band : {"1", "3", "4", "6", "7", "8"}) {
        EXPECT_THAT(off.out, HasSubstr("\n  band " + band + "       none           off\n"));
    }
}

TEST_F(ImportFilters, TellsTheDeviationOfTheFilterMode) {
    const std::string text = writeText("a.txt", "Filter 1: ON PK Fc 12000 Hz Gain 12.0 dB Q 1.00\n");
    std::vector<double> deviations;
    Bytes written;
    for (const std::string mode : {"BZT", "MZT", "BZT/MZT"}) {
        const Json row = json(text, {"--filter-mode", mode})["imports"][0];
        deviations.push_back(std::abs(row["deviation_db"].get<double>()));
        EXPECT_GE(row["deviation_hz"], 20);
        EXPECT_LE(row["deviation_hz"], 20000);
        // The method says what is told, not what is written.
        EXPECT_TRUE(written.empty() || written == read(output_)) << mode;
        written = read(output_);
    }
    // With the bilinear method only rounding is left.
    EXPECT_LT(deviations[0], 0.2);
    EXPECT_GT(deviations[1], deviations[0] + 0.5);
    EXPECT_GT(deviations[2], deviations[0] + 0.2);
    EXPECT_LT(deviations[2], deviations[1]);
    EXPECT_EQ(json(text)["imports"][0]["deviation_db"],
              json(text, {"--filter-mode", "BZT"})["imports"][0]["deviation_db"]);
    const Json none = json(writeText("b.txt", "Filter 1: OFF PK Fc 100 Hz Gain 3 dB Q 1\n"))["imports"][0];
    EXPECT_TRUE(none["deviation_db"].is_null());
    EXPECT_TRUE(none["deviation_hz"].is_null());
    EXPECT_THAT(import(text).out, HasSubstr("largest deviation from the text: "));
}

TEST_F(ImportFilters, HasTheLinesOfTheReportInItsOwn) {
    const std::string text = writeText("a.txt", twoBands);
    const Json report = Json::parse(run({"filters", text, "--json"}).out);
    const Json imported = json(text);
    for (const auto& item : report.items()) {
        EXPECT_EQ(imported[item.key()], item.value()) << item.key();
    }
    EXPECT_THAT(import(text).out, StartsWith(run({"filters", text}).out));
}

TEST_F(ImportFilters, SkipsUnreadableLinesOnlyWhereThatIsAsked) {
    const std::string text = writeText("a.txt",
                                       "Filter 1: ON PK Fc 100 Hz Gain x dB Q 2.00\n"
                                       "Filter 2: ON PK Fc 1000 Hz Gain 4.0 dB Q 1.00\n"
                                       "Filter 3: ON PK Fc 1000 Hz Q 1.00\n");
    const std::vector<std::string> before = files();
    CommandResult result = import(text);
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(files(), before);
    for (const std::string place : {":1:32: \"x\" is not a number\n", ":3:34: the gain is missing\n"}) {
        EXPECT_THAT(result.err, HasSubstr(std::string("tessavoctl: ").append(text).append(place)));
    }
    const std::string told = result.err;
    result = import(text, {"--skip-unreadable"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.err, told);
    expectBand(channel().bands[0], BandType::peak, 1000, 4.0F, 1.3F);
    EXPECT_EQ(channel().bands[1].off, 1);
    expectOthersTheSame();
}

class ImportFiltersRefuses : public ImportFilters {
 protected:
    /// Expects an end without an output file and returns what was told.
    std::string refused(const std::vector<std::string>& arguments, int code) {
        const std::vector<std::string> before = files();
        const Bytes source = read(file_);
        const CommandResult result = run(arguments);
        EXPECT_EQ(result.code, code) << result.err;
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_THAT(result.err, StartsWith("tessavoctl: "));
        EXPECT_EQ(files(), before);
        EXPECT_EQ(read(file_), source);
        return result.err;
    }

    std::string refusedText(const std::string& text) {
        return refused(
            {"import-filters", text, "--into", file_, "--set", "2", "--channel", "3", "-o", output_}, 1);
    }

    std::string good_ = writeText("good.txt", twoBands);
};

TEST_F(ImportFiltersRefuses, TextsOfWhichNothingCanBeUsed) {
    EXPECT_EQ(refusedText(path("none.txt")), "tessavoctl: " + path("none.txt") + ": no such file\n");
    EXPECT_EQ(refusedText(folder_.string()), "tessavoctl: " + folder_.string() + ": is a directory\n");
    const std::string binary = writeText("b.txt", std::string_view("\0\1\2", 3));
    EXPECT_THAT(refusedText(binary), StartsWith("tessavoctl: " + binary + ":1:1: It is no text"));
    const std::string biquads = writeText("q.txt", "biquad1,\nb0=1.0,\nb1=0,\nb2=0,\na1=0,\na2=0\n");
    EXPECT_THAT(refusedText(biquads),
                StartsWith("tessavoctl: " + biquads + ":1:1: It is a list of biquad coefficients,"));
    const std::string empty = writeText("e.txt", "");
    EXPECT_THAT(refusedText(empty), HasSubstr("There is no filter in it."));
    // Nothing would come of these but that every band is off.
    for (const char* text :
         {"Include: other.txt\n", "Filter 1: ON NO Fc 100 Hz\n", "GraphicEQ: 25 0; 40 1\n"}) {
        const std::string useless = writeText("u.txt", text);
        EXPECT_EQ(refusedText(useless),
                  "tessavoctl: " + useless + ": The target can take no filter of it.\n");
    }
    const std::string yaml =
        writeText("y.yml", "devices: {samplerate: 48000}\nfilters:\n  one: {type: Biquad\n");
    EXPECT_THAT(refusedText(yaml), StartsWith("tessavoctl: " + yaml + ":3:21: "));
    const std::string alias = writeText("z.yml", "filters:\n  one: *two\n");
    EXPECT_THAT(refusedText(alias), StartsWith("tessavoctl: " + alias + ":2:8: "));
    EXPECT_THAT(refusedText(file_), StartsWith("tessavoctl: " + file_ + ":"));
}

TEST_F(ImportFiltersRefuses, YamlWhoseFilterCannotBeRead) {
    const std::string yaml = writeText("y.yml",
                                       "filters:\n  one:\n    type: Biquad\n"
                                       "    parameters: {type: Peaking, freq: x, gain: 3, q: 1}\n");
    const std::string told = refusedText(yaml);
    EXPECT_THAT(told, StartsWith("tessavoctl: " + yaml + ":2:3: "));
    EXPECT_THAT(told, HasSubstr("(line 4, column 39)"));
}

TEST_F(ImportFiltersRefuses, SettingsThatAreNone) {
    const auto into = [&](const std::string& file) {
        return refused(
            {"import-filters", good_, "--into", file, "--set", "2", "--channel", "3", "-o", output_}, 1);
    };
    EXPECT_THAT(into(path("none.eqs")), HasSubstr(path("none.eqs") + ": no such file"));
    EXPECT_THAT(into(folder_.string()), HasSubstr("is a directory"));
    EXPECT_THAT(into(good_), HasSubstr(good_));
    // Only set 2 is damaged, and only that is asked for.
    ParameterStore store = storeOf(file_);
    store.sets[1].recordSize = 0;
    const std::string damaged = path("damaged.eqs");
    save(damaged, store);
    EXPECT_THAT(into(damaged), HasSubstr(damaged));
    EXPECT_EQ(
        run({"import-filters", good_, "--into", damaged, "--set", "1", "--channel", "3", "-o", output_}).code,
        0);
}

TEST_F(ImportFiltersRefuses, OutputsThatCannotBeWritten) {
    const auto to = [&](const std::string& output, int code) {
        return refused(
            {"import-filters", good_, "--into", file_, "--set", "2", "--channel", "3", "-o", output}, code);
    };
    EXPECT_THAT(to(good_, 2), HasSubstr("is read by this command"));
    EXPECT_THAT(to(folder_.string(), 1), HasSubstr(folder_.string()));
    EXPECT_THAT(to(path("no-folder/tuned.eqs"), 1), HasSubstr(path("no-folder/tuned.eqs")));
    EXPECT_EQ(textOf(good_), twoBands);
}

TEST_F(ImportFiltersRefuses, WrongOptions) {
    const std::vector<std::string> usual{"import-filters", good_, "--into", file_, "--output", output_};
    const auto with = [&](std::vector<std::string> more) {
        more.insert(more.begin(), usual.begin(), usual.end());
        return refused(more, 2);
    };
    for (const std::string set : {"0", "6", "one", ""}) {
        with({"--set", set, "--channel", "3"});
    }
    for (const std::string channel : {"0", "9", "1,1", "1-3", "1,", ""}) {
        with({"--set", "2", "--channel", channel});
    }
    for (const std::string bands :
         {"0", "9", "0-3", "7-9", "3-1", "1,1", "1-3,2", "-3", "3-", "1--3", "a", "1;2", ""}) {
        EXPECT_THAT(with({"--set", "2", "--channel", "3", "--bands", bands}),
                    HasSubstr("--bands: \"" + bands + "\": bands are 1 to 8, each once"));
    }
    with({"--set", "2", "--channel", "3", "--filter-mode", "FIR"});
    with({"--set", "2", "--channel", "3", "--sum", "3"});
    with({"--set", "2"});
    with({"--channel", "3"});
    refused({"import-filters", good_, "--set", "2", "--channel", "3", "-o", output_}, 2);
    refused({"import-filters", good_, "--into", file_, "--set", "2", "--channel", "3"}, 2);
    refused({"import-filters", "--into", file_, "--set", "2", "--channel", "3", "-o", output_}, 2);
}

}  // namespace
}  // namespace tessavo::test
