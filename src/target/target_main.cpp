#include <algorithm>
#include <chrono>
#include <functional>
#include <iostream>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <variant>

#include "base/number_text.h"
#include "target/memory_files.h"
#include "target/pty_target.h"
#include "target/target_console_posix.h"
#include "target/target_options.h"

namespace {

using namespace tessavo;

constexpr int done = 0;
constexpr int failed = 1;
constexpr int wrongUsage = 2;
/// Clip states read ahead of the requests that ask for them.
constexpr std::size_t clipReadAhead = 256;

int fail(const std::string& problem) {
    std::cerr << "tessavo-target: " << problem << '\n';
    return failed;
}

/// Seconds with three decimals, in a column of its own.
std::string column(std::chrono::milliseconds elapsed) {
    constexpr std::size_t width = 11;
    std::string seconds = fixedText(static_cast<double>(elapsed.count()) / 1000, 3);
    seconds.insert(0, width - std::min(seconds.size(), width), ' ');
    return seconds + "  ";
}

TargetLog makeLog(bool verbose) {
    const auto start = std::chrono::steady_clock::now();
    return [verbose, start](TargetLogKind kind, std::string_view text) {
        if (kind == TargetLogKind::trouble) {
            std::cerr << "tessavo-target: " + std::string(text) + '\n';
        } else if (verbose) {
            const auto elapsed = std::chrono::steady_clock::now() - start;
            std::cerr << column(std::chrono::duration_cast<std::chrono::milliseconds>(elapsed)) +
                             std::string(text) + '\n';
        }
    };
}

/// Reads patterns into the target; tells what is no pattern.
class ClipLines {
 public:
    explicit ClipLines(PtyTarget& target) : target_(target) {}

    void take(std::string_view line) {
        ++number_;
        const auto state = parseClipPattern(line);
        if (state) {
            target_.enqueueClipState(*state);
        } else if (line.find_first_not_of(" \t\r") != std::string_view::npos) {
            std::cerr << "tessavo-target: line " + std::to_string(number_) +
                             " of standard input is not a pattern of " + std::to_string(ClipBytes{}.size()) +
                             " characters 0 or 1; left out\n";
        }
    }

 private:
    PtyTarget& target_;
    std::size_t number_ = 0;
};

int play(const TargetOptions& options) {
    TargetConsole console;
    if (!console.usable()) {
        return fail("cannot wait for signals");
    }
    const TargetLog log = makeLog(options.verbose);
    TargetMemory memory = TargetMemory::holding(factoryImage());
    std::optional<MemoryFiles> files;
    if (options.stateDirectory) {
        files.emplace(*options.stateDirectory);
        if (const std::string problem = files->prepare(); !problem.empty()) {
            return fail(problem);
        }
        files->load(memory, log);
    }

    PtyTarget target(std::move(memory),
                     {.faults = options.faults,
                      .versions = options.versions,
                      .baud = options.baud,
                      .files = files ? &*files : nullptr},
                     log);
    if (options.clip == ClipChoice::random) {
        target.randomiseClipStates(std::random_device{}());
    }
    if (const std::string problem = target.start(); !problem.empty()) {
        return fail(problem);
    }
    if (!(std::cout << target.path() << std::endl)) {
        return fail("cannot write to standard output");
    }

    ClipLines lines(target);
    std::function<void(std::string_view)> takeLine;
    if (options.clip == ClipChoice::standardInput) {
        takeLine = [&lines](std::string_view line) { lines.take(line); };
    }
    console.wait(target.endDescriptor(), takeLine,
                 [&target] { return target.queuedClipStates() < clipReadAhead; });
    target.stop();
    return target.failed() ? failed : done;
}

}  // namespace

int main(int argc, char** argv) {
    const auto parsed = parseTargetOptions(argc, argv);
    if (const auto* usage = std::get_if<TargetUsage>(&parsed)) {
        (usage->wrong ? std::cerr : std::cout) << usage->text;
        return usage->wrong ? wrongUsage : done;
    }
    return play(std::get<TargetOptions>(parsed));
}
