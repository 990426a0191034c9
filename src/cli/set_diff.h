#pragma once

#include <string>
#include <vector>

#include "params/records.h"

namespace tessavo::cli {

/// One difference between two stores: "set 2 channel[3].volume" and both values.
struct Difference {
    std::string path;
    std::string first;
    std::string second;
};

/// Every element whose bytes differ, in record order: fields by their path in the field table, texts, and
/// spare bytes as "spare[OFFSET]". Where two texts read alike but differ behind their end, the bytes there
/// are given.
[[nodiscard]] std::vector<Difference> differences(const ParameterStore& first, const ParameterStore& second);

}  // namespace tessavo::cli
