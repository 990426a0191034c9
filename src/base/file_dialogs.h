#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace tessavo {

/// What a file dialog offers.
struct FileFilter {
    std::string_view filter;            ///< "description (*.ext)|*.ext||"
    std::string_view defaultExtension;  ///< added to a chosen name that has none; without the point
};

/// Sets the C library's locale back to "English", because a file dialog of the system may have changed it. On
/// a system without a locale of that name nothing changes. User-interface thread.
void resetLocaleAfterDialog();

/// Asks the user for a file. The window implements it with dialogs, tests with prepared answers. Used on the
/// user-interface thread.
class IFileDialogs {
 public:
    virtual ~IFileDialogs() = default;
    /// Asks for an existing file to open.
    /// \return nothing when the user cancelled; an empty path when the dialog was confirmed without a choice
    virtual std::optional<std::filesystem::path> askOpenPath(const FileFilter& filter) = 0;
    /// Asks for a file to write, and once more before an existing one is overwritten.
    /// \return as askOpenPath()
    virtual std::optional<std::filesystem::path> askSavePath(const FileFilter& filter) = 0;
    /// Asks for a folder that is not there yet. Makes none. Where nobody can be asked, it is cancelled.
    /// \param title what the folder is for, in UTF-8
    /// \param proposedName its name unless the user chooses another
    /// \return as askOpenPath()
    virtual std::optional<std::filesystem::path> askNewFolder(
        [[maybe_unused]] std::string_view title, [[maybe_unused]] std::string_view proposedName) {
        return std::nullopt;
    }
    /// Asks for a folder that exists. Where nobody can be asked, it is cancelled.
    /// \param title what the folder is for, in UTF-8
    /// \return as askOpenPath()
    virtual std::optional<std::filesystem::path> askFolder([[maybe_unused]] std::string_view title) {
        return std::nullopt;
    }
    /// The command that asked calls this once it is done with the file, also after a cancelled dialog.
    virtual void resetLocale() { resetLocaleAfterDialog(); }
};

}  // namespace tessavo
