#include "platform/data_folder.h"

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

TEST(DataFolder, IsAPlaceOfTheProgramItself) {
    const std::filesystem::path folder = dataFolder();
    EXPECT_TRUE(folder.is_absolute()) << folder;
}

TEST(DataFolder, IsMadeWithThoseAboveIt) {
    const TemporaryFolder place;
    const std::filesystem::path folder = place / "one" / "two" / "three";
    EXPECT_FALSE(makePrivateFolder(folder));
    EXPECT_TRUE(std::filesystem::is_directory(folder));
    EXPECT_FALSE(makePrivateFolder(folder)) << "one that stands is no error";
}

TEST(DataFolder, WhereAFileStandsNoneCanBeMade) {
    const TemporaryFolder place;
    ASSERT_TRUE(writeFile(place / "file", {1, 2, 3}));
    EXPECT_TRUE(makePrivateFolder(place / "file"));
    EXPECT_TRUE(makePrivateFolder(place / "file" / "below"));
    EXPECT_EQ(readFile(place / "file"), (std::vector<std::uint8_t>{1, 2, 3}));
}

TEST(DataFolder, NoFolderCannotBeMade) {
    EXPECT_TRUE(makePrivateFolder({}));
}

}  // namespace
}  // namespace tessavo::test
