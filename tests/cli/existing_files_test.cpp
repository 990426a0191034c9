#include <gmock/gmock.h>

#include "cli/cli_fixture.h"

// What a command does to files that stand where it would write.

namespace tessavo::test {

using namespace cli;

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ExistingFiles : public CommandTest {
 protected:
    std::string image(const std::string& name) const {
        const CommandResult result = run({"export", fresh(), "--set", "1", "--output", path(name)});
        EXPECT_EQ(result.code, 0) << result.err;
        return path(name);
    }
    void expectKept(const std::string& file, const Bytes& before, const std::vector<std::string>& command,
                    int code, const std::string& message) const {
        const CommandResult result = runWith("setVolume 1", command);
        EXPECT_EQ(result.code, code) << command.front();
        EXPECT_EQ(result.err, "tessavoctl: " + message + "\n");
        EXPECT_EQ(read(file), before) << command.front();
    }
};

TEST_F(ExistingFiles, NewLeavesThemAlone) {
    const std::string mine = path("mine.eqs");
    for (const Bytes& before : {Bytes(12000, 0xA5), Bytes()}) {
        write(mine, before);
        expectKept(mine, before, {"new", mine}, 1, mine + ": exists already; --force writes over it");
    }
    EXPECT_THAT(files(), ElementsAre("mine.eqs"));
}

TEST_F(ExistingFiles, NewIsForcedOverThem) {
    const std::string mine = path("mine.eqs");
    ASSERT_EQ(runWith("setVolume 3", {"edit", fresh(), "--script", "-", "--output", mine}).code, 0);
    ASSERT_NE(read(mine), read(path("fresh.eqs")));
    ASSERT_EQ(run({"new", "--force", mine}).code, 0);
    EXPECT_EQ(read(mine), read(path("fresh.eqs")));
}

TEST_F(ExistingFiles, NewNeedsNoForceWithoutThem) {
    ASSERT_EQ(run({"new", path("first.eqs")}).code, 0);
    ASSERT_EQ(run({"new", path("second.eqs"), "--force"}).code, 0);
    EXPECT_EQ(read(path("first.eqs")), read(path("second.eqs")));
}

TEST_F(ExistingFiles, NoImageReplacesASettingsFile) {
    const std::string in = fresh();
    const std::string other = fresh("other.eqs");
    Bytes damaged = read(other);
    damaged[0] = 0;
    for (const Bytes& before : {read(other), damaged}) {
        write(other, before);
        const std::string message =
            other + ": is a settings file and is not replaced by a parameter image; choose another name";
        expectKept(other, before, {"export", in, "--set", "1", "--output", other}, 1, message);
        expectKept(other, before, {"edit", in, "--script", "-", "--image", other}, 1, message);
    }
}

TEST_F(ExistingFiles, NoSettingsFileReplacesAnImage) {
    const std::string in = fresh();
    const std::string other = image("other.bin");
    const Bytes before = read(other);
    const std::string message =
        other + ": is a parameter image and is not replaced by a settings file; choose another name";
    expectKept(other, before, {"edit", in, "--script", "-", "--output", other}, 1, message);
    expectKept(other, before, {"import", image("set.bin"), "--into", in, "--set", "1", "--output", other}, 1,
               message);
    expectKept(other, before, {"new", "--force", other}, 1, message);
    // Found out before anything is asked of a target.
    expectKept(other, before,
               {"read-set", "1", "--into", in, "--set", "1", "--output", other, "--port", "no-port"}, 1,
               message);
}

TEST_F(ExistingFiles, OneOfTwoOutputsThatMayNotBeReplacedStopsBoth) {
    const std::string in = fresh();
    const std::string other = fresh("other.eqs");
    const CommandResult result =
        runWith("setVolume 1", {"edit", in, "--script", "-", "--output", path("new.eqs"), "--image", other});
    EXPECT_EQ(result.code, 1);
    EXPECT_FALSE(std::filesystem::exists(path("new.eqs")));
}

TEST_F(ExistingFiles, TheSameKindIsReplaced) {
    const std::string in = fresh();
    const std::string settings = fresh("other.eqs");
    const std::string other = image("other.bin");
    const Bytes before = read(other);
    ASSERT_EQ(
        runWith("setVolume 6", {"edit", in, "--script", "-", "--output", settings, "--image", other}).code,
        0);
    EXPECT_NE(read(settings), read(in));
    EXPECT_NE(read(other), before);
}

TEST_F(ExistingFiles, AnEditDoesNotWriteOverItsScript) {
    const std::string script = path("tuning.txt");
    const std::string text = "setVolume 6\n";
    const Bytes before(text.begin(), text.end());
    write(script, before);
    const std::string in = fresh();
    for (const char* output : {"--output", "--image"}) {
        expectKept(script, before, {"edit", in, "--script", script, output, script}, 2,
                   script + " and " + script + " are the same file");
    }
    EXPECT_THAT(files(), ElementsAre("fresh.eqs", "tuning.txt"));
}

}  // namespace
}  // namespace tessavo::test
