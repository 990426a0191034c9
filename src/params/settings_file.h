#pragma once

#include <cstddef>
#include <filesystem>
#include <string_view>

#include "params/parameter_image.h"
#include "params/records.h"

namespace tessavo {

inline constexpr std::string_view errorOpeningConfigurationText = "Error opening configuration file!";
inline constexpr std::string_view incompatibleFileText = "Incompatible .eqs file!\r\n";
inline constexpr std::string_view errorOpeningBinaryText = "Error opening binary file!";
inline constexpr std::string_view errorWritingDataText = "Error writing data!";

enum class LoadVerdict { loaded, cannotOpen, incompatible };

/// Whether a set's record is valid: its first word is 2120.
[[nodiscard]] bool isValidRecord(const ParameterSet& set);

/// Reads a settings file: the first 10600 bytes, zeros where the file is shorter.
///
/// \param testedSet the only set whose record is tested; the others are taken as they are.
/// \param store written only when the verdict is `loaded`.
[[nodiscard]] LoadVerdict readSettings(const std::filesystem::path& path, std::size_t testedSet,
                                       ParameterStore& store);

enum class SaveVerdict { saved, cannotOpen, incomplete };

/// Writes the store's 10600 bytes; a longer existing file keeps its tail.
[[nodiscard]] SaveVerdict writeSettings(const std::filesystem::path& path, const ParameterStore& store);

/// Writes the image's 3384 bytes, without digest; a longer existing file keeps its tail.
[[nodiscard]] SaveVerdict writeImage(const std::filesystem::path& path, const ParameterImage& image);

}  // namespace tessavo
