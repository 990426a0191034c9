#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "params/settings_commands.h"
#include "support/harness.h"

namespace tessavo::test {

/// Dialogs that answer with what a test chose, and tell what they were asked.
class FakeDialogs : public IFileDialogs {
 public:
    struct Asked {
        bool save;
        std::string filter;
        std::string extension;
    };
    std::optional<std::filesystem::path> askOpenPath(const FileFilter& filter) override {
        asked.push_back({false, std::string(filter.filter), std::string(filter.defaultExtension)});
        return answer;
    }
    std::optional<std::filesystem::path> askSavePath(const FileFilter& filter) override {
        asked.push_back({true, std::string(filter.filter), std::string(filter.defaultExtension)});
        return answer;
    }
    std::optional<std::filesystem::path> askNewFolder(std::string_view /*title*/,
                                                      std::string_view proposedName) override {
        proposedNames.emplace_back(proposedName);
        return folderAnswer;
    }
    std::optional<std::filesystem::path> askFolder(std::string_view title) override {
        folderTitles.emplace_back(title);
        return folderAnswer;
    }
    void resetLocale() override { ++localeResets; }
    std::optional<std::filesystem::path> answer;
    std::optional<std::filesystem::path> folderAnswer;  ///< for both questions about folders
    std::vector<std::string> proposedNames;             ///< one for each new folder that was asked for
    std::vector<std::string> folderTitles;              ///< one for each other folder
    std::vector<Asked> asked;
    int localeResets = 0;
};

class RecordingView : public ISettingsView {
 public:
    void checkChannelBox(int number, bool checked) override { boxes.emplace_back(number, checked); }
    void refreshPages() override {
        ++refreshes;
        boxesBeforeRefresh = boxes.size();
        if (atRefresh) {
            atRefresh();
        }
    }
    std::vector<std::pair<int, bool>> boxes;
    int refreshes = 0;
    std::size_t boxesBeforeRefresh = 0;
    std::function<void()> atRefresh;
};

/// A started application as far as the File menu goes.
struct FileMenu {
    Tuning tuning;
    FakeDialogs dialogs;
    RecordingView view;
    RecordingBoxes boxes;
    SettingsCommands commands{tuning.state, dialogs, boxes, view};

    [[nodiscard]] std::vector<std::string> texts() const { return boxes.texts(); }
    [[nodiscard]] bool everyBoxIsAnError() const {
        for (const ShownBox& box : boxes.shown) {
            if (box.icon != BoxIcon::error || box.buttons != BoxButtons::ok) {
                return false;
            }
        }
        return !boxes.shown.empty();
    }
};

}  // namespace tessavo::test
