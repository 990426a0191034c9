#include <QCoreApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <string>
#include <sys/select.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "app/session_fixture.h"
#include "base/md5.h"
#include "pages/rows/output_eq_rows.h"

// A person works in the whole window, in a process of its own, until it is killed in the middle of anything.
// Every state is noted as soon as it is there, by a process that is not killed: the pipe keeps it.

namespace tessavo::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr int usualKills = 40;
constexpr milliseconds allowedLag{1000};

struct Note {
    Md5Digest digest;
    std::int64_t time;  ///< of the clock that all processes share, in microseconds
};

std::int64_t nowUs() {
    return std::chrono::duration_cast<microseconds>(Clock::now().time_since_epoch()).count();
}

// Tells states apart also where a person has come back to the same bytes.
Md5Digest digestOf(const History::Trail& trail) {
    const auto bytes = bytesOf(trail.state);
    std::vector<std::uint8_t> all(bytes.begin(), bytes.end());
    const std::string steps = std::to_string(trail.done.size()) + " " + std::to_string(trail.undone.size()) +
                              (trail.done.empty() ? std::string() : trail.done.back()->text);
    all.insert(all.end(), steps.begin(), steps.end());
    return md5(all);
}

/// The one who works. Never returns.
class Worker {
 public:
    Worker(const std::filesystem::path& data, int log, std::uint64_t seed)
        : run_(data), log_(log), random_(seed) {
        QObject::connect(&run_.commands(), &UndoCommands::historyChanged, run_.frame.get(),
                         [this] { note(); });
    }

    [[noreturn]] void work() {
        note();
        // From the first step on there is something to restore.
        run_.click(run_.flag(1));
        for (;;) {
            note();
            act();
            // A hand is slower than this, and now and then it rests.
            QElapsedTimer rest;
            rest.start();
            const qint64 restMs = below(20) == 0 ? below(400) : below(12);
            do {
                QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            } while (rest.elapsed() < restMs);
        }
    }

 private:
    int below(int bound) { return static_cast<int>(random_() % static_cast<std::uint64_t>(bound)); }
    void note() {
        const Note note{digestOf(*run_.history->trail(recoveryStepLimit)), nowUs()};
        if (::write(log_, &note, sizeof note) != sizeof note) {
            std::_Exit(3);
        }
    }
    void act() {
        switch (below(8)) {
            case 0:
                run_.click(run_.flag(1 + below(8)));
                break;
            case 1:
                run_.undoKey();
                break;
            case 2:
                run_.redoKey();
                break;
            case 3:
                run_.choose(run_.setSelector(), below(5));
                break;
            case 4:
                run_.typeInto(run_.setName(), QStringLiteral("N%1").arg(below(1000000)));
                break;
            default:
                run_.drag(run_.on<CBitmapSlider>(Page::outputEqualizer, output_eq_id::volume.slider),
                          below(81) - 40);
        }
    }

    SessionRun run_;
    int log_;
    std::mt19937_64 random_;
};

class Killed : public ::testing::Test {
 protected:
    struct Outcome {
        std::vector<Note> notes;
        std::int64_t end = 0;
    };

    /// This program once more, which works until it is killed.
    Outcome killAfter(milliseconds time, const std::filesystem::path& data, std::uint64_t seed) {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe(ends.data()), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            ::close(ends[0]);
            // What it cannot clear away any more goes with this test.
            ::setenv("TMPDIR", folder.path().c_str(), 1);
            ::setenv("TESSAVO_KILLED_DATA", data.c_str(), 1);
            ::setenv("TESSAVO_KILLED_LOG", std::to_string(ends[1]).c_str(), 1);
            ::setenv("TESSAVO_KILLED_SEED", std::to_string(seed).c_str(), 1);
            ::execl("/proc/self/exe", "test_app",
                    "--gtest_filter=Killed.AtAnyMomentOnlyTheLastSecondIsMissing", "--gtest_brief=1",
                    nullptr);
            std::_Exit(4);
        }
        ::close(ends[1]);
        Outcome outcome;
        // The start of the window is no part of it.
        readNote(ends[0], outcome);
        const auto end = Clock::now() + time;
        while (Clock::now() < end && waitForNote(ends[0], end)) {
            readNote(ends[0], outcome);
        }
        outcome.end = nowUs();
        EXPECT_EQ(::kill(child, SIGKILL), 0);
        int how = 0;
        EXPECT_EQ(::waitpid(child, &how, 0), child);
        EXPECT_TRUE(WIFSIGNALED(how)) << "it ended by itself";
        while (readNote(ends[0], outcome)) {
        }
        ::close(ends[0]);
        return outcome;
    }

    TemporaryFolder folder;

 private:
    static bool waitForNote(int file, Clock::time_point end) {
        fd_set files;
        FD_ZERO(&files);
        FD_SET(file, &files);
        const auto left =
            std::max<std::int64_t>(0, std::chrono::duration_cast<microseconds>(end - Clock::now()).count());
        timeval wait{static_cast<time_t>(left / 1000000), static_cast<suseconds_t>(left % 1000000)};
        return ::select(file + 1, &files, nullptr, nullptr, &wait) > 0;
    }
    static bool readNote(int file, Outcome& outcome) {
        Note note{};
        if (::read(file, &note, sizeof note) != sizeof note) {
            return false;
        }
        outcome.notes.push_back(note);
        return true;
    }
};

// In the process that is to be killed: works and never returns. Returns at once in every other.
void workWhereToldSo() {
    const char* const data = std::getenv("TESSAVO_KILLED_DATA");
    const char* const log = std::getenv("TESSAVO_KILLED_LOG");
    const char* const seed = std::getenv("TESSAVO_KILLED_SEED");
    if (data != nullptr && log != nullptr && seed != nullptr) {
        Worker(data, std::atoi(log), std::strtoull(seed, nullptr, 10)).work();
    }
}

TEST_F(Killed, AtAnyMomentOnlyTheLastSecondIsMissing) {
    workWhereToldSo();
    const char* const wish = std::getenv("TESSAVO_KILLS");
    const int kills = wish != nullptr ? std::atoi(wish) : usualKills;
    std::mt19937_64 random(std::random_device{}());
    std::int64_t worstUs = 0;
    std::size_t states = 0;
    for (int i = 0; i < kills; ++i) {
        const auto data = folder / ("data-" + std::to_string(i));
        const std::uint64_t seed = random();
        const auto time = milliseconds(random() % 900);
        const Outcome outcome = killAfter(time, data, seed);
        SCOPED_TRACE("seed " + std::to_string(seed) + ", after " + std::to_string(time.count()) + " ms");
        ASSERT_FALSE(outcome.notes.empty());
        states += outcome.notes.size();
        const auto file = data / "recovery.tsr";
        // Without a file it is the start that comes back.
        Md5Digest digest = outcome.notes.front().digest;
        if (std::filesystem::exists(file)) {
            const auto read = readRecovery(file);
            ASSERT_TRUE(std::holds_alternative<RecoveryState>(read)) << "damaged";
            digest = digestOf(*std::get<RecoveryState>(read).trail);
        }
        const auto found = std::find_if(outcome.notes.rbegin(), outcome.notes.rend(),
                                        [&](const Note& note) { return note.digest == digest; });
        ASSERT_NE(found, outcome.notes.rend()) << "it never was like this";
        if (found == outcome.notes.rbegin()) {
            continue;
        }
        // The first state that is missing must not be older than a second.
        const std::int64_t lagUs = outcome.end - std::prev(found)->time;
        worstUs = std::max(worstUs, lagUs);
        EXPECT_LE(lagUs, microseconds(allowedLag).count());
    }
    std::cout << kills << " kills, " << states << " states, at most " << worstUs / 1000
              << " ms were missing\n";
}

}  // namespace
}  // namespace tessavo::test
