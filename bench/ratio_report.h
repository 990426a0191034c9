#pragma once

#include <benchmark/benchmark.h>
#include <map>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessavo::bench {

/// Which of a benchmark's repetitions counts.
enum class Pick { minimum, median };

/// A bound on how long one benchmark takes, in units of another of the same run.
struct RatioBound {
    std::string_view what;
    std::string_view measured;
    std::string_view reference;
    double atMost;
    Pick pick;
};

/// Prints the median of every benchmark and keeps the time of each repetition.
class RatioReporter final : public benchmark::ConsoleReporter {
 public:
    RatioReporter() : ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run>& runs) override;

    /// Prints each ratio and its bound.
    /// \return whether all hold; false also when a benchmark of a bound did not run
    [[nodiscard]] bool verdict(std::span<const RatioBound> bounds, std::ostream& out) const;

 private:
    /// Seconds of each repetition, by benchmark.
    std::map<std::string, std::vector<double>, std::less<>> seconds_;
};

}  // namespace tessavo::bench
