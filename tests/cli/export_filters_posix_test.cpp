#include <sys/stat.h>

#include "cli/filter_fixture.h"

namespace tessavo::test {
namespace {

using testing::HasSubstr;

class ExportFiltersPlaces : public FilterTextTest {
 protected:
    [[nodiscard]] CommandResult exportTo(const std::string& output) const {
        return run({"export-filters", file_, "--set", "1", "--channel", "1", "--output", output});
    }

    std::string file_ = fresh("car.eqs");
    std::string text_ = run({"export-filters", file_, "--set", "1", "--channel", "1"}).out;
};

TEST_F(ExportFiltersPlaces, LeavesPipesAndDevicesWhatTheyAre) {
    const std::string pipe = path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const CommandResult result = exportTo(pipe);
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr(pipe + ": is a pipe"));
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_EQ(run({"filters", pipe}).code, 1);
    // A link, so that a command that replaces what it names harms nothing.
    const std::string device = path("device");
    std::filesystem::create_symlink("/dev/null", device);
    EXPECT_EQ(exportTo(device).code, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(device));
    EXPECT_TRUE(std::filesystem::is_character_file(device));
}

TEST_F(ExportFiltersPlaces, FollowsLinksAndKeepsPermissions) {
    const std::string target = writeText("target.txt", std::string(10000, '#'));
    using std::filesystem::perms;
    const perms shared = perms::owner_read | perms::owner_write | perms::group_read | perms::others_read;
    std::filesystem::permissions(target, shared);
    const std::string link = path("link.txt");
    std::filesystem::create_symlink("target.txt", link);
    const CommandResult result = exportTo(link);
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(textOf(target), text_);
    EXPECT_EQ(std::filesystem::status(target).permissions(), shared);
}

TEST_F(ExportFiltersPlaces, MakesFilesThatOthersMayReadWhereTheMaskAllowsIt) {
    const mode_t before = umask(0022);
    const std::string output = path("new.txt");
    EXPECT_EQ(exportTo(output).code, 0);
    umask(before);
    EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(output).permissions()), 0644U);
    EXPECT_EQ(textOf(output), text_);
}

}  // namespace
}  // namespace tessavo::test
