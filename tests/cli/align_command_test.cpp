#include <filesystem>

#include "cli/filter_fixture.h"

namespace tessavo::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

const std::string car = "112,142,116,138,124,148,96,245";

class AlignCommand : public FilterTextTest {
 protected:
    [[nodiscard]] CommandResult align(std::vector<std::string> more) const {
        std::vector<std::string> arguments{"align", file_, "--set", "2", "--output", output_};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }
    [[nodiscard]] Json json(std::vector<std::string> more) const {
        more.emplace_back("--json");
        const CommandResult result = align(more);
        EXPECT_EQ(result.code, 0) << result.err;
        return Json::parse(result.out);
    }
    /// Expects these delays in the output, in tenths of a millisecond or -1 for a channel that is left out, and every
    /// other byte as it was.
    void expectDelays(const std::array<int, channelCount>& groups,
                      const std::array<int, channelCount>& channels) const {
        ParameterStore expected = storeOf(file_);
        for (int position = 0; position < static_cast<int>(channelCount); ++position) {
            const auto index = static_cast<std::size_t>(position);
            if (groups.at(index) >= 0) {
                OutputChannelParams& channel = channelIn(expected, 2, position + 1);
                channel.groupDelayMs = static_cast<float>(groups.at(index)) / 10.0F;
                channel.delayMs = static_cast<float>(channels.at(index)) / 10.0F;
            }
        }
        const ParameterStore written = storeOf(output_);
        EXPECT_EQ(std::memcmp(&written, &expected, sizeof written), 0);
    }

    std::mt19937 random_{33};
    std::string file_ = random("car.eqs", random_);
    std::string output_ = path("aligned.eqs");
};

TEST_F(AlignCommand, WritesTheDelaysOfTheSetAndNoOtherByte) {
    const Bytes before = read(file_);
    const CommandResult result = align({"--distances", car});
    EXPECT_EQ(result.code, 0);
    expectDelays({20, 20, 20, 20, 20, 20, 20, 0}, {19, 10, 18, 11, 15, 8, 20, 0});
    EXPECT_TRUE(read(file_) == before);
    EXPECT_EQ(result.out,
              "Channel  Needs ms  Group ms  Channel ms  Result\n"
              "1        3.9       2.0       1.9         within 1 cm\n"
              "2        3.0       2.0       1.0         within 1 cm\n"
              "3        3.8       2.0       1.8         within 2 cm\n"
              "4        3.1       2.0       1.1         within 1 cm\n"
              "5        3.5       2.0       1.5         within 1 cm\n"
              "6        2.8       2.0       0.8         within 1 cm\n"
              "7        4.3       2.0       2.0         12 cm too early\n"
              "8        0.0       0.0       0.0         the farthest\n"
              "Sound goes 343.2 m/s.\n");
    EXPECT_EQ(
        result.err,
        "tessavoctl: Channel 7: 4.3 ms are needed, 4.0 ms are possible (2.0 ms in the group, 2.0 ms in the "
        "channel); 0.3 ms or 12 cm are missing.\n"
        "tessavoctl: All eight are in line if the farthest is at 233 cm or nearer: channel 8 now 245 cm.\n");
}

TEST_F(AlignCommand, TellsNothingMoreWhereAllIsReached) {
    const CommandResult result = align({"--distances", "112,142,116,138,124,148,96,233"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_THAT(result.out, testing::Not(HasSubstr("too early")));
}

TEST_F(AlignCommand, PrintsTheShapeThatTheDocumentsTell) {
    const CommandResult result = align({"--times", "1,-,-,6,-,-,-,-", "--temperature", "0", "--json"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out,
              "{\n  \"speed_of_sound_m_s\": 331.3,\n  \"reachable\": false,\n  \"farthest_channel\": 4,\n"
              "  \"farthest_possible_cm\": 165.65,\n  \"farthest_possible_ms\": 5,\n  \"channels\": [\n"
              "    {\"channel\": 1, \"needed_ms\": 5, \"group_delay_ms\": 2, \"channel_delay_ms\": 2, "
              "\"missing_ms\": 1, \"missing_cm\": 33.13},\n"
              "    {\"channel\": 4, \"needed_ms\": 0, \"group_delay_ms\": 0, \"channel_delay_ms\": 0, "
              "\"missing_ms\": 0, \"missing_cm\": 0}\n  ]\n}\n");
    expectDelays({20, -1, -1, 0, -1, -1, -1, -1}, {20, -1, -1, 0, -1, -1, -1, -1});
    EXPECT_THAT(result.err,
                HasSubstr("Both are in line if the farthest arrives at 5.00 ms or sooner: channel 4 now "
                          "6 ms."));
}

TEST_F(AlignCommand, TheAirDecidesOfDistancesAndNotOfTimes) {
    const std::string distances = "-,100,-,-,-,-,-,200";
    const Json cold = json({"--distances", distances, "--temperature", "-40"});
    EXPECT_NEAR(cold["channels"][0]["needed_ms"].get<double>(), 3.267, 0.001);
    expectDelays({-1, 20, -1, -1, -1, -1, -1, 0}, {-1, 13, -1, -1, -1, -1, -1, 0});
    const Json hot = json({"--distances", distances, "--temperature", "60"});
    EXPECT_NEAR(hot["channels"][0]["needed_ms"].get<double>(), 2.733, 0.001);
    expectDelays({-1, 20, -1, -1, -1, -1, -1, 0}, {-1, 7, -1, -1, -1, -1, -1, 0});
    const Json warm = json({"--distances", distances});
    EXPECT_NEAR(warm["speed_of_sound_m_s"].get<double>(), 343.2, 0.05);
    EXPECT_TRUE(warm["reachable"].get<bool>());
    const Json times = json({"--times", "-,1,-,-,-,-,-,2.7", "--temperature", "-40"});
    EXPECT_NEAR(times["channels"][0]["needed_ms"].get<double>(), 1.7, 1e-9);
    expectDelays({-1, 17, -1, -1, -1, -1, -1, 0}, {-1, 0, -1, -1, -1, -1, -1, 0});
}

TEST_F(AlignCommand, RefusesWhatIsNoListOfEightAndWritesNothing) {
    const Bytes before = read(file_);
    const std::vector<std::vector<std::string>> wrong{{},
                                                      {"--distances", car, "--times", car},
                                                      {"--distances", "1,2,3"},
                                                      {"--distances", car + ",1"},
                                                      {"--distances", "1,2,3,4,5,6,7,-8"},
                                                      {"--distances", "1,2,3,4,5,6,7,x"},
                                                      {"--distances", "1,2,3,4,5,6,7,"},
                                                      {"--distances", "-,-,-,-,-,-,-,-"},
                                                      {"--times", "1,2,3,4,5,6,7,nan"},
                                                      {"--times", "1,2,3,4,5,6,7"},
                                                      {"--distances", car, "--temperature", "60.1"},
                                                      {"--distances", car, "--temperature", "-41"},
                                                      {"--distances", car, "--temperature", "nan"},
                                                      {"--distances", car, "--temperature", "warm"}};
    for (const auto& arguments : wrong) {
        const CommandResult result = align(arguments);
        EXPECT_EQ(result.code, 2) << testing::PrintToString(arguments);
        EXPECT_NE(result.err, "") << testing::PrintToString(arguments);
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_FALSE(std::filesystem::exists(output_)) << testing::PrintToString(arguments);
    }
    EXPECT_THAT(
        align({"--distances", "1,2"}).err,
        HasSubstr(
            "\"1,2\": 8 values are needed, with commas between them, each 0 to 100000 or - for a channel "
            "that is left out"));
    EXPECT_THAT(align({"--distances", car, "--temperature", "61"}).err,
                HasSubstr("\"61\": air has -40 to 60 degrees Celsius here"));
    EXPECT_THAT(run({"align", file_, "--set", "2", "--distances", car, "--output", file_}).err,
                HasSubstr("is read by this command and is not written over"));
    EXPECT_TRUE(read(file_) == before);
}

TEST_F(AlignCommand, OfAFileThatCannotBeReadFails) {
    const CommandResult result =
        run({"align", path("missing.eqs"), "--set", "1", "--distances", car, "--output", output_});
    EXPECT_EQ(result.code, 1);
    EXPECT_FALSE(std::filesystem::exists(output_));
}

}  // namespace
}  // namespace tessavo::test
