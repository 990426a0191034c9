#include "ratio_report.h"

#include <algorithm>
#include <iomanip>
#include <optional>

namespace tessavo::bench {
void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
    std::vector<Run> shown;
    for (const Run& run : runs) {
        if (run.run_type == Run::RT_Iteration && !run.error_occurred && run.iterations > 0) {
            const auto iterations = static_cast<double>(run.iterations);
            const Least now{run.cpu_accumulated_time / iterations, run.real_accumulated_time / iterations};
            Least& least = least_.try_emplace(run.run_name.function_name, now).first->second;
            least.processorSeconds = std::min(least.processorSeconds, now.processorSeconds);
            least.wallSeconds = std::min(least.wallSeconds, now.wallSeconds);
        }
        if (run.error_occurred || run.aggregate_name == "median") {
            shown.push_back(run);
        }
    }
    ConsoleReporter::ReportRuns(shown);
}

bool RatioReporter::verdict(std::span<const RatioBound> bounds, std::ostream& out) const {
    const auto timeOf = [this](std::string_view name, Clock clock) -> std::optional<double> {
        const auto found = least_.find(name);
        if (found == least_.end()) {
            return std::nullopt;
        }
        return clock == Clock::wall ? found->second.wallSeconds : found->second.processorSeconds;
    };
    bool allHold = true;
    out << '\n' << std::left << std::fixed << std::setprecision(3);
    for (const RatioBound& bound : bounds) {
        const auto measured = timeOf(bound.measured, bound.clock);
        const auto reference = timeOf(bound.reference, bound.clock);
        out << std::setw(64) << bound.what;
        if (!measured || !reference || *reference <= 0.0) {
            out << " not measured\n";
            allHold = false;
            continue;
        }
        const double ratio = *measured / *reference;
        const bool holds = ratio <= bound.atMost;
        out << ' ' << ratio << (holds ? " <= " : " > ") << bound.atMost << (holds ? "" : "  MISSED") << '\n';
        allHold = allHold && holds;
    }
    return allHold;
}

}  // namespace tessavo::bench
