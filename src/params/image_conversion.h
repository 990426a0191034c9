#pragma once

#include "params/field_table.h"
#include "params/parameter_image.h"
#include "params/records.h"

namespace tessavo {

/// Writes what the image holds of one element of a set. Coefficient words are not among it.
void writeImageField(ParameterImage& image, const ParameterSet& set, const Field& field, FieldIndex index);

/// Writes every field of the set into the image, except the input equalizer's bypass bytes: those are
/// written by the switch alone. Coefficient words and spare bytes stay.
void writeImageFields(ParameterImage& image, const ParameterSet& set);

/// Converts a received image into one set of the store. Router sources go into all five sets, a phase
/// inversion is never cleared, coefficient words are not read; names, versions and spare bytes stay.
void readImageFields(ParameterStore& store, std::size_t setIndex, const ParameterImage& image);

/// Whether two sets hold the same bytes in every field that has a place in the image. Name, version and what
/// else the target does not take may differ.
[[nodiscard]] bool holdTheSameForTheImage(const ParameterSet& one, const ParameterSet& other);

}  // namespace tessavo
