#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "house/source_tree.h"

// Each rule is shown a house that breaks it: a rule that cannot fail would guard nothing.

namespace tessavo::house {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

SourceTree treeOf(const std::map<std::string, std::string>& texts) {
    SourceTree tree;
    for (const auto& [path, text] : texts) {
        tree.emplace(path, parseSource(text));
    }
    return tree;
}

TEST(HouseRules, FindsIncludesHoweverTheyAreSpaced) {
    const SourceFile file = parseSource("  #  include   \"dsp/a.h\"  // why\r\n#include <QWidget>\nint x;\n");
    ASSERT_EQ(file.includes.size(), 2U);
    EXPECT_EQ(file.includes[0].target, "dsp/a.h");
    EXPECT_TRUE(file.includes[0].quoted);
    EXPECT_EQ(file.includes[1].target, "QWidget");
    EXPECT_FALSE(file.includes[1].quoted);
    EXPECT_THAT(file.conditionals, IsEmpty());
}

TEST(HouseRules, BrokenIncludeLinesAreNoIncludes) {
    EXPECT_THAT(parseSource("#include\n#include \"open\n#include <open\n#\n").includes, IsEmpty());
}

TEST(HouseRules, LowerRoomsMayBeIncluded) {
    const auto tree = treeOf({{"dsp/a.h", ""}, {"params/b.h", "#include \"dsp/a.h\""}});
    EXPECT_THAT(floorBreaches(tree, houseFloors()), IsEmpty());
    EXPECT_THAT(circles(tree), IsEmpty());
}

TEST(HouseRules, HigherRoomsMayNotBeIncluded) {
    const auto tree = treeOf({{"dsp/a.h", "#include \"params/b.h\""}, {"params/b.h", ""}});
    EXPECT_THAT(floorBreaches(tree, houseFloors()),
                ElementsAre("dsp/a.h includes params/b.h, which is not on a lower floor"));
}

TEST(HouseRules, RoomsOnOneFloorMayNotIncludeEachOther) {
    const auto tree = treeOf({{"comm/page/a.h", ""}, {"pages/input/b.cpp", "#include \"comm/page/a.h\""}});
    EXPECT_THAT(floorBreaches(tree, houseFloors()), testing::SizeIs(1));
}

TEST(HouseRules, FoldersInsideARoomShareItsFloor) {
    const auto tree = treeOf({{"plot/a.h", ""},
                              {"plot/chart/b.h", "#include \"plot/a.h\"\n#include \"dsp/c.h\""},
                              {"dsp/c.h", "#include \"plot/chart/b.h\""}});
    EXPECT_THAT(floorBreaches(tree, houseFloors()),
                ElementsAre("dsp/c.h includes plot/chart/b.h, which is not on a lower floor"));
}

TEST(HouseRules, AFileNeedsARoomWithAFloor) {
    const auto tree = treeOf({{"attic/a.h", ""}, {"main.cpp", ""}, {"pages/b.h", ""}});
    EXPECT_THAT(floorBreaches(tree, houseFloors()), testing::SizeIs(3));
}

TEST(HouseRules, CirclesAreFoundThroughOtherFolders) {
    const auto tree = treeOf({{"dsp/a.h", "#include \"plot/b.h\""},
                              {"plot/b.h", "#include \"params/c.h\""},
                              {"params/c.h", "#include \"dsp/d.h\""},
                              {"dsp/d.h", ""},
                              {"cli/e.h", "#include \"dsp/a.h\""}});
    EXPECT_THAT(circles(tree), ElementsAre("dsp includes itself through other folders",
                                           "params includes itself through other folders",
                                           "plot includes itself through other folders"));
}

TEST(HouseRules, FilesAreIncludedByTheirPathBelowSrc) {
    const auto tree = treeOf({{"dsp/a.h", ""},
                              {"dsp/b.cpp", "#include \"a.h\"\n#include \"../dsp/a.h\"\n#include <dsp/a.h>"},
                              {"dsp/c.cpp", "#include \"dsp/a.h\"\n#include <vector>"}});
    EXPECT_THAT(includePathBreaches(tree), testing::SizeIs(3));
}

TEST(HouseRules, ConditionalsStandOnlyInPlatformSources) {
    const auto tree = treeOf({{"comm/serial_posix.cpp", "#ifdef CRTSCTS\n#endif"},
                              {"comm/serial.cpp", "# ifdef _WIN32\n#elif 1\n#else\n#endif"},
                              {"comm/serial.h", "#if defined(_WIN32)\n#endif"}});
    EXPECT_THAT(conditionalBreaches(tree),
                ElementsAre("comm/serial.cpp: # ifdef _WIN32", "comm/serial.cpp: #elif 1",
                            "comm/serial.h: #if defined(_WIN32)"));
}

TEST(HouseRules, ToolkitHeadersAreFoundBehindProjectHeaders) {
    const auto tree = treeOf({{"comm/page.cpp", "#include <QtWidgets/QWidget>"},
                              {"comm/a.cpp", "#include \"comm/b.h\"\n#include <queue>"},
                              {"comm/b.h", "#include <QString>\n#include \"comm/a.h\""},
                              {"comm/a.h", "#include \"comm/b.h\""}});
    EXPECT_THAT(toolkitBreaches(tree, {"comm/a.cpp"}), ElementsAre("comm/b.h includes QString"));
    EXPECT_THAT(toolkitBreaches(tree, {"comm/page.cpp"}), testing::SizeIs(1));
}

}  // namespace
}  // namespace tessavo::house
