#pragma once

#include "params/field_table.h"
#include "params/parameter_image.h"
#include "params/records.h"

namespace tessavo {

/// Writes what the image holds of one element of a set. Coefficient words are not among it.
void writeImageField(ParameterImage& image, const ParameterSet& set, const Field& field, FieldIndex index);

/// Whether writing the whole image covers the input equalizer's bypass bytes.
enum class BypassBytes { keep, write };

/// Writes every field of the set into the image. Coefficient words and spare bytes stay.
void writeImageFields(ParameterImage& image, const ParameterSet& set, BypassBytes bypass);

/// Converts a received image into one set of the store. Router sources go into all five sets, a phase
/// inversion is never cleared, coefficient words are not read; names, versions and spare bytes stay.
void readImageFields(ParameterStore& store, std::size_t setIndex, const ParameterImage& image);

}  // namespace tessavo
