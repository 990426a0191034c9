#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "target/target_log.h"
#include "target/target_memory.h"

namespace tessavo {

/// Keeps the simulated target's memory in a directory between runs: one raw image of 3384 bytes a set
/// ("default.bin", "set1.bin" to "set5.bin") and the software image as it is ("software.bin").
///
/// A file is written whole or not at all.
class MemoryFiles {
 public:
    explicit MemoryFiles(std::filesystem::path directory) : directory_(std::move(directory)) {}

    /// Makes the directory when it is missing.
    /// \return empty, or what is wrong with the directory
    [[nodiscard]] std::string prepare() const;

    /// Reads what is there into the memory; the live image becomes the default set.
    ///
    /// A file that is missing leaves what the memory holds. So does one that is damaged, short or too long,
    /// which is told to the log and left as it is until its set is saved.
    void load(TargetMemory& memory, const TargetLog& log) const;

    /// \return empty, or why the file could not be written; the file is then as before
    [[nodiscard]] std::string saveSet(std::size_t set, const ImageBytes& image) const;
    /// \return as saveSet()
    [[nodiscard]] std::string saveSoftware(std::span<const std::uint8_t> software) const;

    /// Name of a set's file within the directory.
    [[nodiscard]] static std::string setFileName(std::size_t set);
    static constexpr const char* softwareFileName = "software.bin";

 private:
    [[nodiscard]] std::string write(const std::string& name, std::span<const std::uint8_t> bytes) const;

    std::filesystem::path directory_;
};

}  // namespace tessavo
