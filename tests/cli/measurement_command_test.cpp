#include <algorithm>
#include <cmath>
#include <filesystem>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "cli/cli_fixture.h"
#include "measure/measurement_text.h"
#include "measure/smoothing.h"

namespace tessavo::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using Json = nlohmann::json;

class MeasurementCommand : public CommandTest {
 protected:
    std::string writeText(const std::string& name, std::string_view text) const {
        write(path(name), Bytes(text.begin(), text.end()));
        return path(name);
    }

    [[nodiscard]] static Json json(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "measurement");
        arguments.emplace_back("--json");
        const CommandResult result = run(arguments);
        EXPECT_EQ(result.code, 0) << result.err;
        EXPECT_THAT(result.err, IsEmpty());
        return Json::parse(result.out);
    }

    /// Runs a command that must refuse its files.
    /// \return what it says, without the program's name
    [[nodiscard]] static std::string refusal(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "measurement");
        const CommandResult result = run(arguments);
        EXPECT_EQ(result.code, 1);
        EXPECT_THAT(result.out, IsEmpty());
        const std::string program = "tessavoctl: ";
        EXPECT_THAT(result.err, StartsWith(program));
        EXPECT_EQ(std::ranges::count(result.err, '\n'), 1) << result.err;
        return result.err.substr(program.size());
    }

    [[nodiscard]] static double level(const Json& all, std::size_t point) {
        return all["curve"][point][1].get<double>();
    }
};

TEST_F(MeasurementCommand, PrintsTheShapeThatTheDocumentsTell) {
    const std::string file =
        writeText("a.txt", "* a comment\n1000 80.5\n20 71\n0 12\n20 73\n5000.25 -3e-1\n");
    const CommandResult result = run({"measurement", file, "--json"});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_EQ(result.out,
              "{\n  \"points\": 3,\n  \"from_hz\": 20,\n  \"to_hz\": 5000.25,\n  \"has_phase\": false,\n"
              "  \"skipped_lines\": 0,\n  \"curve\": [\n    [20, 72],\n    [1000, 80.5],\n    [5000.25, "
              "-0.3]\n  ]\n}\n");
}

TEST_F(MeasurementCommand, PrintsAnUnwrappedPhase) {
    const std::string file = writeText(
        "a.txt",
        "Freq(Hz)\tSPL(dB)\tPhase(degrees)\n20\t70\t170\n40\t71\t-170\n80\t72\t-50\n160\t-0.0\t100\n");
    const CommandResult result = run({"measurement", file, "--json"});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("\"has_phase\": true,\n"));
    EXPECT_THAT(result.out,
                HasSubstr("\"curve\": [\n    [20, 70, 170],\n    [40, 71, 190],\n    [80, 72, 310],\n"
                          "    [160, 0, 460]\n  ]\n}\n"));
}

TEST_F(MeasurementCommand, PrintsLinesForPeople) {
    const std::string two = writeText("two.txt", "20 70\n40 71.25\n");
    EXPECT_EQ(run({"measurement", two}).out,
              "points: 2\nfrom: 20 Hz\nto: 40 Hz\nphase: no\nskipped lines: 0\n\nHz dB\n20 70\n40 71.25\n");
    const std::string three = writeText("three.txt", "Hz dB phase\n20 70 10\n40 71.25 -90\n");
    EXPECT_EQ(run({"measurement", three}).out,
              "points: 2\nfrom: 20 Hz\nto: 40 Hz\nphase: yes\nskipped lines: 0\n\nHz dB degrees\n20 70 "
              "10\n40 71.25 "
              "-90\n");
}

TEST_F(MeasurementCommand, CountsSkippedLinesOfTheMeasurementsAlone) {
    const std::string first = writeText("first.txt", "20 70\nthe end of a page\n\n40 71\nanother\n80 70\n");
    const std::string second = writeText("second.txt", "20 70\n40 71\n# a comment\nof the second\n80 70\n");
    const std::string microphone = writeText("mic.txt", "20 0\nof the microphone\n80 0\n");
    EXPECT_EQ(json({first})["skipped_lines"], 2);
    EXPECT_EQ(json({first, second})["skipped_lines"], 4);
    EXPECT_EQ(json({first, second, "--calibration", microphone})["skipped_lines"], 4);
    EXPECT_EQ(json({microphone})["skipped_lines"], 1);
}

TEST_F(MeasurementCommand, ReadsTheColumnsThatAreNamed) {
    const std::string file = writeText("a.txt", "1 20 70 60\n2 40 71 61\n3 80 72 62\n");
    const Json levels = json({file, "--columns", "2,3"})["curve"];
    EXPECT_EQ(levels, (Json{{20, 70}, {40, 71}, {80, 72}}));
    const Json others = json({file, "--columns", "2,4"})["curve"];
    EXPECT_EQ(others, (Json{{20, 60}, {40, 61}, {80, 62}}));
    const Json turned = json({file, "--columns", "4,2"})["curve"];
    EXPECT_EQ(turned, (Json{{60, 20}, {61, 40}, {62, 80}}));
    // They are those of every measurement, not of the microphone.
    const std::string microphone = writeText("mic.txt", "20 10\n80 10\n");
    const Json calibrated = json({file, file, "--columns", "2,3", "--calibration", microphone});
    EXPECT_NEAR(level(calibrated, 0), 60.0, 1e-9);
    EXPECT_EQ(calibrated["from_hz"], 20);
    EXPECT_EQ(calibrated["to_hz"], 80);
}

TEST_F(MeasurementCommand, TakesTheMeanOfThePowerOverWhatAllHave) {
    const std::string first = writeText("first.txt", "20 60\n10000 60\n");
    const std::string second = writeText("second.txt", "50 70\n20000 70\n");
    const Json mean = json({first, second});
    const std::vector<double> hertz = evenFrequencies(50.0, 10000.0);
    ASSERT_EQ(mean["points"], hertz.size());
    ASSERT_EQ(mean["curve"].size(), hertz.size());
    EXPECT_EQ(mean["from_hz"], 50);
    EXPECT_EQ(mean["to_hz"], 10000);
    for (std::size_t i = 0; i < hertz.size(); ++i) {
        ASSERT_EQ(mean["curve"][i].size(), 2U);
        ASSERT_EQ(mean["curve"][i][0], hertz[i]);
        ASSERT_NEAR(level(mean, i), 10 * std::log10((1e6 + 1e7) / 2), 1e-12);
    }
}

TEST_F(MeasurementCommand, TheMeanOfSeveralHasNoPhase) {
    const std::string file = writeText("a.txt", "Hz dB phase\n20 70 10\n40 71 -90\n");
    EXPECT_EQ(json({file})["has_phase"], true);
    EXPECT_EQ(json({file, file})["has_phase"], false);
}

TEST_F(MeasurementCommand, TakesOffWhatTheMicrophoneAdds) {
    const std::string file = writeText("a.txt", "20 70\n40 71\n80 72\n8000 73\n");
    const std::string microphone = writeText("mic.txt", "20 -6\n80 2\n");
    const Json all = json({file, "--calibration", microphone});
    ASSERT_EQ(all["points"], 4);
    EXPECT_NEAR(level(all, 0), 76.0, 1e-9);
    EXPECT_NEAR(level(all, 1), 73.0, 1e-9);
    EXPECT_NEAR(level(all, 2), 70.0, 1e-9);
    EXPECT_NEAR(level(all, 3), 71.0, 1e-9);
}

TEST_F(MeasurementCommand, SmoothsTheMeanAfterTheMicrophoneIsTakenOff) {
    const std::string peak = writeText("peak.txt", "20 0\n990 0\n1000 60\n1010 0\n20000 0\n");
    const std::string flat = writeText("flat.txt", "20 0\n20000 0\n");
    const std::string none = writeText("mic.txt", "20 0\n990 0\n1000 60\n1010 0\n20000 0\n");
    const auto highest = [](const Json& all) {
        double highestDb = -1000;
        for (const Json& point : all["curve"]) {
            highestDb = std::max(highestDb, point[1].get<double>());
        }
        return highestDb;
    };
    EXPECT_EQ(highest(json({peak})), 60.0);
    EXPECT_EQ(json({peak, "--smoothing", "none"}), json({peak}));
    const Json narrow = json({peak, "--smoothing", "1/48"});
    const Json wide = json({peak, "--smoothing", "1/1"});
    EXPECT_EQ(narrow["points"], evenFrequencies(20.0, 20000.0).size());
    EXPECT_LT(highest(narrow), 59.0);
    EXPECT_NEAR(highest(narrow) - highest(wide), 10 * std::log10(48.0), 0.1);
    EXPECT_NEAR(highest(json({peak, "--smoothing", "1/6"})) - highest(wide), 10 * std::log10(6.0), 0.1);
    // A microphone that makes the peak leaves nothing that smoothing could spread.
    EXPECT_NEAR(highest(json({peak, "--smoothing", "1/1", "--calibration", none})), 0.0, 1e-9);
    // The mean is at 96 points an octave, which is enough for a hill.
    const std::string hill = writeText("hill.txt", "20 0\n500 0\n1000 60\n2000 0\n20000 0\n");
    const double alone = highest(json({hill, "--smoothing", "1/1"}));
    EXPECT_NEAR(alone - highest(json({hill, flat, "--smoothing", "1/1"})), 10 * std::log10(2.0), 0.01);
}

TEST_F(MeasurementCommand, RefusesFilesThatCannotBeRead) {
    const std::string good = writeText("good.txt", "20 70\n40 71\n");
    EXPECT_EQ(refusal({path("none.txt")}), path("none.txt") + ": no such file\n");
    EXPECT_EQ(refusal({good, path("none.txt"), "--json"}), path("none.txt") + ": no such file\n");
    EXPECT_EQ(refusal({good, "--calibration", path("none.txt")}), path("none.txt") + ": no such file\n");
    std::filesystem::create_directory(folder_ / "folder");
    EXPECT_EQ(refusal({path("folder")}), path("folder") + ": is a directory\n");
    const std::string empty = writeText("empty.txt", "");
    EXPECT_THAT(refusal({empty}), StartsWith(empty + ": "));
    EXPECT_THAT(refusal({good, "--calibration", empty, "--json"}), StartsWith(empty + ": "));
    EXPECT_EQ(files(), (std::vector<std::string>{"empty.txt", "folder", "good.txt"}));
}

TEST_F(MeasurementCommand, SaysWhereAFileCannotBeRead) {
    const std::string file = writeText("bad.txt", "20 70\n");
    EXPECT_THAT(refusal({file, "--json"}), StartsWith(file + ":"));
    const std::string good = writeText("good.txt", "20 70\n40 71\n");
    EXPECT_THAT(refusal({good, "--columns", "1,7"}), StartsWith(good + ":"));
}

TEST_F(MeasurementCommand, RefusesMeasurementsWithoutACommonRange) {
    const std::string low = writeText("low.txt", "20 70\n100 71\n");
    const std::string high = writeText("high.txt", "200 70\n400 71\n");
    const std::string touching = writeText("touching.txt", "100 70\n400 71\n");
    const std::string reason = "The measurements have no range of frequencies in common.\n";
    EXPECT_EQ(refusal({low, high}), reason);
    EXPECT_EQ(refusal({low, touching, "--json"}), reason);
}

TEST_F(MeasurementCommand, RefusesAFileThatIsTooLarge) {
    std::string text = "20 70\n40 71\n";
    text.resize(mostMeasurementBytes, ' ');
    const std::string file = writeText("large.txt", text);
    EXPECT_EQ(json({file})["points"], 2);
    text.push_back(' ');
    writeText("large.txt", text);
    EXPECT_THAT(refusal({file}), StartsWith(file + ": "));
}

}  // namespace
}  // namespace tessavo::test
