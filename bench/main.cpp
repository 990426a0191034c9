#include <array>
#include <benchmark/benchmark.h>
#include <iostream>
#include <string>
#include <vector>

#include "ratio_report.h"

// Measures ratios within one run, so that the bounds mean the same on every machine, and fails when one is
// missed. Repetitions of all benchmarks are mixed, so that a slow moment hits both sides of a ratio.

namespace {

using tessavo::bench::Clock;
using tessavo::bench::RatioBound;

constexpr auto bounds = std::to_array<RatioBound>({
    {"output curve / plain evaluation", "fast curve", "plain curve", 1.0 / 15.0, Clock::processor},
    {"band edit on eight channels, BZT / plain curve", "band edit BZT", "plain curve", 0.2, Clock::processor},
    {"band edit on eight channels, MZT / plain curve", "band edit MZT", "plain curve", 0.2, Clock::processor},
    {"band edit on eight channels, BZT/MZT / plain curve", "band edit BZT/MZT", "plain curve", 0.2,
     Clock::processor},
    {"crossover edit on eight channels, BZT / plain curve", "crossover edit BZT", "plain curve", 0.2,
     Clock::processor},
    {"crossover edit on eight channels, MZT / plain curve", "crossover edit MZT", "plain curve", 0.2,
     Clock::processor},
    {"crossover edit on eight channels, BZT/MZT / plain curve", "crossover edit BZT/MZT", "plain curve", 0.2,
     Clock::processor},
    {"whole set, BZT / plain curve", "whole set BZT", "plain curve", 1.0 / 3.0, Clock::processor},
    {"whole set, MZT / plain curve", "whole set MZT", "plain curve", 1.0 / 3.0, Clock::processor},
    {"whole set, BZT/MZT / plain curve", "whole set BZT/MZT", "plain curve", 1.0 / 3.0, Clock::processor},
    {"step of the history with its edit / plain curve", "step", "plain curve", 0.1, Clock::processor},
    {"undo and redo of a step / plain curve", "undo and redo", "plain curve", 0.2, Clock::processor},
    {"exact responses of eight channels and their sum / plain curve", "exact responses of eight channels",
     "plain curve", 8.0, Clock::processor},
    {"exact response of an edited channel and the sum / plain curve", "exact response of an edited channel",
     "plain curve", 1.0, Clock::processor},
    {"MD5 of an image / libcrypto's", "MD5", "MD5 of libcrypto", 1.5, Clock::processor},
    {"CRC of 4096 bytes by table / bit by bit", "CRC", "CRC bit by bit", 0.2, Clock::processor},
    {"exchange of 8 blocks / the pauses it must make", "exchange", "pauses", 1.05, Clock::wall},
    {"backup of the target / what its line and the protocol take", "backup", "line of a backup", 1.05,
     Clock::wall},
});

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> words{argv[0], "--benchmark_enable_random_interleaving=true",
                                   "--benchmark_repetitions=15", "--benchmark_min_time=0.02"};
    words.insert(words.end(), argv + 1, argv + argc);
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 2;
    }
    tessavo::bench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.verdict(bounds, std::cout) ? 0 : 1;
}
