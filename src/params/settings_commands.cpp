#include "params/settings_commands.h"

namespace tessavo {

SettingsCommands::SettingsCommands(TuningState& tuning, IFileDialogs& dialogs, IMessageBox& boxes,
                                   ISettingsView& view)
    : tuning_(tuning), dialogs_(dialogs), boxes_(boxes), view_(view) {}

bool SettingsCommands::loadSettings() {
    const auto path = dialogs_.askOpenPath(settingsFilter);
    if (path) {
        settingsPath_ = *path;
    }
    if (!path || path->empty()) {
        dialogs_.resetLocale();
        return false;
    }
    return loadSettingsFrom(*path);
}

bool SettingsCommands::loadSettingsFrom(const std::filesystem::path& path) {
    const bool loaded = load(path);
    dialogs_.resetLocale();
    return loaded;
}

bool SettingsCommands::load(const std::filesystem::path& path) {
    ParameterStore loaded;
    switch (readSettings(path, tuning_.currentSet(), loaded)) {
        case LoadVerdict::cannotOpen:
            boxes_.showError(errorOpeningConfigurationText);
            return false;
        case LoadVerdict::incompatible:
            boxes_.showError(incompatibleFileText);
            return false;
        case LoadVerdict::loaded:
            break;
    }
    tuning_.replaceStore(loaded);
    const ParameterSet& set = tuning_.currentParameterSet();
    for (std::size_t channel = 0; channel < channelCount; ++channel) {
        view_.checkChannelBox(channelCheckBoxMap[channel], set.channels[channel].channelFlag != 0);
    }
    view_.refreshPages();
    return true;
}

bool SettingsCommands::saveSettings() {
    bool saved = false;
    if (const auto path = dialogs_.askSavePath(settingsFilter)) {
        settingsPath_ = *path;
        if (!path->empty()) {
            saved = save(*path);
        }
    }
    dialogs_.resetLocale();
    return saved;
}

void SettingsCommands::saveSettingsAtExit() {
    const auto path = dialogs_.askSavePath(settingsFilter);
    if (path && !path->empty()) {
        save(*path);
    }
}

void SettingsCommands::exportImage() {
    const auto path = dialogs_.askSavePath(binaryFilter);
    if (path) {
        binaryPath_ = *path;
        if (!path->empty()) {
            report(writeImage(*path, tuning_.image()), errorOpeningBinaryText);
        }
    }
    dialogs_.resetLocale();
}

bool SettingsCommands::save(const std::filesystem::path& path) {
    return report(writeSettings(path, tuning_.store()), errorOpeningConfigurationText);
}

bool SettingsCommands::report(SaveVerdict verdict, std::string_view cannotOpenText) {
    if (verdict == SaveVerdict::saved) {
        return true;
    }
    if (verdict == SaveVerdict::cannotOpen) {
        boxes_.showError(cannotOpenText);
    }
    // A file that could not be opened was not written either, so both messages appear.
    boxes_.showError(errorWritingDataText);
    return false;
}

}  // namespace tessavo
