#include "target/target_options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

namespace tessavo::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

std::variant<TargetOptions, TargetUsage> parse(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "tessavo-target");
    return parseTargetOptions(static_cast<int>(arguments.size()), arguments.data());
}

TargetOptions optionsOf(const std::vector<const char*>& arguments) {
    auto parsed = parse(arguments);
    if (const auto* usage = std::get_if<TargetUsage>(&parsed)) {
        ADD_FAILURE() << usage->text;
        return {};
    }
    return std::get<TargetOptions>(parsed);
}

std::string problemOf(const std::vector<const char*>& arguments) {
    const auto parsed = parse(arguments);
    const auto* usage = std::get_if<TargetUsage>(&parsed);
    if (usage == nullptr || !usage->wrong) {
        ADD_FAILURE() << "accepted";
        return {};
    }
    return usage->text;
}

TEST(TargetOptions, NothingAskedIsAPlainTarget) {
    const TargetOptions options = optionsOf({});
    EXPECT_FALSE(options.stateDirectory);
    EXPECT_EQ(options.clip, ClipChoice::none);
    EXPECT_EQ(options.baud, 0U);
    EXPECT_FALSE(options.verbose);
    EXPECT_FALSE(options.faults.noRequest);
}

TEST(TargetOptions, EveryOptionIsRead) {
    const TargetOptions options =
        optionsOf({"--state", "some dir", "--clip", "random", "--baud", "115200", "--fault", "junk=2",
                   "--fault=negative=3", "--fault", "negative=5", "--hardware-version", "0x0102aBcD",
                   "--software-version", "17", "--verbose"});
    EXPECT_EQ(options.stateDirectory, "some dir");
    EXPECT_EQ(options.clip, ClipChoice::random);
    EXPECT_EQ(options.baud, 115200U);
    EXPECT_EQ(options.faults.junkBytes, 2U);
    EXPECT_THAT(options.faults.negativeBlocks, testing::ElementsAre(3, 5));
    EXPECT_EQ(options.versions.hardware, 0x0102ABCDU);
    EXPECT_EQ(options.versions.software, 17U);
    EXPECT_TRUE(options.verbose);
}

TEST(TargetOptions, AHyphenIsStandardInput) {
    EXPECT_EQ(optionsOf({"--clip", "-"}).clip, ClipChoice::standardInput);
    EXPECT_EQ(optionsOf({"--clip=-", "--verbose"}).clip, ClipChoice::standardInput);
}

TEST(TargetOptions, WrongUsageSaysWhy) {
    EXPECT_THAT(problemOf({"--fault", "nothing"}),
                AllOf(HasSubstr("unknown fault \"nothing\""), HasSubstr("wrong-digest")));
    EXPECT_THAT(problemOf({"--fault", "junk=x"}), HasSubstr("whole number"));
    EXPECT_THAT(problemOf({"--fault", "junk", "no-request"}), HasSubstr("no-request"));
    EXPECT_THAT(problemOf({"--clip", "often"}), HasSubstr("\"often\""));
    EXPECT_THAT(problemOf({"--baud", "fast"}), HasSubstr("fast"));
    EXPECT_THAT(problemOf({"--baud", "49"}), HasSubstr("49"));
    EXPECT_THAT(problemOf({"--baud", "-1"}), HasSubstr("-1"));
    EXPECT_THAT(problemOf({"--baud", "4000001"}), HasSubstr("4000001"));
    EXPECT_THAT(problemOf({"--hardware-version", "1.0"}), HasSubstr("\"1.0\""));
    EXPECT_THAT(problemOf({"--hardware-version", "0x"}), HasSubstr("\"0x\""));
    EXPECT_THAT(problemOf({"--software-version", "4294967296"}), HasSubstr("32 bits"));
    EXPECT_THAT(problemOf({"--state"}), HasSubstr("--state"));
    EXPECT_THAT(problemOf({"stray"}), HasSubstr("stray"));
    EXPECT_THAT(problemOf({"--unknown"}), HasSubstr("--unknown"));
}

TEST(TargetOptions, HelpAndVersionAreNoMistake) {
    for (const char* asked : {"--help", "-h", "--version"}) {
        const auto parsed = parse({asked});
        const auto* usage = std::get_if<TargetUsage>(&parsed);
        ASSERT_NE(usage, nullptr) << asked;
        EXPECT_FALSE(usage->wrong) << asked;
        EXPECT_THAT(usage->text, HasSubstr("tessavo-target"));
    }
    const auto parsed = parse({"--help"});
    const std::string& help = std::get<TargetUsage>(parsed).text;
    EXPECT_THAT(help, AllOf(HasSubstr("Examples:"), HasSubstr("--state DIR"), HasSubstr("cable=N"),
                            HasSubstr("0x00010006")));
}

}  // namespace
}  // namespace tessavo::test
