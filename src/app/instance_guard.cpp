#include "app/instance_guard.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

namespace tessavo {

namespace {

QString lockPath(const QString& folder) {
    QString place =
        folder.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) : folder;
    if (place.isEmpty()) {
        place = QDir::tempPath();
    }
    return QDir(place).filePath(QStringLiteral("tessavo.lock"));
}

}  // namespace

InstanceGuard::InstanceGuard(const QString& folder) : lock_(lockPath(folder)) {
    // A program that was killed leaves its file behind; the lock sees that its owner is gone.
    lock_.setStaleLockTime(0);
    first_ = lock_.tryLock() || (bearsOwnNumber() && lock_.removeStaleLockFile() && lock_.tryLock()) ||
             lock_.error() != QLockFile::LockFailedError;
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
