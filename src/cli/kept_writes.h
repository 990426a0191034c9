#pragma once

#include <cstdint>
#include <string>

#include "cli/reporter.h"
#include "params/parameter_image.h"

namespace tessavo::cli {

/// Keeps in the user's data folder what a set of the target has just been made to hold. Where that fails, it
/// is told and nothing else changes.
/// \param targetSet 1 to 5, or 0 for the default set
void keepWritten(std::uint8_t targetSet, const std::string& port, const ParameterImage& image,
                 Reporter& reporter);

}  // namespace tessavo::cli
