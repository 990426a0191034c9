#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

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

TEST(HouseRules, HeadersOfALibraryAreFoundOutsideOfItsRoom) {
    const auto tree = treeOf({{"filtertext/a.cpp", "#include <yaml.h>"},
                              {"filtertext/deep/b.cpp", "#include <yaml.h>"},
                              {"filtertextual/c.cpp", "#include <vector>\n#include <yaml.h>"},
                              {"cli/d.h", "#include \"yaml.h\""},
                              {"cli/e.cpp", "#include \"filtertext/yaml.h\""}});
    EXPECT_THAT(libraryBreaches(tree, "yaml.h", "filtertext"),
                ElementsAre("cli/d.h includes yaml.h", "filtertextual/c.cpp includes yaml.h"));
}

TEST(HouseRules, LinesAreCountedHoweverTheLastOneEnds) {
    EXPECT_EQ(parseSource("").lines, 0U);
    EXPECT_EQ(parseSource("a").lines, 1U);
    EXPECT_EQ(parseSource("a\n").lines, 1U);
    EXPECT_EQ(parseSource("a\r\n\nb").lines, 3U);
}

TEST(HouseRules, LongFilesAreFound) {
    const auto tree =
        treeOf({{"dsp/a.cpp", "1\n2\n3\n"}, {"dsp/b.cpp", "1\n2\n3\n4\n"}, {"dsp/c.h", "1\n2\n3\n4\n5"}});
    EXPECT_THAT(lengthBreaches(tree, 5), IsEmpty());
    EXPECT_THAT(lengthBreaches(tree, 4), ElementsAre("dsp/c.h has 5 lines"));
    EXPECT_THAT(lengthBreaches(tree, 3), ElementsAre("dsp/b.cpp has 4 lines", "dsp/c.h has 5 lines"));
}

TEST(HouseRules, BlocksAreFoundInFilesClassesAndFunctions) {
    const SourceFile file = parseSource(
        "namespace {\nconst int numbers[]{\n    1,\n};\n"
        "const auto lambda = [] {\n    return 1;\n};\n"
        "class Box final : public Base {\n public:\n    explicit Box(int a)\n        : a_{a},\n          "
        "b_(a) {\n"
        "        fill();\n    }\n    int none() {\n    }\n    int brief() { return 1; }\n};\n"
        "}  // namespace\n\n"
        "Box::Box(int a,\n         int b)\n    : a_(a) {\n#ifdef A\n    if (a == 1) {\n        one();\n\n"
        "    } else {\n        two();\n    }\n#endif\n    tell([] {\n        three();\n    });\n}\r\n");
    std::vector<std::pair<std::size_t, std::size_t>> found;
    for (const Block& block : file.blocks) {
        found.emplace_back(block.line, block.lines);
    }
    EXPECT_THAT(found, ElementsAre(std::pair(12, 1), std::pair(15, 0), std::pair(25, 4), std::pair(23, 11)));
}

TEST(HouseRules, LongFunctionsAreFound) {
    const auto tree =
        treeOf({{"dsp/a.cpp", "void f() {\n    1;\n    2;\n    3;\n}\n"},
                {"dsp/b.h", "struct A {\n    void f() {\n        1;\n        2;\n    }\n};\n"}});
    EXPECT_THAT(blockBreaches(tree, 3), IsEmpty());
    EXPECT_THAT(blockBreaches(tree, 2), ElementsAre("dsp/a.cpp:1 begins a block of 3 lines"));
    EXPECT_THAT(blockBreaches(tree, 1),
                ElementsAre("dsp/a.cpp:1 begins a block of 3 lines", "dsp/b.h:2 begins a block of 2 lines"));
}

}  // namespace
}  // namespace tessavo::house
