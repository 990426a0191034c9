#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cli/reporter.h"
#include "params/parameter_image.h"
#include "params/records.h"

namespace tessavo::cli {

/// The path that an argument in UTF-8 names.
[[nodiscard]] std::filesystem::path pathOf(std::string_view argument);
/// A path in UTF-8, for people: what is no text in it becomes U+FFFD.
[[nodiscard]] std::string textOf(const std::filesystem::path& path);

/// Whether two arguments name the same file, existing or not.
[[nodiscard]] bool isSameFile(const std::string& first, const std::string& second);

/// Whether a command that reads `input` may write `output`, which may be empty. Reports that it may not where both name the
/// same file.
[[nodiscard]] bool isApart(const std::string& output, const std::string& input, Reporter& reporter);

/// Whether there is a file of this name that a person would lose by writing it.
[[nodiscard]] bool isExistingFile(const std::string& file);

/// Why a file that could not be opened for reading was not: "no such file", "is a directory", "is no regular
/// file", ...
[[nodiscard]] std::string readTrouble(const std::string& file);

/// What is wrong at a place of a file: "FILE:LINE:COLUMN: reason".
/// \param line from 1; 0 for the whole file
/// \param column from 1; 0 for the whole line
[[nodiscard]] std::string placedText(const std::string& file, std::size_t line, std::size_t column,
                                     const std::string& reason);

/// Reads a settings file. Reports what fails.
/// \param file its path in UTF-8
/// \param tested indices of the sets whose records must be valid, at least one
/// \param reporter gets the message
/// \return nothing when it fails
[[nodiscard]] std::optional<ParameterStore> loadStore(const std::string& file,
                                                      const std::set<std::size_t>& tested,
                                                      Reporter& reporter);

/// Reads a settings file in which at least one set has a valid record. Reports what fails, and returns
/// nothing then.
[[nodiscard]] std::optional<ParameterStore> loadAnyStore(const std::string& file, Reporter& reporter);

/// Reads a parameter image, which is the first 3384 bytes of a file and begins with this number. Reports what
/// fails, and returns nothing then.
[[nodiscard]] std::optional<ParameterImage> loadImage(const std::string& file, Reporter& reporter);

/// Writes a text for people or for other programs. A link is followed, an existing text replaced by exactly this one with
/// the permissions it had. Settings files and parameter images are not written over. Reports what fails.
[[nodiscard]] bool writeTextFile(const std::string& file, std::string_view text, Reporter& reporter);

/// The files that a command writes. Either all of them are written or none.
class OutputFiles {
 public:
    explicit OutputFiles(Reporter& reporter) : reporter_(reporter) {}

    void addSettings(const std::string& file) { targets_.push_back({file, Kind::settings, {}, {}}); }
    void addImage(const std::string& file) { targets_.push_back({file, Kind::image, {}, {}}); }

    /// Checks whether every file can be written, without changing any. A settings file is not written over an
    /// image, nor an image over a settings file. Reports what fails.
    [[nodiscard]] bool check();

    /// Writes the files. Existing ones are not truncated. When one fails, those written before it get back
    /// what they held. Reports what fails.
    [[nodiscard]] bool write(const ParameterStore& store, const ParameterImage& image);

 private:
    enum class Kind : std::uint8_t { settings, image };
    /// What stood at the place of a file before it was written.
    struct Before {
        bool existed = false;
        std::uintmax_t size = 0;
        std::optional<std::vector<std::uint8_t>> start;  ///< nothing when it could not be read
    };
    struct Target {
        std::string file;
        Kind kind;
        std::vector<std::uint8_t> bytes;
        Before before;
    };

    void tellUnopened(const Target& target, const std::string& trouble);
    bool writeOne(const Target& target);
    void putBack(const Target& target);

    Reporter& reporter_;
    std::vector<Target> targets_;
};

}  // namespace tessavo::cli
