#pragma once

#include <benchmark/benchmark.h>
#include <map>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessavo::bench {

/// What counts as the time of a benchmark: the least of its repetitions, so that a busy machine matters
/// least.
enum class Clock {
    processor,  ///< for what computes
    wall        ///< for what waits
};

/// A bound on how long one benchmark takes, in units of another of the same run.
struct RatioBound {
    std::string_view what;
    std::string_view measured;
    std::string_view reference;
    double atMost;
    Clock clock;
};

/// Prints the median of every benchmark and keeps the least time of its repetitions.
class RatioReporter final : public benchmark::ConsoleReporter {
 public:
    RatioReporter() : ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run>& runs) override;

    /// Prints each ratio and its bound.
    /// \return whether all hold; false also when a benchmark of a bound did not run
    [[nodiscard]] bool verdict(std::span<const RatioBound> bounds, std::ostream& out) const;

 private:
    struct Least {
        double processorSeconds = 0.0;
        double wallSeconds = 0.0;
    };
    std::map<std::string, Least, std::less<>> least_;
};

}  // namespace tessavo::bench
