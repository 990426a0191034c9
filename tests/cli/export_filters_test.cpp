#include "cli/filter_fixture.h"

namespace tessavo::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const std::vector<std::string>& everyForm() {
    static const std::vector<std::string> forms{"text", "csv", "yaml"};
    return forms;
}

class ExportFilters : public FilterTextTest {
 protected:
    [[nodiscard]] CommandResult exported(const std::string& file, std::vector<std::string> more = {}) const {
        more.insert(more.begin(), {"export-filters", file, "--set", "3", "--channel", "5"});
        return run(more);
    }

    /// A fresh file with one peak, one low shelf that is off, and a crossover of 4th order in channel 5 of set 3.
    [[nodiscard]] std::string known() const {
        std::string file = fresh("car.eqs");
        ParameterStore store = storeOf(file);
        OutputChannelParams& channel = channelIn(store, 3, 5);
        for (EqBandParams& band : channel.bands) {
            band = {static_cast<std::uint8_t>(BandType::peak), 0, 1000, 0.0F, 1.0F, 1, {}};
        }
        channel.bands[0] = {static_cast<std::uint8_t>(BandType::peak), 0, 100, -8.0F, 3.2F, 0, {}};
        channel.bands[1] = {static_cast<std::uint8_t>(BandType::lowShelf), 0, 200, 0.0F, 0.7F, 1, {}};
        channel.crossovers[0] = {1, static_cast<std::uint8_t>(CrossoverKind::highPass), 441, 4, 0};
        channel.crossovers[1].enabled = 0;
        channel.volumeDb = -3.5F;
        channel.groupGainDb = 1.0F;
        save(file, store);
        return file;
    }

    std::mt19937 random_{18};
};

TEST_F(ExportFilters, PrintsATextUnlessTold) {
    const std::string file = known();
    const CommandResult result = exported(file);
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, IsEmpty());
    // By hand: 3.2 / 10^(8/40) = 2.0190635022..., and 441 * 49500 / 44100 = 495.
    std::string expected =
        "# Set 3, channel 5\n"
        "# In the forms of the audio EQ cookbook, exact at 49500 Hz.\n"
        "# The channel's volume of -2.5 dB is not in it.\n"
        "Filter 1: ON PK Fc 100 Hz Gain -8 dB Q 2.019063502\n"
        "Filter 2: OFF LSC Fc 200 Hz Gain 0 dB Q 0.7\n";
    for (int row = 3; row <= 8; ++row) {
        expected.append("Filter " + std::to_string(row) + ": OFF PK Fc 1000 Hz Gain 0 dB Q 1\n");
    }
    expected.append("Filter 9: ON HP Fc 495 Hz\nFilter 10: ON HP Fc 495 Hz\n");
    EXPECT_EQ(result.out, expected);
    EXPECT_EQ(exported(file, {"--format", "text"}).out, expected);
    EXPECT_EQ(files(), std::vector<std::string>{"car.eqs"});
}

TEST_F(ExportFilters, PrintsTablesAndYaml) {
    const std::string file = known();
    const CommandResult csv = exported(file, {"--format", "csv"});
    EXPECT_EQ(csv.code, 0);
    EXPECT_THAT(csv.out,
                StartsWith("Number,Enabled,Control,Type,Frequency(Hz),Gain(dB),Q\n1,True,Manual,PK,100,-8,"));
    EXPECT_THAT(csv.out, HasSubstr("\n2,False,Manual,LSQ,200,0,0.7\n"));
    EXPECT_THAT(csv.out, HasSubstr("\n9,True,Manual,HP,495\n10,True,Manual,HP,495\n"));
    const CommandResult yaml = exported(file, {"--format", "yaml"});
    EXPECT_EQ(yaml.code, 0);
    EXPECT_THAT(yaml.out,
                HasSubstr("\ndevices:\n  samplerate: 49500\nfilters:\n  band_1:\n    type: Biquad\n"));
    EXPECT_THAT(yaml.out, HasSubstr("type: LinkwitzRileyHighpass\n      freq: 495\n      order: 4\n"));
    EXPECT_THAT(yaml.out, HasSubstr("names: [band_1, crossover_1]\n"));
}

TEST_F(ExportFilters, GivesTheVolumeOnlyWhereThatIsAsked) {
    const std::string file = known();
    for (const std::string& form : everyForm()) {
        for (const bool with : {false, true}) {
            const std::string output = path("out." + form);
            std::vector<std::string> more{"--format", form, "--output", output};
            if (with) {
                more.emplace_back("--with-volume");
            }
            ASSERT_EQ(exported(file, more).code, 0);
            const CommandResult read = run({"filters", output, "--json"});
            ASSERT_EQ(read.code, 0) << read.err;
            EXPECT_EQ(Json::parse(read.out)["preamp_db"], with ? -2.5 : 0.0) << form;
        }
    }
}

TEST_F(ExportFilters, WritesTheSameIntoAFile) {
    const std::string file = random("car.eqs", random_);
    const Bytes before = read(file);
    for (const std::string& form : everyForm()) {
        const std::string output = path("out." + form);
        const CommandResult result = exported(file, {"--format", form, "--output", output});
        EXPECT_EQ(result.code, 0) << result.err;
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_EQ(textOf(output), exported(file, {"--format", form}).out);
        // An older and longer text leaves nothing behind.
        writeText("out." + form, std::string(100000, '#'));
        EXPECT_EQ(exported(file, {"--format", form, "--output", output}).code, 0);
        EXPECT_EQ(textOf(output), exported(file, {"--format", form}).out);
    }
    EXPECT_EQ(read(file), before);
}

TEST_F(ExportFilters, CanBeImportedAgainAndGivesTheSameBandsInEveryForm) {
    for (int round = 0; round < 20; ++round) {
        const std::string file = random("car.eqs", random_);
        const std::string other = random("other.eqs", random_);
        const OutputChannelParams wanted = channelOf(file, 3, 5);
        const OutputChannelParams was = channelOf(other, 1, 2);
        for (const std::string& form : everyForm()) {
            const std::string text = path("filters." + form);
            const std::string output = path("back.eqs");
            ASSERT_EQ(exported(file, {"--format", form, "--output", text}).code, 0);
            const CommandResult result = run({"import-filters", text, "--into", other, "--set", "1",
                                              "--channel", "2", "--output", output});
            ASSERT_EQ(result.code, 0) << result.err << textOf(text);
            const OutputChannelParams after = channelOf(output, 1, 2);
            for (std::size_t band = 0; band < bandCount; ++band) {
                SCOPED_TRACE(form + " band " + std::to_string(band + 1) + "\n" + textOf(text));
                const EqBandParams& each = wanted.bands[band];
                expectBand(after.bands[band], static_cast<BandType>(each.type), each.frequencyHz, each.gainDb,
                           each.q, each.off != 0);
            }
            for (std::size_t k = 0; k < crossoverCount; ++k) {
                const CrossoverParams& expected =
                    wanted.crossovers[k].enabled != 0 ? wanted.crossovers[k] : was.crossovers[k];
                EXPECT_EQ(after.crossovers[k].enabled, expected.enabled);
                EXPECT_EQ(after.crossovers[k].kind, expected.kind);
                EXPECT_EQ(after.crossovers[k].frequencyHz, expected.frequencyHz);
                EXPECT_EQ(after.crossovers[k].order, expected.order);
            }
            EXPECT_EQ(after.volumeDb, was.volumeDb);
        }
    }
}

TEST_F(ExportFilters, CanBeImportedIntoItsOwnChannelAndChangesNothing) {
    for (int round = 0; round < 32; ++round) {
        const std::string file = random("car.eqs", random_);
        ParameterStore store = storeOf(file);
        OutputChannelParams& channel = channelIn(store, 3, 5);
        // Every pair of crossovers: kinds, orders, and whether they are alike.
        for (std::size_t k = 0; k < crossoverCount; ++k) {
            const auto bits = static_cast<unsigned>(round) >> (2 * k);
            channel.crossovers[k].enabled = 1;
            channel.crossovers[k].kind = static_cast<std::uint8_t>(bits & 1U);
            channel.crossovers[k].order = (bits & 2U) != 0 ? 4 : 2;
            channel.crossovers[k].frequencyHz =
                (round & 16) != 0 ? 500 : static_cast<std::uint16_t>(500 + 300 * k);
        }
        // Three equal lines do not tell which of the two is of 4th order; an import takes the first.
        if (channel.crossovers[0].kind == channel.crossovers[1].kind &&
            channel.crossovers[0].frequencyHz == channel.crossovers[1].frequencyHz &&
            channel.crossovers[0].order < channel.crossovers[1].order) {
            std::swap(channel.crossovers[0].order, channel.crossovers[1].order);
        }
        save(file, store);
        for (const std::string& form : everyForm()) {
            const std::string text = path("filters." + form);
            ASSERT_EQ(exported(file, {"--format", form, "--output", text}).code, 0);
            const CommandResult result = run({"import-filters", text, "--into", file, "--set", "3",
                                              "--channel", "5", "--output", path("back.eqs")});
            ASSERT_EQ(result.code, 0) << result.err << textOf(text);
            EXPECT_TRUE(read(path("back.eqs")) == read(file)) << form << " " << round << "\n"
                                                              << textOf(text) << result.out;
        }
    }
}

TEST_F(ExportFilters, ExportsTheSetAndTheChannelThatAreNamed) {
    const std::string file = random("car.eqs", random_);
    for (int set = 1; set <= 5; ++set) {
        for (int channel = 1; channel <= 8; ++channel) {
            const CommandResult result = run({"export-filters", file, "--set", std::to_string(set),
                                              "--channel", std::to_string(channel), "--format", "yaml"});
            EXPECT_EQ(result.code, 0);
            EXPECT_THAT(result.out, StartsWith("# Set " + std::to_string(set) + ", channel " +
                                               std::to_string(channel) + "\n"));
            const EqBandParams band = channelOf(file, set, channel).bands[7];
            const Json lines =
                Json::parse(run({"filters", writeText("one.yml", result.out), "--json"}).out)["lines"];
            EXPECT_EQ(lines[7]["device"]["frequency_hz"], band.frequencyHz);
            EXPECT_NEAR(lines[7]["device"]["gain_db"].get<double>(), band.gainDb, 1e-5);
        }
    }
}

class ExportFiltersRefuses : public ExportFilters {
 protected:
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

    std::string file_ = known();
};

TEST_F(ExportFiltersRefuses, OutputsThatCannotBeWritten) {
    const auto to = [&](const std::string& output, int code) {
        return refused({"export-filters", file_, "--set", "1", "--channel", "1", "--output", output}, code);
    };
    EXPECT_THAT(to(path("no-folder/a.txt"), 1), HasSubstr(path("no-folder/a.txt") + ": "));
    EXPECT_THAT(to(folder_.string(), 1), HasSubstr(folder_.string() + ": "));
    EXPECT_THAT(to(file_, 2), HasSubstr("is read by this command"));
}

TEST_F(ExportFiltersRefuses, ToWriteOverSettingsAndImages) {
    const std::string other = fresh("other.eqs");
    const std::string image = path("set1.bin");
    ASSERT_EQ(run({"export", file_, "--set", "1", "--output", image}).code, 0);
    for (const std::string& output : {other, image}) {
        const Bytes before = read(output);
        EXPECT_THAT(refused({"export-filters", file_, "--set", "1", "--channel", "1", "--output", output}, 1),
                    HasSubstr(output + ": holds settings"));
        EXPECT_EQ(read(output), before);
    }
}

TEST_F(ExportFiltersRefuses, WrongFilesAndOptions) {
    EXPECT_THAT(refused({"export-filters", path("none.eqs"), "--set", "1", "--channel", "1"}, 1),
                HasSubstr("no such file"));
    EXPECT_THAT(refused({"export-filters", folder_.string(), "--set", "1", "--channel", "1"}, 1),
                HasSubstr("is a directory"));
    const std::string text = writeText("a.txt", "Filter 1: ON None\n");
    EXPECT_THAT(refused({"export-filters", text, "--set", "1", "--channel", "1"}, 1), HasSubstr(text));
    refused({"export-filters", file_, "--set", "6", "--channel", "1"}, 2);
    refused({"export-filters", file_, "--set", "1", "--channel", "9"}, 2);
    refused({"export-filters", file_, "--set", "1", "--channel", "1,2"}, 2);
    refused({"export-filters", file_, "--set", "1", "--channel", "1", "--format", "json"}, 2);
    refused({"export-filters", file_, "--set", "1"}, 2);
    refused({"export-filters", file_, "--channel", "1"}, 2);
    refused({"export-filters", "--set", "1", "--channel", "1"}, 2);
}

}  // namespace
}  // namespace tessavo::test
