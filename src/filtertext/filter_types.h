#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "filtertext/filter_forms.h"
#include "filtertext/written_filter.h"
#include "text/line_text.h"

namespace tessavo {

/// What a type of filter is to the target.
enum class TypeUse : std::uint8_t {
    filter,   ///< one of the shapes
    nothing,  ///< an empty place
    refused   ///< the target has nothing of this kind
};

/// A type of filter, as texts name it.
struct FilterType {
    std::string_view word;  ///< in small letters, without blanks, '-' and '_'
    TypeUse use = TypeUse::filter;
    FilterShape shape = FilterShape::peak;
    bool isCentre = false;    ///< the frequency of a shelf is its centre, also with a Q or a slope
    bool needsQ = false;      ///< the line must tell the Q
    std::string_view reason;  ///< why it is refused
};

/// The type of a name in any case.
/// \param name may have a slope behind it: "LS 12dB"
/// \return null for a name that is not known
[[nodiscard]] const FilterType* filterType(std::string_view name);

/// Reads a type and the slope behind it, such as "PK", "LS 12dB" or "LSC 9.6 dB", into a filter.
/// \return the place behind it
std::size_t readType(const LineText& line, std::size_t begin, std::size_t end, WrittenFilter& filter);

}  // namespace tessavo
