#pragma once

#include <cstdint>

#include "params/field_table.h"

namespace tessavo {

/// What of a set an element is.
enum class ElementKind : std::uint8_t {
    field,    ///< a value of the field table
    name,     ///< the set's name
    version,  ///< the set's version text
};

/// A value of a set that can be compared and copied by itself.
struct SetElement {
    ElementKind kind = ElementKind::field;
    FieldId field = FieldId::count;  ///< count for the two texts
    FieldIndex index{};              ///< of the field's element; zeros for the two texts
};

[[nodiscard]] constexpr bool operator==(const SetElement& one, const SetElement& other) {
    return one.kind == other.kind && one.field == other.field && one.index.outer == other.index.outer &&
           one.index.inner == other.index.inner;
}

}  // namespace tessavo
