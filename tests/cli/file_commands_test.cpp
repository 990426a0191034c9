#include <cstring>
#include <gmock/gmock.h>

#include "cli/cli_fixture.h"
#include "params/factory_defaults.h"
#include "params/parameter_image.h"
#include "params/records.h"

namespace tessavo::test {

using namespace cli;

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

ParameterStore storeOf(const Bytes& bytes) {
    ParameterStore store;
    EXPECT_GE(bytes.size(), sizeof store);
    std::memcpy(&store, bytes.data(), std::min(bytes.size(), sizeof store));
    return store;
}

ParameterImage imageOf(const Bytes& bytes) {
    ParameterImage image;
    EXPECT_EQ(bytes.size(), sizeof image);
    std::memcpy(&image, bytes.data(), std::min(bytes.size(), sizeof image));
    return image;
}

Bytes firstBytes(Bytes bytes, std::size_t count) {
    bytes.resize(count);
    return bytes;
}

class FileCommands : public CommandTest {
 protected:
    std::string script(const std::string& text) const {
        write(path("script.txt"), Bytes(text.begin(), text.end()));
        return path("script.txt");
    }
};

// --- new
// ---------------------------------------------------------------------------------------------------------

TEST_F(FileCommands, NewWritesTheDefaultsOfEverySet) {
    const Bytes bytes = read(fresh());
    ASSERT_EQ(bytes.size(), parameterStoreSize);
    ParameterStore expected = emptyStore();
    writeDefaults(expected);
    const ParameterStore store = storeOf(bytes);
    EXPECT_EQ(std::memcmp(&store, &expected, sizeof store), 0);
}

TEST_F(FileCommands, NewOverALongerFileKeepsItsTail) {
    write(path("long.eqs"), Bytes(12000, 0xA5));
    ASSERT_EQ(run({"new", "--force", path("long.eqs")}).code, 0);
    const Bytes bytes = read(path("long.eqs"));
    ASSERT_EQ(bytes.size(), 12000U);
    EXPECT_EQ(firstBytes(bytes, parameterStoreSize), read(fresh()));
    EXPECT_EQ(Bytes(bytes.begin() + parameterStoreSize, bytes.end()), Bytes(1400, 0xA5));
}

TEST_F(FileCommands, NewIntoAMissingFolderOrOverAFolderFails) {
    for (const std::string& target : {path("missing/new.eqs"), folder_.string()}) {
        const CommandResult result = run({"new", target});
        EXPECT_EQ(result.code, 1);
        EXPECT_THAT(result.err, HasSubstr("Error opening configuration file!"));
        EXPECT_THAT(result.err, HasSubstr("Error writing data!"));
        EXPECT_THAT(result.err, HasSubstr(target));
    }
    EXPECT_THAT(files(), IsEmpty());
}

// --- input files
// -------------------------------------------------------------------------------------------------

class SettingsInput : public FileCommands, public testing::WithParamInterface<std::string> {
 protected:
    // The command under test with `file` as its settings file and out.x as its output, if it has one.
    CommandResult runOn(const std::string& file) {
        const std::string& name = GetParam();
        const std::string out = path("out.x");
        if (name == "show") {
            return run({"show", file, "--set", "1"});
        }
        if (name == "show all") {
            return run({"show", file});
        }
        if (name == "show json") {
            return run({"show", file, "--json"});
        }
        if (name == "diff") {
            return run({"diff", good_, file});
        }
        if (name == "edit") {
            return runWith("setVolume 1", {"edit", file, "--script", "-", "--output", out});
        }
        if (name == "export") {
            return run({"export", file, "--set", "1", "--output", out});
        }
        if (name == "import") {
            return run({"import", image_, "--into", file, "--set", "1", "--output", out});
        }
        if (name == "response") {
            return run({"response", file, "--set", "1", "--sum", "1,2", "--json"});
        }
        return run({"curve", file, "--set", "1", "--input"});
    }

    void SetUp() override {
        good_ = fresh("good.eqs");
        image_ = path("good.bin");
        ASSERT_EQ(run({"export", good_, "--set", "1", "--output", image_}).code, 0);
    }

    void expectRefused(const std::string& file, const std::string& reason) {
        const CommandResult result = runOn(file);
        EXPECT_EQ(result.code, 1);
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_THAT(result.err, StartsWith("tessavoctl: "));
        EXPECT_THAT(result.err, HasSubstr(reason));
        EXPECT_THAT(result.err, HasSubstr(file));
        EXPECT_FALSE(std::filesystem::exists(path("out.x")));
    }

    std::string good_;
    std::string image_;
};

TEST_P(SettingsInput, MissingFile) {
    expectRefused(path("missing.eqs"), "no such file");
}

TEST_P(SettingsInput, AFolder) {
    expectRefused(folder_.string(), "Error opening configuration file!");
}

TEST_P(SettingsInput, EmptyFile) {
    write(path("empty.eqs"), {});
    expectRefused(path("empty.eqs"), "the file is empty");
}

TEST_P(SettingsInput, ForeignFile) {
    write(path("text.eqs"), Bytes(20000, 'x'));
    expectRefused(path("text.eqs"), "Incompatible .eqs file!");
}

TEST_P(SettingsInput, OverLongFileIsTaken) {
    Bytes bytes = read(good_);
    bytes.resize(50000, 0xEE);
    write(path("long.eqs"), bytes);
    EXPECT_EQ(runOn(path("long.eqs")).code, 0);
}

TEST_P(SettingsInput, ShortFileWithTheSetInQuestionIsTaken) {
    write(path("short.eqs"), firstBytes(read(good_), 2120));
    // diff compares all five sets, so the missing ones count as different.
    EXPECT_EQ(runOn(path("short.eqs")).code, GetParam() == "diff" ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Commands, SettingsInput,
                         testing::Values("show", "show all", "show json", "diff", "edit", "export", "import",
                                         "curve", "response"));

TEST_F(FileCommands, OnlyTheSetInQuestionIsTested) {
    Bytes bytes = read(fresh());
    bytes[0] = 0;
    write(path("damaged.eqs"), bytes);
    const CommandResult result = run({"show", path("damaged.eqs"), "--set", "1"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err,
                HasSubstr("Incompatible .eqs file! " + path("damaged.eqs") + ": set 1 has no valid record"));
    EXPECT_EQ(run({"show", path("damaged.eqs"), "--set", "3"}).code, 0);
    EXPECT_EQ(run({"export", path("damaged.eqs"), "--set", "5", "--output", path("x.bin")}).code, 0);
    EXPECT_EQ(
        runWith("set 2\nsetVolume 1", {"edit", path("damaged.eqs"), "--script", "-", "-o", path("x.eqs")})
            .code,
        0);
    EXPECT_EQ(
        runWith("setVolume 1", {"edit", path("damaged.eqs"), "--script", "-", "-o", path("y.eqs")}).code, 1);
    EXPECT_EQ(runWith("set 2\nsetVolume 1\nset 1",
                      {"edit", path("damaged.eqs"), "--script", "-", "-o", path("y.eqs")})
                  .code,
              1);
    EXPECT_FALSE(std::filesystem::exists(path("y.eqs")));
    EXPECT_EQ(storeOf(read(path("x.eqs"))).sets[0].recordSize, storeOf(bytes).sets[0].recordSize);
}

// --- edit
// --------------------------------------------------------------------------------------------------------

TEST_F(FileCommands, EditWritesStoreAndImage) {
    const std::string in = fresh();
    const Bytes before = read(in);
    const CommandResult result = run({"edit", in, "--script", script("select 1\nsetVolume 6\n"), "--output",
                                      path("out.eqs"), "--image", path("out.bin")});
    ASSERT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_EQ(storeOf(read(path("out.eqs"))).sets[0].channels[7].volumeDb, 6.0F);
    const ParameterImage image = imageOf(read(path("out.bin")));
    EXPECT_EQ(image.imageSize, parameterImageSize);
    EXPECT_EQ(image.channels[7].gainWord, 33474947U);  // 10^(6 / 20) * 2^24
    EXPECT_EQ(read(in), before);
}

TEST_F(FileCommands, EditMayWriteOverItsOwnInputAndKeepsItsTail) {
    const std::string file = fresh();
    Bytes bytes = read(file);
    bytes.resize(11000, 0x77);
    write(file, bytes);
    ASSERT_EQ(runWith("setVolume 6", {"edit", file, "--script", "-", "--output", file}).code, 0);
    const Bytes after = read(file);
    ASSERT_EQ(after.size(), 11000U);
    EXPECT_EQ(after.back(), 0x77);
    EXPECT_EQ(storeOf(after).sets[0].channels[7].volumeDb, 6.0F);
}

TEST_F(FileCommands, AWrongScriptWritesNothing) {
    const std::string in = fresh();
    const std::string text = script("setVolume 6\nsetVolume 60\n");
    const CommandResult result =
        run({"edit", in, "--script", text, "--output", path("out.eqs"), "--image", path("out.bin")});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.err,
              "tessavoctl: " + text + ", line 2: setVolume: \"60\" is out of range, expected -6 to 18 dB\n");
    EXPECT_THAT(files(), ElementsAre("fresh.eqs", "script.txt"));
}

TEST_F(FileCommands, ScriptsThatCannotBeRead) {
    const std::string in = fresh();
    const auto edit = [&](const std::string& file) {
        return run({"edit", in, "--script", file, "-o", path("o.eqs")});
    };
    EXPECT_THAT(edit(path("missing.txt")).err, HasSubstr("missing.txt: no such file"));
    EXPECT_EQ(edit(path("missing.txt")).code, 1);
    EXPECT_EQ(edit(folder_.string()).code, 1);
    EXPECT_EQ(edit(script(std::string((1U << 20U) + 1, '\n'))).code, 1);
    EXPECT_EQ(
        runWith(std::string((1U << 20U) + 1, '\n'), {"edit", in, "--script", "-", "-o", path("o.eqs")}).code,
        1);
    EXPECT_FALSE(std::filesystem::exists(path("o.eqs")));
    EXPECT_EQ(edit(script(std::string(1U << 20U, '\n'))).code, 0);
}

TEST_F(FileCommands, WhenOneOfTwoOutputsCannotBeWrittenNeitherIs) {
    const std::string in = fresh();
    const Bytes old(20, 0x33);
    write(path("old.eqs"), old);
    for (const char* output : {"new.eqs", "old.eqs"}) {
        const CommandResult result = runWith(
            "setVolume 6",
            {"edit", in, "--script", "-", "--output", path(output), "--image", path("missing/out.bin")});
        EXPECT_EQ(result.code, 1);
        EXPECT_THAT(result.err, HasSubstr("Error opening binary file!"));
    }
    EXPECT_THAT(files(), ElementsAre("fresh.eqs", "old.eqs"));
    EXPECT_EQ(read(path("old.eqs")), old);
}

TEST_F(FileCommands, EditWithoutOutputsOnlyChecks) {
    const std::string in = fresh();
    const Bytes before = read(in);
    CommandResult result = runWith("setVolume 6", {"edit", in, "--script", "-"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, HasSubstr("nothing was written"));
    result = runWith("setVolume 6", {"--quiet", "edit", in, "--script", "-"});
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_EQ(read(in), before);
}

TEST_F(FileCommands, OneFileIsNeverTwoThings) {
    const std::string in = fresh();
    const Bytes before = read(in);
    const std::string detour = path("./fresh.eqs");
    EXPECT_EQ(runWith("", {"edit", in, "--script", "-", "--image", detour}).code, 2);
    EXPECT_EQ(runWith("", {"edit", in, "--script", "-", "--image", path("x"), "--output", path("./x")}).code,
              2);
    EXPECT_EQ(run({"export", in, "--set", "1", "--output", detour}).code, 2);
    EXPECT_EQ(run({"import", in, "--into", in, "--set", "1", "--output", detour}).code, 2);
    EXPECT_EQ(read(in), before);
    EXPECT_THAT(files(), ElementsAre("fresh.eqs"));
}

TEST_F(FileCommands, FilterModeShapesTheImage) {
    const std::string in = fresh();
    ASSERT_EQ(runWith("setBandGainOrQ 6 gain 9", {"edit", in, "--script", "-", "-o", in}).code, 0);
    Bytes images[3];
    for (const char* mode : {"BZT", "MZT", "BZT/MZT"}) {
        ASSERT_EQ(run({"export", in, "--set", "1", "--filter-mode", mode, "--output", path("m.bin")}).code,
                  0);
        images[std::string(mode).size() == 3 ? (mode[0] == 'B' ? 0 : 1) : 2] = read(path("m.bin"));
    }
    EXPECT_NE(images[0], images[1]);
    EXPECT_NE(images[0], images[2]);
    EXPECT_NE(images[1], images[2]);
    ASSERT_EQ(run({"export", in, "--set", "1", "--output", path("m.bin")}).code, 0);
    EXPECT_EQ(read(path("m.bin")), images[0]);
    ASSERT_EQ(
        runWith("", {"edit", in, "--script", "-", "--filter-mode", "MZT", "--image", path("e.bin")}).code, 0);
    EXPECT_EQ(read(path("e.bin")), images[1]);
}

// --- export and import
// -------------------------------------------------------------------------------------------

TEST_F(FileCommands, ExportWritesTheNamedSet) {
    const std::string in = fresh();
    ASSERT_EQ(runWith("set 4\nsetInputBandGain 0 7.9", {"edit", in, "--script", "-", "-o", in}).code, 0);
    ASSERT_EQ(run({"export", in, "--set", "4", "--output", path("4.bin")}).code, 0);
    ASSERT_EQ(run({"export", in, "--set", "3", "--output", path("3.bin")}).code, 0);
    EXPECT_EQ(imageOf(read(path("4.bin"))).inputRow0.bandGainDb[0], 7);
    EXPECT_EQ(imageOf(read(path("3.bin"))).inputRow0.bandGainDb[0], 0);
}

TEST_F(FileCommands, ExportSwitchesTheInputEqualizerAsAskedAndOnOtherwise) {
    const std::string in = fresh();
    ASSERT_EQ(runWith("set 2\nsetInputEqOn 1", {"edit", in, "--script", "-", "-o", in}).code, 0);
    struct Case {
        const char* set;
        const char* option;
        int bypass;
        bool noted;
    };
    // Set 1 says off, as fresh sets do; set 2 says on.
    for (const Case& one :
         {Case{"1", nullptr, 0, true}, Case{"1", "on", 0, false}, Case{"1", "off", 1, false},
          Case{"1", "stored", 1, false}, Case{"2", nullptr, 0, false}, Case{"2", "on", 0, false},
          Case{"2", "off", 1, false}, Case{"2", "stored", 0, false}}) {
        std::vector<std::string> arguments{"export", in, "--set", one.set, "--output", path("i.bin")};
        if (one.option != nullptr) {
            arguments.insert(arguments.end(), {"--input-eq", one.option});
        }
        const CommandResult result = run(arguments);
        const std::string what =
            std::string(one.set) + " " + (one.option != nullptr ? one.option : "default");
        EXPECT_EQ(result.code, 0) << what;
        const ParameterImage image = imageOf(read(path("i.bin")));
        EXPECT_EQ(image.inputRow0.bypass, one.bypass) << what;
        EXPECT_EQ(image.inputRow1.bypass, one.bypass) << what;
        EXPECT_EQ(result.err, one.noted ? "tessavoctl: set 1 of " + in +
                                              " has the input equalizer off, its image has it on; --input-eq "
                                              "stored follows the set\n"
                                        : "")
            << what;
    }
    EXPECT_EQ(run({"-q", "export", in, "--set", "1", "--output", path("i.bin")}).err, "");
}

TEST_F(FileCommands, ExportOverALongerFileKeepsItsTail) {
    write(path("long.bin"), Bytes(4000, 0x5A));
    ASSERT_EQ(run({"export", fresh(), "--set", "1", "--output", path("long.bin")}).code, 0);
    const Bytes bytes = read(path("long.bin"));
    ASSERT_EQ(bytes.size(), 4000U);
    EXPECT_EQ(imageOf(firstBytes(bytes, parameterImageSize)).imageSize, parameterImageSize);
    EXPECT_EQ(bytes.back(), 0x5A);
}

TEST_F(FileCommands, ImportOfAnExportChangesOnlyDelaysAndWholeInputGains) {
    const std::string tuned = path("tuned.eqs");
    ASSERT_EQ(runWith("select 3\nsetVolume 2.5\nsetDelay 1\nsetInvertPhase 1\nsetBandGainOrQ 1 gain 3.3\n"
                      "setInputBandGain 4 3.7\nsetCrossoverFrequency 0 80\nsetName One",
                      {"edit", fresh(), "--script", "-", "-o", tuned})
                  .code,
              0);
    ASSERT_EQ(run({"export", tuned, "--set", "1", "--input-eq", "stored", "--output", path("1.bin")}).code,
              0);
    const CommandResult result =
        run({"import", path("1.bin"), "--into", tuned, "--set", "1", "--output", path("back.eqs")});
    ASSERT_EQ(result.code, 0) << result.err;
    const CommandResult diff = run({"diff", tuned, path("back.eqs")});
    EXPECT_EQ(diff.code, 1);
    std::vector<std::string> changed;
    std::istringstream lines(diff.out);
    for (std::string line; std::getline(lines, line);) {
        changed.push_back(line.substr(0, line.find(':')));
    }
    EXPECT_THAT(changed, testing::UnorderedElementsAre(
                             "set 1 inputBand[4].gain", "set 1 channel[0].delay", "set 1 channel[1].delay",
                             "set 1 channel[2].delay", "set 1 channel[3].delay", "set 1 channel[4].delay",
                             "set 1 channel[5].delay", "set 1 channel[6].delay", "set 1 channel[7].delay"));
    const ParameterStore back = storeOf(read(path("back.eqs")));
    EXPECT_EQ(back.sets[0].channels[0].delayMs, 49.5F / 48.0F);
    EXPECT_EQ(back.sets[0].inputEqBands[4].gainDb, 3.0F);
}

TEST_F(FileCommands, ImportGoesIntoTheNamedSetAndRouterSourcesIntoAll) {
    const std::string file = fresh();
    ASSERT_EQ(
        runWith("setVolume 5\nsetRouterSource 3 9", {"edit", file, "--script", "-", "--image", path("i.bin")})
            .code,
        0);
    ASSERT_EQ(run({"import", path("i.bin"), "--into", file, "--set", "4", "--output", file}).code, 0);
    const ParameterStore store = storeOf(read(file));
    EXPECT_EQ(store.sets[3].channels[7].volumeDb, 5.0F);
    EXPECT_EQ(store.sets[0].channels[7].volumeDb, 0.0F);
    for (const ParameterSet& set : store.sets) {
        EXPECT_EQ(set.routerSource[3], 9);
    }
}

TEST_F(FileCommands, ImportRefusesWhatIsNoImage) {
    const std::string file = fresh();
    const auto import = [&](const std::string& image) {
        return run({"import", image, "--into", file, "--set", "1", "--output", path("o.eqs")});
    };
    EXPECT_THAT(import(path("missing.bin")).err, HasSubstr("no such file"));
    EXPECT_EQ(import(folder_.string()).code, 1);
    write(path("short.bin"), Bytes(3383, 0x38));
    EXPECT_THAT(import(path("short.bin")).err, HasSubstr("it has 3383 bytes instead of 3384"));
    write(path("empty.bin"), {});
    EXPECT_EQ(import(path("empty.bin")).code, 1);
    write(path("foreign.bin"), Bytes(3384, 0x01));
    EXPECT_THAT(import(path("foreign.bin")).err,
                HasSubstr("starts with the number 16843009 instead of 3384"));
    EXPECT_EQ(import(path("foreign.bin")).code, 1);
    EXPECT_FALSE(std::filesystem::exists(path("o.eqs")));
}

TEST_F(FileCommands, ImportTakesTheStartOfALongerFile) {
    const std::string file = fresh();
    ASSERT_EQ(run({"export", file, "--set", "1", "--output", path("i.bin")}).code, 0);
    Bytes bytes = read(path("i.bin"));
    bytes.resize(9000, 0xFF);
    write(path("i.bin"), bytes);
    EXPECT_EQ(run({"import", path("i.bin"), "--into", file, "--set", "1", "--output", path("o.eqs")}).code,
              0);
}

// Everything but the size word may be anything.
TEST_F(FileCommands, ImportOfAnyBytesNeitherCrashesNorWritesHalf) {
    const std::string file = fresh();
    for (const std::uint8_t fill : Bytes{0x00, 0x7F, 0x80, 0xFF}) {
        Bytes bytes(parameterImageSize, fill);
        bytes[0] = 0x38;
        bytes[1] = 0x0D;
        bytes[2] = bytes[3] = 0;
        write(path("odd.bin"), bytes);
        const CommandResult result =
            run({"import", path("odd.bin"), "--into", file, "--set", "2", "--output", path("odd.eqs")});
        EXPECT_EQ(result.code, 0) << result.err;
        EXPECT_EQ(read(path("odd.eqs")).size(), parameterStoreSize);
        EXPECT_EQ(run({"show", path("odd.eqs"), "--json"}).code, 0);
        EXPECT_EQ(run({"show", path("odd.eqs")}).code, 0);
    }
}

// --- curve
// -------------------------------------------------------------------------------------------------------

TEST_F(FileCommands, CurvePrintsAThousandLines) {
    const std::string file = fresh();
    ASSERT_EQ(runWith("select 3\nsetBandGainOrQ 3 gain 12\nsetInputBandGain 4 -9",
                      {"edit", file, "--script", "-", "-o", file})
                  .code,
              0);
    for (const auto& [which, peak] : {std::pair{std::vector<std::string>{"--channel", "3"}, 12},
                                      std::pair{std::vector<std::string>{"--channel", "4"}, 0},
                                      std::pair{std::vector<std::string>{"--input"}, -9}}) {
        std::vector<std::string> arguments{"curve", file, "--set", "1"};
        arguments.insert(arguments.end(), which.begin(), which.end());
        const CommandResult result = run(arguments);
        ASSERT_EQ(result.code, 0) << result.err;
        std::istringstream lines(result.out);
        int count = 0;
        for (int frequency = 0, magnitude = 0; lines >> frequency >> magnitude;) {
            ++count;
            EXPECT_EQ(frequency, 20 * count);
            if (frequency == 1000) {
                EXPECT_NEAR(magnitude, peak, 1);
            }
        }
        EXPECT_EQ(count, 1000);
        EXPECT_THAT(result.out, EndsWith("\n"));
    }
}

}  // namespace
}  // namespace tessavo::test
