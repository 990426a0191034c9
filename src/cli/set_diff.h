#pragma once

#include <cstdint>
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

/// Which differences count.
enum class Counted : std::uint8_t {
    all,
    real,  ///< not those that the target's number formats make: compare/real_difference.h
};

/// Every element whose bytes differ, in record order: fields by their path in the field table, texts, and
/// spare bytes as "spare[OFFSET]". Where two texts read alike but differ behind their end, the bytes there
/// are given.
[[nodiscard]] std::vector<Difference> differences(const ParameterStore& first, const ParameterStore& second,
                                                  Counted counted = Counted::all);

}  // namespace tessavo::cli
