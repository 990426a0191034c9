#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>

#include "app/profile.h"
#include "base/file_dialogs.h"

namespace tessavo {

/// File dialogs in the program's look. They open in the folder of the last one. Where a file can be saved in several forms,
/// a name without an extension gets that of the chosen one.
class UiFileDialogs : public IFileDialogs {
 public:
    /// \param owner the active window when null
    UiFileDialogs(QWidget* owner, Profile& profile) : owner_(owner), profile_(profile) {}

    std::optional<std::filesystem::path> askOpenPath(const FileFilter& filter) override;
    std::optional<std::filesystem::path> askSavePath(const FileFilter& filter) override;
    std::optional<std::filesystem::path> askNewFolder(std::string_view title,
                                                      std::string_view proposedName) override;
    std::optional<std::filesystem::path> askFolder(std::string_view title) override;

 private:
    [[nodiscard]] QWidget* owner() const;
    std::optional<std::filesystem::path> remembered(const QString& chosen);

    QWidget* owner_;
    Profile& profile_;
};

/// "Description (*.ext)|*.ext||" as the toolkit writes it: one "Description (*.ext)" an entry.
[[nodiscard]] QStringList nameFilters(std::string_view filter);

/// Never throws: where the system's names are UTF-8, what is no text becomes U+FFFD.
[[nodiscard]] std::filesystem::path pathOf(const QString& text);
/// With the separators that the system writes. What is no text in the name becomes U+FFFD.
[[nodiscard]] QString textOf(const std::filesystem::path& path);
/// The name of a folder without those around it: "b" for "/a/b" and for "/a/b/".
[[nodiscard]] QString folderText(const std::filesystem::path& folder);

}  // namespace tessavo
