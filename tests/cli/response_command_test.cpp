#include <cmath>
#include <gmock/gmock.h>
#include <locale>
#include <nlohmann/json.hpp>
#include <sstream>

#include "base/number_text.h"
#include "cli/cli_fixture.h"

namespace tessavo::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using Json = nlohmann::json;

class ResponseCommand : public CommandTest {
 protected:
    void edit(const std::string& script) {
        const CommandResult result = runWith(script, {"edit", file_, "--script", "-", "-o", file_});
        ASSERT_EQ(result.code, 0) << result.err;
    }

    [[nodiscard]] Json json(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"response", file_, "--set", "1"});
        arguments.emplace_back("--json");
        const CommandResult result = run(arguments);
        EXPECT_EQ(result.code, 0) << result.err;
        EXPECT_THAT(result.err, IsEmpty());
        return Json::parse(result.out);
    }

    std::string file_ = fresh();
};

TEST_F(ResponseCommand, PrintsTheShapeThatTheDocumentsTell) {
    edit("select 1\nsetVolume -6");
    const CommandResult result =
        run({"response", file_, "--set", "1", "--channel", "1", "--at", "0,1000.5,24750", "--json"});
    EXPECT_EQ(result.code, 0);
    // 20 log10(0x00804DCE / 2^24), worked out with 30 digits, is -6.00000049067578457. The logarithms of two systems differ
    // in the last bit.
    const double levelDb = Json::parse(result.out)["points"][0]["db"].get<double>();
    EXPECT_DOUBLE_EQ(levelDb, -6.00000049067578457);
    const std::string rest =
        ", \"db\": " + shortestText(levelDb) + ", \"phase_degrees\": 0, \"group_delay_ms\": 0}";
    EXPECT_EQ(result.out, "{\n  \"points\": [\n    {\"hz\": 0" + rest + ",\n    {\"hz\": 1000.5" + rest +
                              ",\n    {\"hz\": 24750" + rest + "\n  ]\n}\n");
}

TEST_F(ResponseCommand, TellsCornerDelayAndPolarityOfAChannel) {
    // By hand: a low-pass of 4th order is at -6.02 dB, 180 degrees, where tan(pi f / 49500) = tan(pi 1000 / 44100); 50
    // samples for a millisecond turn by 360 * 50 * f / 49500 degrees, the polarity by 180.
    edit("select 3\nsetCrossover 1 lp 4 1\nsetCrossoverFrequency 1 1000\nsetDelay 1\nsetInvertPhase 1");
    const Json points = json({"--channel", "3", "--at", "1122.4489795918366"})["points"];
    ASSERT_EQ(points.size(), 1U);
    EXPECT_EQ(points[0].size(), 4U);
    EXPECT_NEAR(points[0]["db"].get<double>(), -20 * std::log10(2.0), 1e-4);
    const double turned = -360.0 * 50 * 1122.4489795918366 / 49500;
    EXPECT_NEAR(points[0]["phase_degrees"].get<double>(), turned + 360, 1e-3);
    const double k = std::tan(std::numbers::pi * 1000 / 44100);
    const double samples = 50 + 2 * std::numbers::sqrt2 * (1 + k * k) / (2 * k);
    EXPECT_NEAR(points[0]["group_delay_ms"].get<double>(), samples / 49.5, 1e-4);
}

TEST_F(ResponseCommand, NumbersChannelsAsThePagesDo) {
    for (int channel = 1; channel <= 8; ++channel) {
        edit("select all\nsetVolume 0\nselect " + std::to_string(channel) + "\nsetVolume 6");
        for (int other = 1; other <= 8; ++other) {
            const Json alone = json({"--channel", std::to_string(other), "--at", "50"})["points"];
            EXPECT_NEAR(alone[0]["db"].get<double>(), other == channel ? 6.0 : 0.0, 1e-6);
            const Json sum = json({"--sum", std::to_string(other), "--at", "50"})["points"];
            EXPECT_EQ(sum[0], alone[0]);
        }
    }
}

TEST_F(ResponseCommand, FollowsTheSetAndTheFilterMode) {
    // By hand: a bilinear high shelf is 1 at 0 Hz. A matched one of Q = 1 has 1 - 2 r cos(sqrt(3)/2 x) + r with
    // r = exp(-x/2) above and below, x being w T divided by sqrt(V) for the numerator and w T for the denominator.
    const auto matched = [](double x) {
        const double r = std::exp(-x / 2);
        return 1 - 2 * r * std::cos(std::numbers::sqrt3 / 2 * x) + r;
    };
    const double angle = 2 * std::numbers::pi * 1000 / 44100;
    const double matchedDb = 20 * std::log10(matched(angle / std::pow(10, 12 / 40.0)) / matched(angle));
    edit(
        "select 2\nsetBandType 0 high-shelf\nsetBandFrequency 0 1000\nsetBandGainOrQ 0 gain 12\nsetBandOff 0 "
        "0");
    const auto levelOf = [&](const std::string& mode) {
        return json({"--channel", "2", "--filter-mode", mode, "--at", "0"})["points"][0]["db"].get<double>();
    };
    EXPECT_NEAR(levelOf("BZT"), 0.0, 1e-3);
    EXPECT_NEAR(levelOf("MZT"), matchedDb, 1e-5);
    EXPECT_GT(levelOf("BZT/MZT"), matchedDb + 0.1);
    EXPECT_LT(levelOf("BZT/MZT"), -0.1);
    const CommandResult other = run(
        {"response", file_, "--set", "2", "--channel", "2", "--filter-mode", "MZT", "--at", "0", "--json"});
    EXPECT_EQ(Json::parse(other.out)["points"][0]["db"], 0);
}

TEST_F(ResponseCommand, AddsChannelsAsComplexNumbers) {
    // Two channels alike are 20 log10(2) dB louder, three in quadrature and so on by their delays.
    EXPECT_EQ(json({"--sum", "1,2", "--at", "100"})["points"][0]["db"].get<double>(), 20 * std::log10(2.0));
    edit("select 4\nsetDelay 1");
    const Json points = json({"--sum", "4,5", "--at", "247.5,1000"})["points"];
    // 50 samples are a quarter of a turn at 247.5 Hz.
    EXPECT_NEAR(points[0]["db"].get<double>(), 10 * std::log10(2.0), 1e-12);
    EXPECT_NEAR(points[0]["phase_degrees"].get<double>(), -45.0, 1e-12);
    EXPECT_NEAR(points[0]["group_delay_ms"].get<double>(), 25 / 49.5, 1e-12);
}

TEST_F(ResponseCommand, HasNoLevelWhereASumIsExactlyNothing) {
    edit(
        "select 1 2\nsetBandGainOrQ 2 gain 7.5\nsetBandOff 2 0\nsetCrossover 0 hp 4 1\nselect "
        "2\nsetInvertPhase 1");
    const Json points = json({"--sum", "1,2", "--points", "50"})["points"];
    ASSERT_EQ(points.size(), 50U);
    for (const Json& point : points) {
        EXPECT_TRUE(point["hz"].is_number());
        for (const char* key : {"db", "phase_degrees", "group_delay_ms"}) {
            EXPECT_TRUE(point.at(key).is_null()) << key;
        }
    }
    const CommandResult table = run({"response", file_, "--set", "1", "--sum", "1,2", "--at", "1000"});
    EXPECT_EQ(table.out, "1000 -inf nan nan\n");
    // A third channel is heard again.
    EXPECT_NEAR(json({"--sum", "1,2,3", "--at", "1000"})["points"][0]["db"].get<double>(), 0.0, 1e-12);
}

TEST_F(ResponseCommand, PhaseIsNeverMinusHalfATurn) {
    edit("select 1\nsetInvertPhase 1\nsetDelay 2\nsetCrossover 0 hp 2 1");
    const Json all = json({"--channel", "1", "--points", "5000"});
    ASSERT_EQ(all["points"].size(), 5000U);
    for (const Json& point : all["points"]) {
        const double degrees = point["phase_degrees"].get<double>();
        ASSERT_GT(degrees, -180.0);
        ASSERT_LE(degrees, 180.0);
    }
    edit("select 2\nsetInvertPhase 1");
    EXPECT_EQ(json({"--channel", "2", "--at", "0"})["points"][0]["phase_degrees"], 180);
}

TEST_F(ResponseCommand, SpreadsItsPointsInEqualRatios) {
    const Json few = json({"--channel", "1", "--points", "4"})["points"];
    ASSERT_EQ(few.size(), 4U);
    EXPECT_EQ(few[0]["hz"], 20);
    EXPECT_NEAR(few[1]["hz"].get<double>(), 200, 1e-10);
    EXPECT_NEAR(few[2]["hz"].get<double>(), 2000, 1e-9);
    EXPECT_EQ(few[3]["hz"], 20000);
    EXPECT_EQ(json({"--channel", "1", "--points", "2"})["points"].size(), 2U);
    EXPECT_EQ(json({"--channel", "1"})["points"].size(), 1000U);
    const CommandResult most = run({"response", file_, "--set", "1", "--channel", "1", "--points", "100000"});
    EXPECT_EQ(std::ranges::count(most.out, '\n'), 100000);
}

TEST_F(ResponseCommand, PrintsATableWithTheSameNumbers) {
    edit("select 1\nsetBandGainOrQ 3 gain -7.3\nsetBandOff 3 0\nsetDelay 0.7");
    const CommandResult table = run({"response", file_, "--set", "1", "--channel", "1"});
    const Json points = json({"--channel", "1"})["points"];
    std::istringstream lines(table.out);
    std::size_t count = 0;
    for (std::string hz, db, degrees, delay; lines >> hz >> db >> degrees >> delay; ++count) {
        const Json& point = points.at(count);
        // Each text is the shortest that reads back as the same number.
        for (const auto& [text, key] :
             {std::pair{hz, "hz"}, {db, "db"}, {degrees, "phase_degrees"}, {delay, "group_delay_ms"}}) {
            ASSERT_EQ(finiteNumber(text), point[key].get<double>()) << key;
            ASSERT_EQ(text, shortestText(point[key].get<double>())) << key;
        }
    }
    EXPECT_EQ(count, 1000U);
}

TEST_F(ResponseCommand, TakesFrequenciesInAnyOrderAndBeyondHalfTheRate) {
    edit("select 1\nsetBandGainOrQ 3 gain -7.3\nsetBandOff 3 0");
    const Json points = json({"--channel", "1", "--at", "1000,20,1000,50500,48500,1e300"})["points"];
    ASSERT_EQ(points.size(), 6U);
    EXPECT_EQ(points[0], points[2]);
    EXPECT_EQ(points[0]["db"], points[3]["db"]);
    EXPECT_EQ(points[0]["db"], points[4]["db"]);
    EXPECT_EQ(points[1]["hz"], 20);
    EXPECT_EQ(points[5]["hz"], 1e300);
    EXPECT_TRUE(points[5]["db"].is_number());
}

class CommaForDecimals : public std::numpunct<char> {
 protected:
    [[nodiscard]] char do_decimal_point() const override { return ','; }
    [[nodiscard]] char do_thousands_sep() const override { return '.'; }
    [[nodiscard]] std::string do_grouping() const override { return "\3"; }
};

TEST_F(ResponseCommand, IsTheSameInEveryLocale) {
    edit("select 1\nsetBandGainOrQ 3 gain -7.3\nsetBandOff 3 0");
    const std::vector<std::string> arguments{"response", file_,  "--set",   "1",     "--channel",
                                             "1",        "--at", "12345.5", "--json"};
    const CommandResult usual = run(arguments);
    const std::locale before = std::locale::global(std::locale(std::locale(), new CommaForDecimals));
    const CommandResult comma = run(arguments);
    std::locale::global(before);
    EXPECT_EQ(comma.code, 0);
    EXPECT_EQ(comma.out, usual.out);
    EXPECT_THAT(comma.out, HasSubstr("12345.5"));
}

TEST_F(ResponseCommand, LeavesItsFileAlone) {
    const Bytes before = read(file_);
    EXPECT_EQ(json({"--sum", "1,2,3,4,5,6,7,8"})["points"].size(), 1000U);
    EXPECT_EQ(read(file_), before);
    EXPECT_EQ(files(), std::vector<std::string>{"fresh.eqs"});
}

TEST_F(ResponseCommand, RefusesASetWithoutAValidRecord) {
    Bytes bytes = read(file_);
    bytes[2120] = 0;
    write(file_, bytes);
    const CommandResult result = run({"response", file_, "--set", "2", "--channel", "1"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, HasSubstr(file_));
    EXPECT_EQ(run({"response", file_, "--set", "1", "--channel", "1"}).code, 0);
}

TEST_F(ResponseCommand, SaysWhatIsWrongWithAList) {
    const CommandResult at = run({"response", file_, "--set", "1", "--channel", "1", "--at", "100,-5"});
    EXPECT_EQ(at.code, 2);
    EXPECT_THAT(at.err, HasSubstr("--at: \"100,-5\": frequencies are numbers of Hz, 0 or above"));
    const CommandResult sum = run({"response", file_, "--set", "1", "--sum", "1,9"});
    EXPECT_EQ(sum.code, 2);
    EXPECT_THAT(sum.err, HasSubstr("--sum: \"1,9\": channels are 1 to 8, each once"));
    const CommandResult both =
        run({"response", file_, "--set", "1", "--channel", "1", "--at", "1", "--points", "3"});
    EXPECT_EQ(both.code, 2);
    EXPECT_THAT(both.err, HasSubstr("--points"));
}

}  // namespace
}  // namespace tessavo::test
