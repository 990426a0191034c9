#include "ratio_report.h"

#include <algorithm>
#include <iomanip>
#include <optional>

namespace tessavo::bench {
namespace {

std::optional<double> pickFrom(std::vector<double> seconds, Pick pick) {
    if (seconds.empty()) {
        return std::nullopt;
    }
    std::sort(seconds.begin(), seconds.end());
    return pick == Pick::minimum ? seconds.front() : seconds[seconds.size() / 2];
}

}  // namespace

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
    std::vector<Run> shown;
    for (const Run& run : runs) {
        if (run.run_type == Run::RT_Iteration && !run.error_occurred && run.iterations > 0) {
            seconds_[run.run_name.function_name].push_back(run.real_accumulated_time /
                                                           static_cast<double>(run.iterations));
        }
        if (run.error_occurred || run.aggregate_name == "median") {
            shown.push_back(run);
        }
    }
    ConsoleReporter::ReportRuns(shown);
}

bool RatioReporter::verdict(std::span<const RatioBound> bounds, std::ostream& out) const {
    const auto timeOf = [this](std::string_view name, Pick pick) -> std::optional<double> {
        const auto found = seconds_.find(name);
        return found == seconds_.end() ? std::nullopt : pickFrom(found->second, pick);
    };
    bool allHold = true;
    out << '\n' << std::left << std::fixed << std::setprecision(3);
    for (const RatioBound& bound : bounds) {
        const auto measured = timeOf(bound.measured, bound.pick);
        const auto reference = timeOf(bound.reference, bound.pick);
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
