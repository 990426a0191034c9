#include "compare/set_compare.h"

namespace tessavo {

std::size_t SetComparison::differenceCount() const {
    return 0;
}

std::size_t SetComparison::realDifferenceCount() const {
    return 0;
}

std::vector<SetElement> SetComparison::differing() const {
    return {};
}

SetComparison compareSets(const ParameterSet&, const ParameterSet&, ListedElements) {
    return {};
}

std::string shortNameOf(const SetElement&) {
    return {};
}

}  // namespace tessavo
