#pragma once

#include <cstddef>
#include <vector>

#include "params/field_table.h"
#include "params/records.h"

namespace tessavo {

/// An element of a set whose value differs.
struct ChangedElement {
    const Field* field;
    FieldIndex index;
};

/// What differs between a set before a step and the same set after it.
struct SetChanges {
    std::size_t set = 0;                   ///< 0 to 4
    std::vector<ChangedElement> elements;  ///< in the order of the field table
    bool isNamed = false;                  ///< the name differs
    bool hasOtherVersion = false;
    // Where all of these are empty only bytes differ that nobody knows.

    /// Values that differ, texts included.
    [[nodiscard]] std::size_t count() const {
        return elements.size() + (isNamed ? 1U : 0U) + (hasOtherVersion ? 1U : 0U);
    }
};

/// Compares two sets; the copies of delay size 1 count with it. The number of the set is 0.
[[nodiscard]] SetChanges changesBetween(const ParameterSet& before, const ParameterSet& after);

/// Compares two stores, set by set; sets without a difference are left out. What is always written together
/// counts once: the copies of delay size 1 with it, and a source that went into several sets with the current one.
/// \param currentSet 0 to 4
[[nodiscard]] std::vector<SetChanges> changesBetween(const ParameterStore& before,
                                                     const ParameterStore& after, std::size_t currentSet);

}  // namespace tessavo
