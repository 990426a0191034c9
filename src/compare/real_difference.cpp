#include "compare/real_difference.h"

namespace tessavo {

struct RealDifferences::Sides {};

RealDifferences::RealDifferences(const ParameterSet&, const ParameterSet&) {}

RealDifferences::~RealDifferences() = default;

bool RealDifferences::isReal(const Field&, FieldIndex) const {
    return sides_ == nullptr;
}

}  // namespace tessavo
