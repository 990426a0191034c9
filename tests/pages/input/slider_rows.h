#pragma once

#include <functional>
#include <string>
#include <vector>

#include "support/harness.h"

namespace tessavo::test {

/// A slider of the input side with its box, as the formats and the pages' texts say; written down here once
/// more, apart from the program's own tables. A step is a tenth where `perUnit` is 10, a unit where it is 1.
struct InputRow {
    std::string name;
    int slider;
    int edit;
    bool vertical;
    int low;
    int high;
    int perUnit;
    /// The box and its slider follow each other while a person types.
    bool followed;
    std::function<std::string(int steps)> text;
    std::function<Patches(int steps)> record;
    std::function<Patches(int steps)> image;
    /// Steps that set 0 of a store holds; neither rounded nor clamped.
    std::function<double(const Bytes& store)> held;
    /// The same edit without a page.
    std::function<void(TuningState& state, int steps, bool final)> edited;

    [[nodiscard]] int position(int steps) const { return vertical ? -steps : steps; }
    [[nodiscard]] int steps(int position) const { return vertical ? -position : position; }
    [[nodiscard]] int shown(const Bytes& store) const;
    /// Steps that a typed number of tenths asks for.
    [[nodiscard]] int typed(int tenths) const;
    [[nodiscard]] bool isDecoderGain() const { return held && name.find("decoder") != std::string::npos; }
};

/// Ten graphic and three tone bands, six levels, six compressor sliders.
const std::vector<InputRow>& equalizerRows();
/// Turn-off delay and four decoder gains.
const std::vector<InputRow>& routerRows();

void PrintTo(const InputRow& row, std::ostream* out);

}  // namespace tessavo::test
