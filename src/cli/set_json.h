#pragma once

#include <string>

#include "params/records.h"

namespace tessavo::cli {

/// One set of a store to be written, by its index.
struct ShownSets {
    bool only = false;  ///< only the set `index`; otherwise all five
    std::size_t index = 0;
};

/// Settings as JSON, complete to the last byte and in a fixed order of keys.
///
/// {"sets": [{"set": 1, "valid": true, "fields": {...}, "texts": {...}, "spare": {...}}, ...]}. A set whose
/// record is not valid has "valid": false and nothing more. Below "fields" stand the paths of the field table
/// as objects and arrays, values in the table's units; a value that JSON has no number for is a string. A
/// text has its "text" and the hexadecimal "bytes" of its place; spare bytes are hexadecimal, by their offset
/// in the record.
[[nodiscard]] std::string settingsJson(const ParameterStore& store, const ShownSets& shown);

}  // namespace tessavo::cli
