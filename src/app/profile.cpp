#include "app/profile.h"

#include <QDir>
#include <QFileInfo>

namespace tessavo {

namespace {

const QString recentKey = QStringLiteral("recentFiles");

QString wholePath(const QString& path) {
    return QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
}

}  // namespace

// The key under which a tool of this maker keeps its settings.
Profile::Profile()
    : settings_(QStringLiteral("Velmira"), QStringLiteral("Velmira Audio Systems Equalizing Tool")) {}

Profile::Profile(const QString& iniFile) : settings_(iniFile, QSettings::IniFormat) {}

QStringList Profile::recentFiles() const {
    QStringList files = settings_.value(recentKey).toStringList();
    files.removeAll(QString());
    return files.mid(0, recentFileLimit);
}

void Profile::addRecentFile(const QString& path) {
    const QString absolute = wholePath(path);
    QStringList files = recentFiles();
    files.removeAll(absolute);
    files.prepend(absolute);
    settings_.setValue(recentKey, files.mid(0, recentFileLimit));
}

void Profile::removeRecentFile(const QString& path) {
    QStringList files = recentFiles();
    files.removeAll(path);
    files.removeAll(wholePath(path));
    settings_.setValue(recentKey, files);
}

QString Profile::keep() {
    settings_.sync();
    if (settings_.status() != QSettings::AccessError) {
        return {};
    }
    return QStringLiteral("%1 cannot be written: recent files, port and window place are not remembered.")
        .arg(QDir::toNativeSeparators(settings_.fileName()));
}

}  // namespace tessavo
