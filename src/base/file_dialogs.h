#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace tessavo {

/// What a file dialog offers: "description (*.ext)|*.ext||" and the extension added to a bare name.
struct FileFilter {
    std::string_view filter;
    std::string_view defaultExtension;
};

/// Sets the C library's locale back to "English", which file dialogs may have changed; where no locale has
/// that name, it stays. User-interface thread.
void resetLocaleAfterDialog();

/// Asks the user for a file. Used on the user-interface thread.
class IFileDialogs {
 public:
    virtual ~IFileDialogs() = default;
    /// \return nothing when cancelled; an empty path stands for an empty choice
    virtual std::optional<std::filesystem::path> askOpenPath(const FileFilter& filter) = 0;
    /// Asks before an existing file is overwritten.
    virtual std::optional<std::filesystem::path> askSavePath(const FileFilter& filter) = 0;
    /// Called once a command is done with its dialog and the file, cancelled or not.
    virtual void resetLocale() { resetLocaleAfterDialog(); }
};

}  // namespace tessavo
