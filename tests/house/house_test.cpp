#include <algorithm>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "house/source_tree.h"

// Holds the project's own sources to the rules of the house.

namespace tessavo::house {
namespace {

using testing::IsEmpty;

const SourceTree& sources() {
    static const SourceTree tree = readSourceTree(TESSAVO_SOURCE_FOLDER);
    return tree;
}

const SourceTree& tests() {
    static const SourceTree tree = readSourceTree(TESSAVO_TESTS_FOLDER);
    return tree;
}

/// Sources that the build files name for the toolkit-free targets, by their path below src/.
std::set<std::string> coreSources() {
    std::set<std::string> paths;
    std::ifstream list(TESSAVO_CORE_SOURCES_FILE);
    for (std::string line; std::getline(list, line);) {
        const std::filesystem::path path(line);
        if (!line.empty()) {
            paths.insert(path.lexically_relative(TESSAVO_SOURCE_FOLDER).generic_string());
        }
    }
    return paths;
}

TEST(House, RoomsIncludeOnlyRoomsOnLowerFloors) {
    ASSERT_TRUE(sources().contains("params/records.h")) << "no sources found";
    EXPECT_THAT(floorBreaches(sources(), houseFloors()), IsEmpty());
}

TEST(House, FoldersFormNoCircle) {
    EXPECT_THAT(circles(sources()), IsEmpty());
}

TEST(House, SourcesIncludeEachOtherByTheirPathBelowSrc) {
    EXPECT_THAT(includePathBreaches(sources()), IsEmpty());
}

TEST(House, ConditionalCodeStandsOnlyInPlatformSources) {
    EXPECT_THAT(conditionalBreaches(sources()), IsEmpty());
}

TEST(House, TheCoreKnowsNoWindowToolkit) {
    const std::set<std::string> core = coreSources();
    ASSERT_TRUE(core.contains("comm/framing.cpp")) << "the list of core sources was not understood";
    for (const std::string& path : core) {
        EXPECT_TRUE(sources().contains(path)) << path << " is built but does not stand under src";
    }
    EXPECT_THAT(toolkitBreaches(sources(), core), IsEmpty());
}

TEST(House, NoFileHasMoreThanFiveHundredLines) {
    constexpr std::size_t mostLines = 500;
    EXPECT_THAT(lengthBreaches(sources(), mostLines), IsEmpty());
    ASSERT_TRUE(tests().contains("house/house_test.cpp")) << "no tests found";
    EXPECT_THAT(lengthBreaches(tests(), mostLines), IsEmpty());
}

TEST(House, NoFunctionHasMoreThanSixtyLinesOrNinetyInTests) {
    constexpr std::size_t mostLines = 60;
    constexpr std::size_t mostLinesOfTests = 90;
    ASSERT_THAT(tests().at("house/house_test.cpp").blocks, testing::SizeIs(testing::Ge(8U)));
    EXPECT_THAT(blockBreaches(sources(), mostLines), IsEmpty());
    EXPECT_THAT(blockBreaches(tests(), mostLinesOfTests), IsEmpty());
}

// That of JSON consists of headers alone.
TEST(House, TheCoreLinksNothingButThreads) {
    EXPECT_STREQ(TESSAVO_CORE_LIBRARIES, "tessavo_flags,Threads::Threads,nlohmann_json::nlohmann_json");
}

// The library is linked whole into whatever links this room.
TEST(House, OneRoomAloneReadsYaml) {
    EXPECT_STREQ(TESSAVO_YAML_USERS, "tessavo_filtertext");
    const auto& includes = sources().at("filtertext/yaml_tree.cpp").includes;
    ASSERT_TRUE(
        std::ranges::any_of(includes, [](const Include& include) { return include.target == "yaml.h"; }));
    EXPECT_THAT(libraryBreaches(sources(), "yaml.h", "filtertext"), IsEmpty());
}

}  // namespace
}  // namespace tessavo::house
