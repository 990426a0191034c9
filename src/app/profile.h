#pragma once

#include <QByteArray>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <memory>

namespace tessavo {

/// What the program remembers between two runs. A missing, damaged or unwritable profile reads as empty, and
/// so does a pipe or a device in its place; nothing fails or waits, but save() tells.
class Profile {
 public:
    static constexpr int recentFileLimit = 4;

    /// The user's own profile.
    Profile();
    /// A profile in a file of its own.
    explicit Profile(const QString& iniFile);

    /// Whole paths as the system writes them; newest first, at most four.
    [[nodiscard]] QStringList recentFiles() const;
    /// Puts a file in front; it stands in the list once.
    void addRecentFile(const QString& path);
    void removeRecentFile(const QString& path);

    [[nodiscard]] QString lastPort() const { return text("port"); }
    void setLastPort(const QString& port) { settings_->setValue("port", port); }

    /// Folder of the last file dialog.
    [[nodiscard]] QString lastFolder() const { return text("folder"); }
    void setLastFolder(const QString& folder) { settings_->setValue("folder", folder); }

    [[nodiscard]] QByteArray windowPlacement() const { return settings_->value("windowPlace").toByteArray(); }
    void setWindowPlacement(const QByteArray& geometry) { settings_->setValue("windowPlace", geometry); }

    /// Writes what was set since the last time.
    /// \return what a person should know when it could not be kept; empty otherwise
    QString save();

 private:
    [[nodiscard]] QString text(const char* key) const {
        return settings_->value(QLatin1String(key)).toString();
    }

    std::unique_ptr<QSettings> settings_;
    QString fileName_;  ///< as a person knows it
};

}  // namespace tessavo
