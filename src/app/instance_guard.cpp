#include "app/instance_guard.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace tessavo {

namespace {

QString lockPath(const QString& folder) {
    return QDir(folder.isEmpty() ? InstanceGuard::usualFolder() : folder)
        .filePath(QStringLiteral("tessavo.lock"));
}

// The lock would read from it, and wait for ever.
bool isOddFile(const QString& path) {
    const QFileInfo file(path);
    return file.exists() && !file.isFile() && !file.isDir();
}

}  // namespace

InstanceGuard::InstanceGuard(const QString& folder) : lock_(lockPath(folder)) {
    // A program that was killed leaves its file behind; the lock sees that its owner is gone.
    lock_.setStaleLockTime(0);
    first_ = isOddFile(lock_.fileName()) || lock_.tryLock() ||
             (bearsOwnNumber() && lock_.removeStaleLockFile() && lock_.tryLock()) ||
             lock_.error() != QLockFile::LockFailedError;
}

QString InstanceGuard::usualFolder() {
    const QString runtimeFolder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return runtimeFolder.isEmpty() ? QDir::tempPath() : runtimeFolder;
}

// Process numbers come again, in a container even at every start: then the lock takes this program for the
// owner that is gone. The file of one that lives cannot be removed.
bool InstanceGuard::bearsOwnNumber() const {
    qint64 number = 0;
    QString host;
    QString program;
    return lock_.getLockInfo(&number, &host, &program) && number == QCoreApplication::applicationPid();
}

}  // namespace tessavo
