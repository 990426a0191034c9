#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/data_folder.h"
#include "support/environment.h"

namespace tessavo::test {
namespace {

mode_t modeOf(const std::filesystem::path& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777U;
}

TEST(DataFolderPosix, IsWhatItsVariableNames) {
    const Variable named(dataFolderVariable, "/somewhere/else");
    const Variable shared("XDG_DATA_HOME", "/shared");
    EXPECT_EQ(dataFolder(), "/somewhere/else");
}

TEST(DataFolderPosix, LiesInTheSharedDataFolder) {
    const Variable shared("XDG_DATA_HOME", "/shared");
    const Variable home("HOME", "/home/somebody");
    for (const char* none : {static_cast<const char*>(nullptr), ""}) {
        const Variable named(dataFolderVariable, none);
        EXPECT_EQ(dataFolder(), "/shared/tessavo");
    }
}

TEST(DataFolderPosix, LiesBelowHomeWhereNoSharedFolderIsNamed) {
    const Variable named(dataFolderVariable, nullptr);
    const Variable home("HOME", "/home/somebody");
    for (const char* none : {static_cast<const char*>(nullptr), "", "relative/folder"}) {
        const Variable shared("XDG_DATA_HOME", none);
        EXPECT_EQ(dataFolder(), "/home/somebody/.local/share/tessavo");
    }
}

TEST(DataFolderPosix, WithoutHomeTheSystemIsAsked) {
    const Variable named(dataFolderVariable, nullptr);
    const Variable shared("XDG_DATA_HOME", nullptr);
    for (const char* none : {static_cast<const char*>(nullptr), "", "relative"}) {
        const Variable home("HOME", none);
        const std::filesystem::path folder = dataFolder();
        EXPECT_TRUE(folder.empty() || folder.is_absolute()) << folder;
    }
}

TEST(DataFolderPosix, EveryFolderThatIsMadeIsForItsOwnerAlone) {
    const TemporaryFolder place;
    ASSERT_EQ(::chmod(place.path().c_str(), 0755), 0);
    const mode_t former = ::umask(0);
    EXPECT_FALSE(makePrivateFolder(place / "one" / "two"));
    ::umask(former);
    EXPECT_EQ(modeOf(place / "one"), 0700U);
    EXPECT_EQ(modeOf(place / "one" / "two"), 0700U);
    EXPECT_EQ(modeOf(place.path()), 0755U) << "one that stood stays as it is";
}

}  // namespace
}  // namespace tessavo::test
