#pragma once

#include "params/field_table.h"
#include "params/parameter_image.h"
#include "params/records.h"

namespace tessavo {

/// Writes into the image what it holds of one element of a set. Coefficient words are not touched: they are
/// computed and copied by TuningState.
void writeImageField(ParameterImage& image, const ParameterSet& set, const Field& field, FieldIndex index);

/// Writes every field of the set into the image, except the input equalizer's two bypass bytes, which only
/// the equalizer's switch writes. Coefficient words and spare bytes stay.
void writeImageFields(ParameterImage& image, const ParameterSet& set);

/// Converts a received image into one set of the store, field by field as the table's ImageRule says. Router
/// sources go into all five sets. A phase inversion is set where the image has one, and never cleared.
/// Coefficient words are not read. Names, versions and spare bytes stay.
/// \param setIndex 0 to 4
void readImageFields(ParameterStore& store, std::size_t setIndex, const ParameterImage& image);

/// Whether two sets hold the same bytes in every field that the image carries. Name, version and other fields
/// that the target does not take may differ.
[[nodiscard]] bool haveEqualImageFields(const ParameterSet& one, const ParameterSet& other);

}  // namespace tessavo
