#pragma once

#include <string>

#include "params/records.h"

namespace tessavo::cli {

/// A set for people to read: general values, input bands, then each channel in page order with its bands,
/// crossovers and limiter; units and the words behind codes included.
[[nodiscard]] std::string setReport(const ParameterSet& set, std::size_t setIndex);

}  // namespace tessavo::cli
