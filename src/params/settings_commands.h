#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>

#include "base/file_dialogs.h"
#include "base/message_box.h"
#include "params/file_watch.h"
#include "params/settings_file.h"
#include "params/tuning_state.h"

namespace tessavo {

// What the dialogs of these commands offer.
inline constexpr FileFilter settingsFilter{"Tessavo settings files (*.eqs)|*.eqs||", "eqs"};
inline constexpr FileFilter binaryFilter{"Tessavo Binary files (*.bin)|*.bin||", "bin"};

/// What the commands change on the screen. The main view implements it. Used on the user-interface thread.
class ISettingsView {
 public:
    virtual ~ISettingsView() = default;
    /// Shows a channel's flag in its check box.
    /// \param number 1 to 8, the main view's number of the check box (see channelCheckBoxMap)
    virtual void checkChannelBox(int number, bool checked) = 0;
    /// Refreshes every page from the current set, and then the view.
    virtual void refreshPages() = 0;
};

/// The commands of the File menu. Whatever happens is told by message boxes. Used on the user-interface
/// thread.
///
/// The C library's locale is set back after each load, also without a dialog, and after each save but that at
/// the exit.
class SettingsCommands {
 public:
    /// All arguments outlive this object.
    SettingsCommands(TuningState& tuning, IFileDialogs& dialogs, IMessageBox& boxes, ISettingsView& view);

    /// Asks for a settings file and loads it.
    /// \return whether the store was replaced
    bool loadSettings();
    /// Loads a settings file whose path is known already, as one from the command line.
    /// \return whether the store was replaced
    bool loadSettingsFrom(const std::filesystem::path& path);
    /// Asks for a path and saves all five sets there.
    /// \return whether the whole store was written
    bool saveSettings();
    /// Saves as saveSettings() does, but settingsPath() stays as it was.
    void saveSettingsAtExit();
    /// Saves all five sets to a path that is known already, as saveSettings() does once a path is chosen.
    /// settingsPath() stays as it was.
    /// \return whether the whole store was written
    bool saveSettingsTo(const std::filesystem::path& path);
    /// Takes the bytes of a settings file that stands nowhere, as loadSettingsFrom() takes those of a file.
    /// Whoever watches the files is not told.
    /// \return whether the store was replaced
    bool takeSettings(std::span<const std::uint8_t> bytes);
    /// Asks for a path and writes the current image there.
    void exportImage();

    /// \param watch outlives this object; null to tell nobody
    void watchFiles(IFileWatch* watch) { watch_ = watch; }

    /// Full path of the settings file last chosen in a dialog of this object.
    [[nodiscard]] const std::filesystem::path& settingsPath() const { return settingsPath_; }
    /// Full path of the binary file last chosen.
    [[nodiscard]] const std::filesystem::path& binaryPath() const { return binaryPath_; }

 private:
    bool load(const std::filesystem::path& path);
    bool take(LoadVerdict verdict, const ParameterStore& loaded);
    bool save(const std::filesystem::path& path);
    void announceWrite(const std::filesystem::path& path, FileKind kind);
    bool report(SaveVerdict verdict, std::string_view cannotOpenText);

    TuningState& tuning_;
    IFileDialogs& dialogs_;
    IMessageBox& boxes_;
    ISettingsView& view_;
    IFileWatch* watch_ = nullptr;
    std::filesystem::path settingsPath_;
    std::filesystem::path binaryPath_;
};

}  // namespace tessavo
