#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "cli/cli_fixture.h"

// Faults of the file system that this system can be asked for, also when the tests run as its administrator.

namespace tessavo::test {

using namespace cli;

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class FileFaults : public CommandTest {
 protected:
    FileFaults() {
        // A pipe that is opened in the usual way waits for its other end.
        constexpr unsigned hangSeconds = 60;
        ::alarm(hangSeconds);
    }
    ~FileFaults() override { ::alarm(0); }
};

TEST_F(FileFaults, AFullDiskIsReported) {
    const CommandResult result = run({"new", "/dev/full"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("Error writing data! /dev/full"));
    EXPECT_EQ(run({"export", fresh(), "--set", "1", "--output", "/dev/full"}).code, 1);
}

TEST_F(FileFaults, AFullDiskTakesTheOtherOutputBack) {
    const std::string in = fresh();
    const Bytes old(11000, 0x44);
    write(path("old.eqs"), old);
    const Bytes small(30, 0x45);
    write(path("small.eqs"), small);
    for (const char* output : {"old.eqs", "small.eqs", "new.eqs"}) {
        const CommandResult result = runWith(
            "setVolume 1", {"edit", in, "--script", "-", "--output", path(output), "--image", "/dev/full"});
        EXPECT_EQ(result.code, 1) << output;
        EXPECT_THAT(result.err, HasSubstr("Error writing data! /dev/full"));
    }
    EXPECT_EQ(read(path("old.eqs")), old);
    EXPECT_EQ(read(path("small.eqs")), small);
    EXPECT_THAT(files(), ElementsAre("fresh.eqs", "old.eqs", "small.eqs"));
}

TEST_F(FileFaults, WhatIsNoRegularFileIsRefusedAtOnce) {
    const std::string pipe = path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const std::string good = fresh();
    for (const std::string& odd : {pipe, std::string("/dev/zero"), std::string("/dev/null")}) {
        for (const auto& arguments : {std::vector<std::string>{"show", odd},
                                      {"show", odd, "--json"},
                                      {"diff", good, odd},
                                      {"diff", odd, good},
                                      {"curve", odd, "--set", "1", "--input"},
                                      {"export", odd, "--set", "1", "--output", path("o.bin")}}) {
            const CommandResult result = run(arguments);
            EXPECT_EQ(result.code, 1) << arguments.front() << ' ' << odd;
            EXPECT_THAT(result.err,
                        HasSubstr("Error opening configuration file! " + odd + ": is no regular file"))
                << arguments.front();
        }
        EXPECT_THAT(runWith("setVolume 1", {"edit", odd, "--script", "-", "--output", path("o.eqs")}).err,
                    HasSubstr("Error opening configuration file! " + odd));
    }
    EXPECT_THAT(files(), ElementsAre("fresh.eqs", "pipe"));
}

TEST_F(FileFaults, APipeIsNotWritten) {
    const std::string pipe = path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const CommandResult made = run({"new", pipe});
    EXPECT_EQ(made.code, 1);
    EXPECT_THAT(made.err, HasSubstr("Error opening configuration file! " + pipe + ": is a pipe"));
    EXPECT_THAT(made.err, HasSubstr("Error writing data! " + pipe));
    const CommandResult exported = run({"export", fresh(), "--set", "1", "--output", pipe});
    EXPECT_EQ(exported.code, 1);
    EXPECT_THAT(exported.err, HasSubstr("Error opening binary file! " + pipe + ": is a pipe"));
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST_F(FileFaults, AScriptMayComeThroughAPipe) {
    const std::string pipe = path("script");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::thread other([&] { std::ofstream(pipe) << "setVolume 1\n"; });
    const CommandResult result = run({"edit", fresh(), "--script", pipe, "--output", path("o.eqs")});
    other.join();
    EXPECT_EQ(result.code, 0) << result.err;
}

TEST_F(FileFaults, APlaceThatCannotBeWritten) {
    const std::string in = fresh();
    EXPECT_EQ(run({"new", "/proc/tessavo.eqs"}).code, 1);
    const CommandResult result = runWith("setVolume 1", {"edit", in, "--script", "-", "--output",
                                                         path("o.eqs"), "--image", "/proc/tessavo.bin"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("/proc/tessavo.bin"));
    EXPECT_THAT(files(), ElementsAre("fresh.eqs"));
    EXPECT_EQ(run({"new", in + "/below-a-file.eqs"}).code, 1);
}

TEST_F(FileFaults, StandardOutputThatTakesNothingIsAFailure) {
    const std::string file = fresh();
    for (const auto& arguments : {std::vector<std::string>{"show", file},
                                  {"--help"},
                                  {"show", "--help"},
                                  {"--version"},
                                  {"show", file, "--json"},
                                  {"curve", file, "--set", "1", "--input"}}) {
        std::ofstream full("/dev/full");
        std::istringstream in;
        std::ostringstream err;
        EXPECT_EQ(runCommandLine(arguments, {full, err, in}), 1);
        EXPECT_THAT(err.str(), HasSubstr("cannot write to standard output"));
    }
}

TEST_F(FileFaults, ALinkIsFollowedToItsFile) {
    const std::string file = fresh();
    std::filesystem::create_symlink(file, path("link.eqs"));
    ASSERT_EQ(
        runWith("setVolume 1", {"edit", path("link.eqs"), "--script", "-", "--output", path("link.eqs")})
            .code,
        0);
    EXPECT_TRUE(std::filesystem::is_symlink(path("link.eqs")));
    EXPECT_EQ(run({"diff", file, fresh("other.eqs")}).code, 1);
    EXPECT_EQ(runWith("", {"edit", file, "--script", "-", "--image", path("link.eqs")}).code, 2);
}

TEST_F(FileFaults, AnInputDeviceWithoutEndIsReadOnlyAsFarAsNeeded) {
    EXPECT_EQ(run({"show", "/dev/zero"}).code, 1);
    EXPECT_EQ(run({"edit", fresh(), "--script", "/dev/zero", "--output", path("o.eqs")}).code, 1);
}

}  // namespace
}  // namespace tessavo::test
