#include <chrono>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "comm/port_list.h"
#include "comm/serial_port_line.h"
#include "support/environment.h"
#include "support/temporary_folder.h"
#include "target/exchange_host.h"

// The program as a person starts it.

namespace tessavo::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

/// A running tessavo-target.
class Program {
 public:
    explicit Program(std::vector<std::string> arguments) {
        std::array<int, 2> in{};
        std::array<int, 2> out{};
        std::array<int, 2> error{};
        EXPECT_EQ(pipe(in.data()) | pipe(out.data()) | pipe(error.data()), 0);
        process_ = fork();
        if (process_ == 0) {
            dup2(in[0], STDIN_FILENO);
            dup2(out[1], STDOUT_FILENO);
            dup2(error[1], STDERR_FILENO);
            for (const auto& pair : {in, out, error}) {
                ::close(pair[0]);
                ::close(pair[1]);
            }
            std::vector<char*> argv;
            std::string program = TESSAVO_TARGET_PROGRAM;
            argv.push_back(program.data());
            for (std::string& argument : arguments) {
                argv.push_back(argument.data());
            }
            argv.push_back(nullptr);
            execv(argv[0], argv.data());
            _exit(127);
        }
        ::close(in[0]);
        ::close(out[1]);
        ::close(error[1]);
        input_ = in[1];
        output_ = out[0];
        errors_ = error[0];
    }
    ~Program() {
        if (process_ > 0) {
            kill(process_, SIGKILL);
            waitpid(process_, nullptr, 0);
        }
        for (const int descriptor : {input_, output_, errors_}) {
            ::close(descriptor);
        }
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// The next line of standard output, within ten seconds.
    std::string line() { return readUntil(output_, '\n'); }
    void type(const std::string& text) const {
        EXPECT_EQ(::write(input_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    void signal(int number) const { kill(process_, number); }
    /// Waits for the end; returns the exit code and keeps what was written to standard error.
    int wait() {
        errorText = readUntil(errors_, '\0');
        int status = -1;
        waitpid(process_, &status, 0);
        process_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    std::string rest() { return readUntil(output_, '\0'); }

    std::string errorText;

 private:
    static std::string readUntil(int descriptor, char end) {
        std::string text;
        char character = 0;
        pollfd readable{.fd = descriptor, .events = POLLIN, .revents = 0};
        while (poll(&readable, 1, 10000) == 1 && ::read(descriptor, &character, 1) == 1 && character != end) {
            text += character;
        }
        return text;
    }

    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
    int errors_ = -1;
};

struct Host : ExchangeHost {
    explicit Host(const std::string& path)
        : ExchangeHost(makeSerialPortLine, path.substr(std::string("/dev/").size())) {}
};

TEST(TargetProgram, ItsFirstLineIsThePortAndSignalsEndIt) {
    const OwnRunFolder folder;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Program program({});
        const std::string path = program.line();
        EXPECT_TRUE(path.starts_with("/dev/")) << path;
        Host host(path);
        EXPECT_THAT(listPorts(), testing::Contains(host.name));
        EXPECT_TRUE(host.ask({command_code::readVersions})) << host.log.lastError;
        program.signal(signal);
        EXPECT_EQ(program.wait(), 0);
        EXPECT_EQ(program.errorText, "");
        EXPECT_EQ(program.rest(), "") << "nothing but the path";
        EXPECT_THAT(listPorts(), testing::Not(testing::Contains(host.name)));
    }
}

TEST(TargetProgram, AFreshTargetHoldsTheDefaultSets) {
    Program program({});
    Host host(program.line());
    for (std::uint8_t set = 0; set < targetSetCount; ++set) {
        host.reply.fill(0xEE);
        ASSERT_TRUE(host.ask({command_code::readSet, set}));
        const ImageBytes factory = factoryImage();
        EXPECT_TRUE(std::equal(factory.begin(), factory.end(), host.reply.begin()));
        EXPECT_EQ(host.reply[0] + 256 * host.reply[1], 3384) << "the image's own size field";
    }
}

TEST(TargetProgram, WrongUsageEndsWithTwo) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--nonsense"}, {"--fault", "nonsense"}, {"--baud", "0"}}) {
        Program program(arguments);
        EXPECT_EQ(program.wait(), 2);
        EXPECT_NE(program.errorText, "");
        EXPECT_EQ(program.rest(), "");
    }
    Program help({"--help"});
    EXPECT_THAT(help.rest(), HasSubstr("Examples:"));
    EXPECT_EQ(help.wait(), 0);
}

TEST(TargetProgram, StateSurvivesTheRun) {
    const TemporaryFolder folder;
    const fs::path directory = folder / "state";
    {
        Program program({"--state", directory.string()});
        Host host(program.line());
        ASSERT_TRUE(host.sendLive(imageOf(3)));
        Bytes save{command_code::saveSet, 3};
        const auto digest = md5(imageOf(3));
        save.insert(save.end(), digest.begin(), digest.end());
        ASSERT_TRUE(host.engine.SendToTarget(save, MessageType::blocks128));
        program.signal(SIGKILL);
        program.wait();
    }
    std::ofstream(directory / "set2.bin") << "short";
    Program program({"--state", directory.string()});
    Host host(program.line());
    ASSERT_TRUE(host.ask({command_code::readSet, 3}));
    const ImageBytes image = imageOf(3);
    EXPECT_TRUE(std::equal(image.begin(), image.end(), host.reply.begin()));
    ASSERT_TRUE(host.ask({command_code::readSet, 2}));
    const ImageBytes factory = factoryImage();
    EXPECT_TRUE(std::equal(factory.begin(), factory.end(), host.reply.begin()));
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(program.errorText, HasSubstr("set2.bin"));
}

TEST(TargetProgram, AnUnusableStateDirectoryFails) {
    const TemporaryFolder folder;
    const fs::path file = folder / "file";
    std::ofstream(file) << "x";
    Program program({"--state", file.string()});
    EXPECT_EQ(program.wait(), 1);
    EXPECT_THAT(program.errorText, HasSubstr("cannot use"));
}

TEST(TargetProgram, PatternsComeFromStandardInput) {
    Program program({"--clip", "-"});
    Host host(program.line());
    const std::string nothing(34, '0');
    program.type("\n" + nothing + "\nwrong\n1" + nothing.substr(1) + "\n");
    // Lines are taken when they come, one for each request; the last one stays.
    bool lit = false;
    for (int i = 0; i < 100 && !lit; ++i) {
        ASSERT_TRUE(host.ask({command_code::readClipState}));
        lit = host.reply[0] == 1;
    }
    EXPECT_TRUE(lit);
    program.signal(SIGINT);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(program.errorText, HasSubstr("line 3 of standard input"));
}

TEST(TargetProgram, ManyPatternsAreShownOneByOne) {
    constexpr int count = 600;
    Program program({"--clip", "-"});
    Host host(program.line());
    // More than the program reads ahead: the rest waits in the pipe.
    std::string text;
    for (int i = 0; i < count; ++i) {
        std::string line(34, '0');
        for (int bit = 0; bit < 10; ++bit) {
            line[static_cast<std::size_t>(bit)] = ((i >> bit) & 1) != 0 ? '1' : '0';
        }
        text += line + "\n";
    }
    program.type(text);
    int seen = 0;
    for (int i = 0; i < 3 * count && seen < count - 1; ++i) {
        ASSERT_TRUE(host.ask({command_code::readClipState}));
        int value = 0;
        for (int bit = 0; bit < 10; ++bit) {
            value |= host.reply[static_cast<std::size_t>(bit)] << bit;
        }
        ASSERT_LE(value, seen + 1) << "none is left out";
        ASSERT_GE(value, seen) << "none is shown again once the next has been";
        seen = value;
    }
    EXPECT_EQ(seen, count - 1);
}

TEST(TargetProgram, VerboseTellsWhatHappens) {
    Program program({"--verbose", "--fault", "wrong-digest"});
    Host host(program.line());
    EXPECT_TRUE(host.sendLive(imageOf(1)));
    EXPECT_TRUE(host.ask({command_code::readSet, 4}));
    program.signal(SIGINT);
    EXPECT_EQ(program.wait(), 0);
    for (const std::string part : {"port opened", "sent the request byte", "took a live image",
                                   "fault: wrong digest", "sent set 4", "disconnected", "port closed"}) {
        EXPECT_THAT(program.errorText, HasSubstr(part));
    }
}

TEST(TargetProgram, EndsWhenTheCableIsPulled) {
    Program program({"--fault", "cable=100"});
    Host host(program.line());
    EXPECT_FALSE(host.sendLive(imageOf(1)));
    EXPECT_EQ(program.wait(), 0);
}

}  // namespace
}  // namespace tessavo::test
