#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "dsp/biquad_words.h"

namespace tessavo::test {

using Cascade = std::vector<BiquadWords>;

/// A way to draw cascades that are hard on a fast evaluation in one respect.
struct CascadeFamily {
    std::string name;
    Cascade (*draw)(std::mt19937_64& random);
};

const std::vector<CascadeFamily>& cascadeFamilies();

}  // namespace tessavo::test
