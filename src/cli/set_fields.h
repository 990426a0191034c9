#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "params/field_table.h"
#include "params/records.h"
#include "params/set_text.h"

namespace tessavo::cli {

/// The two texts of a set, which the field table does not hold.
struct TextField {
    std::string_view path;
    std::size_t recordOffset;
    SetText ParameterSet::*text;
};

[[nodiscard]] std::span<const TextField> textFields();

/// Bytes of a record that belong to no field.
struct SpareRun {
    std::size_t offset;
    std::size_t size;
};

/// All spare bytes, in record order.
[[nodiscard]] const std::vector<SpareRun>& spareRuns();

/// Path of one element: "channel[3].band[0].gain".
[[nodiscard]] std::string elementPath(const Field& field, FieldIndex index);

/// An element's shown value without its unit. Read back, it gives exactly the stored value; a NaN is shown by
/// its bits as "nan(0x7fc00000)". Values of fields with decimals have at least one.
[[nodiscard]] std::string elementText(const ParameterSet& set, const Field& field, FieldIndex index);

/// A text in UTF-8 with control characters written as hexadecimal escapes, so that a terminal shows them and
/// obeys none.
[[nodiscard]] std::string readable(std::string_view text);

/// A text of a set, readable.
[[nodiscard]] std::string readableText(const ParameterSet& set, const TextField& field);

using RecordBytes = std::array<std::uint8_t, parameterSetSize>;

/// A copy of the record's bytes.
[[nodiscard]] RecordBytes bytesOf(const ParameterSet& set);

/// Bytes as hexadecimal text, two lower-case digits for each.
[[nodiscard]] std::string hexText(std::span<const std::uint8_t> bytes);

}  // namespace tessavo::cli
