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

bool SettingsCommands::takeSettings(std::span<const std::uint8_t> bytes) {
    ParameterStore loaded;
    const LoadVerdict verdict = settingsFrom(bytes, tuning_.currentSet(), loaded);
    const bool taken = take(verdict, loaded);
    dialogs_.resetLocale();
    return taken;
}

bool SettingsCommands::load(const std::filesystem::path& path) {
    ParameterStore loaded;
    std::uintmax_t bytesInFile = 0;
    const LoadVerdict verdict = readSettings(path, tuning_.currentSet(), loaded, &bytesInFile);
    const bool taken = take(verdict, loaded);
    if (taken && watch_ != nullptr) {
        watch_->loaded(path, bytesInFile);
    }
    return taken;
}

bool SettingsCommands::take(LoadVerdict verdict, const ParameterStore& loaded) {
    switch (verdict) {
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
            announceWrite(*path, FileKind::image);
            report(writeImage(*path, tuning_.image()), errorOpeningBinaryText);
        }
    }
    dialogs_.resetLocale();
}

bool SettingsCommands::saveSettingsTo(const std::filesystem::path& path) {
    const bool saved = save(path);
    dialogs_.resetLocale();
    return saved;
}

bool SettingsCommands::save(const std::filesystem::path& path) {
    announceWrite(path, FileKind::settings);
    const bool saved = report(writeSettings(path, tuning_.store()), errorOpeningConfigurationText);
    if (watch_ != nullptr && saved) {
        watch_->saved(path);
    } else if (watch_ != nullptr) {
        watch_->notSaved(path);
    }
    return saved;
}

void SettingsCommands::announceWrite(const std::filesystem::path& path, FileKind kind) {
    if (watch_ != nullptr) {
        watch_->willWrite(path, kind);
    }
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
