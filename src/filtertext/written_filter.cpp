#include "filtertext/written_filter.h"

#include <array>
#include <utility>

namespace tessavo {

void noteProblem(WrittenFilter& filter, std::size_t column, std::string problem) {
    if (filter.problem.empty()) {
        filter.problem = std::move(problem);
        filter.problemColumn = column;
    }
}

void addVotes(const WrittenFilter& filter, DecimalSignVotes& votes) {
    const std::array values{&filter.frequency, &filter.gain,  &filter.q,
                            &filter.octaves,   &filter.slope, &filter.secondFrequency};
    for (const WrittenValue* value : values) {
        votes.add(value->number, value->use);
    }
}

std::optional<double> numberOf(const WrittenValue& value, char decimalSign) {
    if (!value.isThere || !value.problem.empty()) {
        return std::nullopt;
    }
    const auto number = valueOf(value.number, value.use, decimalSign);
    return number ? std::optional(*number * value.scale) : std::nullopt;
}

std::string problemOf(const WrittenValue& value, char decimalSign) {
    if (!value.problem.empty()) {
        return value.problem;
    }
    std::string problem = value.quoted;
    problem.append(" is not a number");
    if (valueOf(value.number, value.use, decimalSign == '.' ? ',' : '.')) {
        problem.append(decimalSign == '.' ? " with a decimal point" : " with a decimal comma");
        problem.append(", which the other lines have");
    }
    return problem;
}

}  // namespace tessavo
