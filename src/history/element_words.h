#pragma once

#include <span>
#include <string>
#include <string_view>

#include "params/field_table.h"

namespace tessavo {

/// How the pages number and group the elements of a field.
enum class ElementFamily : std::uint8_t {
    set,          ///< what a set has once, and what a page names one by one
    channel,      ///< numbered as "Channel N" of the page "Equalizing Output"
    outputGroup,  ///< numbered as "Channel N" of the page "Output Group", which counts in another order
    channelFlag,  ///< numbered as the flags above the pages, in the order of the output groups
    input,        ///< bands of the input side, named by what stands above their sliders
};

[[nodiscard]] ElementFamily familyOf(const Field& field);

/// Whether two fields are told of in one breath where the same elements of both have changed: "Filter 8 on, type
/// High Shelf".
[[nodiscard]] bool standTogether(const Field& one, const Field& other);

/// Elements that share a name, "Channels 1 and 3, Filter 3", in its two parts, of which either may be empty.
struct ElementPlace {
    std::string outer;       ///< "Channels 1 and 3", "Input"
    std::string outerCount;  ///< the same by their number: "2 channels"
    std::string inner;       ///< "Filter 3", "60 Hz"
};

/// Names a block of elements: every one of `outer` with every one of `inner`. Both lists rise and are not empty.
[[nodiscard]] ElementPlace placeOf(const Field& field, std::span<const std::size_t> outer,
                                   std::span<const std::size_t> inner);

/// Output channels as pages number them: "Channels 1, 3 and 5".
/// \param records rising record channels
[[nodiscard]] std::string channelList(std::span<const std::size_t> records);

/// What stands between place and value: "gain". Empty for a switch that is named by its place alone. Made from the
/// field's path, so that every field has one.
[[nodiscard]] std::string nameOf(const Field& field, FieldIndex index);

/// A value as a person reads it: "−4.5 dB", "High Shelf", "on". Negative numbers have a minus sign, no hyphen.
[[nodiscard]] std::string valueText(const Field& field, double stored);

/// "1 value", "12 values".
[[nodiscard]] std::string countWords(std::size_t count, std::string_view noun);

}  // namespace tessavo
