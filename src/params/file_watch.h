#pragma once

#include <cstdint>
#include <filesystem>

namespace tessavo {

/// What a file is written as.
enum class FileKind : std::uint8_t {
    settings,  ///< all five sets
    image,     ///< one set as the target takes it
    notes,     ///< the notes beside a settings file; these are written without a command of their own
};

/// Is told which files the commands of the File menu read and write. Nothing that it does changes what the
/// commands do. Used on the user-interface thread.
class IFileWatch {
 public:
    virtual ~IFileWatch() = default;
    /// A command is about to write this file, over whatever stands there. It has not been opened yet.
    virtual void willWrite(const std::filesystem::path& path, FileKind kind) = 0;
    /// The sets stand in this settings file now.
    virtual void saved(const std::filesystem::path& path) = 0;
    /// The sets could not be written, or not whole, to this settings file. Boxes have told so.
    virtual void notSaved(const std::filesystem::path& path) = 0;
    /// The sets were read from this settings file, and the window shows them.
    /// \param bytesInFile its length; where that is less than 10600, zeros stand for the rest
    virtual void loaded(const std::filesystem::path& path, std::uintmax_t bytesInFile) = 0;
};

}  // namespace tessavo
