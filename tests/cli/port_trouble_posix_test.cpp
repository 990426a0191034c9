#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sstream>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "base/md5.h"
#include "cli/cli_fixture.h"
#include "cli/command_table.h"
#include "comm/port_list.h"
#include "comm/serial.h"
#include "copies/backup_folder.h"
#include "platform/process.h"
#include "support/environment.h"
#include "support/waiting.h"

// Ports that cannot be used, and a line on which nobody speaks. Files stand in for devices where the system
// makes no difference.

namespace tessavo::test {

using namespace cli;

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// A pseudo-terminal with nobody at the other end but the test.
class SilentLine {
 public:
    SilentLine() : master_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        EXPECT_EQ(::grantpt(master_), 0);
        EXPECT_EQ(::unlockpt(master_), 0);
        path_ = ::ptsname(master_);
    }
    ~SilentLine() { ::close(master_); }
    SilentLine(const SilentLine&) = delete;
    SilentLine& operator=(const SilentLine&) = delete;

    [[nodiscard]] std::string port() const { return path_.substr(5); }

 private:
    int master_;
    std::string path_;
};

/// Standard error that presses Ctrl-C once when a text appears on it.
class InterruptingError final : public std::stringbuf {
 public:
    explicit InterruptingError(std::string text) : text_(std::move(text)) {}

 protected:
    int sync() override {
        if (!pressed_ && str().find(text_) != std::string::npos) {
            pressed_ = true;
            ::kill(::getpid(), SIGINT);
        }
        return std::stringbuf::sync();
    }

 private:
    std::string text_;
    bool pressed_ = false;
};

CommandResult runInterrupted(const std::vector<std::string>& arguments, const std::string& when) {
    InterruptingError error(when);
    std::istringstream in;
    std::ostringstream out;
    std::ostream err(&error);
    const int code = runCommandLine(arguments, {out, err, in});
    return {code, out.str(), error.str()};
}

class PortTrouble : public CommandTest {
 protected:
    // Every command of the table that has a port, as its example writes it, with files that are in order.
    [[nodiscard]] std::vector<std::vector<std::string>> portCommands(const std::string& port) const {
        std::vector<std::vector<std::string>> calls;
        for (const CommandRow& row : commandTable()) {
            if (run({row.name, "--help"}).out.find(" --port ") != std::string::npos) {
                calls.push_back(callOf(row.example));
                EXPECT_THAT(calls.back(), testing::Contains("ttyUSB0")) << row.name;
                std::ranges::replace(calls.back(), "ttyUSB0", port);
            }
        }
        return calls;
    }

    /// The words of an example. Files stand in the test's folder; those that the command reads are there.
    [[nodiscard]] std::vector<std::string> callOf(const std::string& example) const {
        std::vector<std::string> words;
        std::istringstream text(example);
        for (std::string word; text >> word;) {
            if (word.ends_with("-backup")) {
                words.push_back(path(word));
                makeBackup(words.back());
                continue;
            }
            if (word.find('.') == std::string::npos) {
                words.push_back(word);
                continue;
            }
            const bool isWritten = words.back() == "--output";
            words.push_back(path(word));
            if (!isWritten && word.ends_with(".eqs")) {
                EXPECT_EQ(fresh(word), words.back());
            } else if (!isWritten) {
                write(words.back(), Bytes(100, 1));
            }
        }
        return words;
    }

    /// The folder of a backup, unless it is one that a command is to write.
    static void makeBackup(const std::string& folder) {
        if (folder.ends_with("new-backup") || std::filesystem::exists(folder)) {
            return;
        }
        TargetCopy copy;
        for (SetCopy& set : copy.sets) {
            const auto digest = md5(std::span(set.reply).first(parameterImageSize));
            std::ranges::copy(digest, set.reply.begin() + reply_layout::imageDigest);
            set.state = SetState::sound;
        }
        ASSERT_EQ(writeBackup(folder, copy), "");
    }

    void expectAllFail(const std::string& port, const std::string& reason) {
        const auto calls = portCommands(port);
        EXPECT_GE(calls.size(), 6U);
        const std::vector<std::string> before = files();
        for (const auto& arguments : calls) {
            const CommandResult result = run(arguments);
            EXPECT_EQ(result.code, 1) << arguments[0];
            EXPECT_THAT(result.out, IsEmpty()) << arguments[0];
            EXPECT_THAT(result.err, AllOf(HasSubstr("tessavoctl: Cannot open COM port!\n"),
                                          HasSubstr("tessavoctl: " + port + ": "), HasSubstr(reason),
                                          HasSubstr("nothing was sent")))
                << arguments[0];
            EXPECT_EQ(files(), before) << arguments[0];
        }
    }
};

TEST_F(PortTrouble, AMissingPort) {
    expectAllFail("ttyNoSuchPort", "there is no such port");
}

TEST_F(PortTrouble, ADeviceThatIsNoPort) {
    expectAllFail("null", "this is no serial port");
}

TEST_F(PortTrouble, AFolder) {
    EXPECT_THAT(run({"versions", "--port", "shm"}).err, HasSubstr("this is no serial port"));
}

TEST_F(PortTrouble, APortInUse) {
    const SilentLine line;
    CSerial other;
    ASSERT_EQ(other.Open(devicePath(line.port()), 0, 0, true), serial_result::success);
    const CommandResult result = run({"versions", "--port", line.port()});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, AllOf(HasSubstr(line.port() + ": the port is in use by another program"),
                                  Not(HasSubstr("permission"))));
}

TEST_F(PortTrouble, APortWithoutPermission) {
    const std::string device = path("device");
    write(device, {});
    ASSERT_EQ(::chmod(device.c_str(), 0), 0);
    // The administrator may use everything.
    const bool administrator = ::geteuid() == 0;
    if (administrator) {
        ASSERT_EQ(::seteuid(65534), 0);
    }
    const std::string port = "../" + device.substr(1);
    const CommandResult result = run({"versions", "--port", port});
    if (administrator) {
        ASSERT_EQ(::seteuid(0), 0);
    }
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, AllOf(HasSubstr(port + ": no permission to use the port"),
                                  HasSubstr("group dialout"), Not(HasSubstr("in use"))));
}

TEST_F(PortTrouble, FilesAreLookedAtBeforeThePort) {
    const std::string file = fresh();
    const std::string port = "ttyNoSuchPort";
    const auto failsQuietly = [](const CommandResult& result, const std::string& reason) {
        EXPECT_EQ(result.code, 1);
        EXPECT_THAT(result.err, AllOf(HasSubstr(reason), Not(HasSubstr("COM port"))));
    };
    failsQuietly(run({"live", path("missing.eqs"), "--set", "1", "--port", port}), "no such file");
    failsQuietly(run({"write-set", "1", folder_.string(), "--set", "1", "--port", port}), "is a directory");
    failsQuietly(run({"read-set", "1", "--into", file, "--set", "1", "--output", path("missing/o.eqs"),
                      "--port", port}),
                 "the folder does not exist");
    failsQuietly(run({"read-set", "1", "--into", path("missing.eqs"), "--set", "1", "--output", path("o.eqs"),
                      "--port", port}),
                 "no such file");
    failsQuietly(run({"flash", path("missing.bin"), "--port", port}), "no such file");
    failsQuietly(run({"flash", folder_.string(), "--port", port}), "is a directory");
    write(path("empty.bin"), {});
    failsQuietly(run({"flash", path("empty.bin"), "--port", port}), "the file is empty");
    write(path("large.bin"), Bytes(524289, 0));
    failsQuietly(run({"flash", path("large.bin"), "--port", port}), "File size too large!");
    write(path("limit.bin"), Bytes(524288, 0));
    EXPECT_THAT(run({"flash", path("limit.bin"), "--port", port}).err, HasSubstr("Cannot open COM port!"));
    EXPECT_THAT(files(), testing::ElementsAre("empty.bin", "fresh.eqs", "large.bin", "limit.bin"));
}

TEST_F(PortTrouble, ASilentLineFailsWithItsLog) {
    const SilentLine line;
    const CommandResult result = run({"versions", "--port", "/dev/" + line.port()});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(result.err,
              "ST-->    Prepare XModem2k Message\nST-->    Connecting to Target\nRX-->    Wait for REQ\n"
              "ERR-->   Can't connect to Target\ntessavoctl: /dev/" +
                  line.port() + ": the exchange with the target failed; the versions are not known\n");
}

TEST_F(PortTrouble, QuietKeepsTheErrors) {
    const SilentLine line;
    const CommandResult result = run({"clip", "--quiet", "--port", line.port()});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, AllOf(HasSubstr("ERR-->   Can't connect to Target\n"), Not(HasSubstr("ST-->")),
                                  Not(HasSubstr("RX-->")), HasSubstr("tessavoctl: ")));
}

TEST_F(PortTrouble, CtrlCEndsAnExchangeAtOnceAndWritesNothing) {
    const SilentLine line;
    const std::string file = fresh();
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"live", file, "--set", "1", "--port", line.port()},
          {"read-set", "1", "--into", file, "--set", "1", "--output", path("out.eqs"), "--port",
           line.port()}}) {
        const auto start = std::chrono::steady_clock::now();
        const CommandResult result = runInterrupted(arguments, "Wait for REQ");
        const auto took = std::chrono::steady_clock::now() - start;
        EXPECT_EQ(result.code, 1);
        EXPECT_THAT(result.err, HasSubstr(line.port() + ": interrupted; "));
        EXPECT_THAT(result.err, Not(HasSubstr("Cannot open COM port!")));
        EXPECT_LT(took, std::chrono::milliseconds(2000));
        EXPECT_FALSE(std::filesystem::exists(path("out.eqs")));
    }
    CSerial port;
    EXPECT_EQ(port.Open(devicePath(line.port()), 0, 0, true), serial_result::success)
        << "the port was left open";
}

TEST(Interruption, CallsOnceAndGivesTheSignalsBack) {
    struct sigaction before {};
    ASSERT_EQ(::sigaction(SIGTERM, nullptr, &before), 0);
    std::atomic<int> calls = 0;
    {
        const Interruption interruption([&] { ++calls; });
        EXPECT_FALSE(interruption.happened());
        ::raise(SIGTERM);
        ::raise(SIGINT);
        EXPECT_TRUE(eventually([&] { return calls > 0; }));
        EXPECT_TRUE(interruption.happened());
    }
    EXPECT_EQ(calls, 1);
    struct sigaction after {};
    ASSERT_EQ(::sigaction(SIGTERM, nullptr, &after), 0);
    EXPECT_EQ(after.sa_handler, before.sa_handler);
}

TEST(Interruption, LeavesIgnoredSignalsIgnored) {
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    struct sigaction before {};
    ASSERT_EQ(::sigaction(SIGINT, &ignore, &before), 0);
    {
        const Interruption interruption([] { ADD_FAILURE() << "was not to be called"; });
        ::raise(SIGINT);
        EXPECT_FALSE(interruption.happened());
    }
    ASSERT_EQ(::sigaction(SIGINT, &before, nullptr), 0);
}

TEST(Ports, NamesFromTheEnvironmentAreListed) {
    const Variable ports("TESSAVO_PORTS", "pts/77,ttyMine");
    const CommandResult result = run({"ports"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, HasSubstr("pts/77\nttyMine\n"));
}

}  // namespace
}  // namespace tessavo::test
