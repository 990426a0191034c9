#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "compare/set_compare.h"
#include "params/image_conversion.h"
#include "support/harness.h"

namespace tessavo::test {

/// A set with all bytes random, within the ranges of the pages where a filter, a gain word or a delay depends on them.
inline ParameterSet randomSet(std::mt19937_64& random) {
    return recordOf<ParameterStore>(randomStore(random)).sets[random() % setCount];
}

/// A set as a fresh store has it.
inline ParameterSet freshSet() {
    static const ParameterStore store = [] {
        RecordingBoxes boxes;
        TuningState state(boxes);
        state.start();
        return state.store();
    }();
    return store.sets[0];
}

struct TableElement {
    const Field* field;
    FieldIndex index;
    [[nodiscard]] SetElement key() const { return {ElementKind::field, field->id, index}; }
    [[nodiscard]] std::string name() const {
        return std::string(field->path) + " " + std::to_string(index.outer) + " " +
               std::to_string(index.inner);
    }
};

inline std::vector<TableElement> tableElements() {
    std::vector<TableElement> elements;
    for (const Field& field : fieldTable()) {
        forEachElement(field, [&](FieldIndex index) { elements.push_back({&field, index}); });
    }
    return elements;
}

inline ParameterImage imageOf(const ParameterSet& set) {
    ParameterImage image{};
    writeImageFields(image, set);
    writeImageField(image, set, fieldOf(FieldId::inputEqOn), {});
    return image;
}

/// What the set becomes in the target and back.
inline ParameterSet throughTheTarget(const ParameterSet& set) {
    ParameterStore store{};
    store.sets[0] = set;
    readImageFields(store, 0, imageOf(set));
    return store.sets[0];
}

/// A value of the element that is another one to the target: a step of a dB, of a millisecond, of a code.
inline double anotherValue(const ParameterSet& set, const Field& field, FieldIndex index) {
    const double value = storedValue(set, field, index);
    const double step = field.storedPerShown;
    const double highest = field.maximum * field.storedPerShown;
    return value + step <= highest ? value + step : value - step;
}

/// Every line of a comparison, in order.
inline std::vector<ComparedLine> linesOf(const SetComparison& comparison) {
    std::vector<ComparedLine> lines;
    for (const CompareGroup& group : comparison.groups) {
        lines.insert(lines.end(), group.lines.begin(), group.lines.end());
    }
    return lines;
}

}  // namespace tessavo::test
