#include "app/profile.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace tessavo {

namespace {

constexpr QLatin1String recentKey("recentFiles");

QString wholePath(const QString& path) {
    return QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
}

// The key under which a tool of this maker keeps its settings.
constexpr QLatin1String maker("Velmira");
constexpr QLatin1String tool("Velmira Audio Systems Equalizing Tool");

// The toolkit opens a profile without looking, and would wait at a pipe for somebody to write into it.
bool isOddFile(const QString& path) {
    const QFileInfo file(path);
    return file.exists() && !file.isFile() && !file.isDir();
}

// The files, where there are any, that the toolkit reads for one tool of one maker.
QString oddFileOfUser() {
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation)) {
        for (const QString& name : {maker + QLatin1Char('/') + tool, QString(maker)}) {
            QString path = QStringLiteral("%1/%2.conf").arg(folder, name);
            if (isOddFile(path)) {
                return path;
            }
        }
    }
    return {};
}

// A file below one that is no folder can neither be read nor written, and is refused at once.
std::unique_ptr<QSettings> settingsNowhere(const QString& oddFile) {
    return std::make_unique<QSettings>(oddFile + QStringLiteral("/none"), QSettings::IniFormat);
}

}  // namespace

Profile::Profile() {
    const QString oddFile = oddFileOfUser();
    settings_ = oddFile.isEmpty() ? std::make_unique<QSettings>(maker, tool) : settingsNowhere(oddFile);
    fileName_ = oddFile.isEmpty() ? settings_->fileName() : oddFile;
}

Profile::Profile(const QString& iniFile)
    : settings_(isOddFile(iniFile) ? settingsNowhere(iniFile)
                                   : std::make_unique<QSettings>(iniFile, QSettings::IniFormat)),
      fileName_(iniFile) {}

QStringList Profile::recentFiles() const {
    QStringList files = settings_->value(recentKey).toStringList();
    files.removeAll(QString());
    return files.mid(0, recentFileLimit);
}

void Profile::addRecentFile(const QString& path) {
    const QString absolute = wholePath(path);
    QStringList files = recentFiles();
    files.removeAll(absolute);
    files.prepend(absolute);
    settings_->setValue(recentKey, files.mid(0, recentFileLimit));
}

void Profile::removeRecentFile(const QString& path) {
    QStringList files = recentFiles();
    files.removeAll(path);
    files.removeAll(wholePath(path));
    settings_->setValue(recentKey, files);
}

QString Profile::save() {
    settings_->sync();
    if (settings_->status() != QSettings::AccessError) {
        return {};
    }
    return QStringLiteral("%1 cannot be written: recent files, port and window place are not remembered.")
        .arg(QDir::toNativeSeparators(fileName_));
}

}  // namespace tessavo
