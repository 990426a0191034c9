#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>

#include "params/parameter_image.h"
#include "params/records.h"

namespace tessavo {

// What a person is told when loading or saving fails.
inline constexpr std::string_view errorOpeningConfigurationText = "Error opening configuration file!";
inline constexpr std::string_view incompatibleFileText = "Incompatible .eqs file!\r\n";
inline constexpr std::string_view errorOpeningBinaryText = "Error opening binary file!";
inline constexpr std::string_view errorWritingDataText = "Error writing data!";

/// What became of loading a settings file.
enum class LoadVerdict {
    loaded,
    cannotOpen,   ///< missing, no permission, no regular file
    incompatible  ///< the tested record does not have its size as its first word
};

/// Whether a set's record is valid, which is to say that its first word is its size, 2120.
[[nodiscard]] bool isValidRecord(const ParameterSet& set);

/// Reads the first 10600 bytes of a settings file; where the file is shorter, zeros follow.
/// \param testedSet the only set whose record must be valid, 0 to 4; the others are taken as they are
/// \param store written only when the verdict is `loaded`
/// \param bytesInFile length of the whole file, where it is asked for; written only when the verdict is `loaded`
[[nodiscard]] LoadVerdict readSettings(const std::filesystem::path& path, std::size_t testedSet,
                                       ParameterStore& store, std::uintmax_t* bytesInFile = nullptr);

/// The same for the bytes of a settings file.
/// \return never `cannotOpen`
[[nodiscard]] LoadVerdict settingsFrom(std::span<const std::uint8_t> bytes, std::size_t testedSet,
                                       ParameterStore& store);

/// What became of writing a file.
enum class SaveVerdict {
    saved,
    cannotOpen,
    incomplete  ///< the file was opened, but not every byte reached it
};

/// Writes the store's 10600 bytes; a longer existing file keeps its tail.
[[nodiscard]] SaveVerdict writeSettings(const std::filesystem::path& path, const ParameterStore& store);

/// Writes the image's 3384 bytes, without digest; a longer existing file keeps its tail.
[[nodiscard]] SaveVerdict writeImage(const std::filesystem::path& path, const ParameterImage& image);

}  // namespace tessavo
