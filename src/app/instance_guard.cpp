#include "app/instance_guard.h"

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
    first_ = lock_.tryLock() || lock_.error() != QLockFile::LockFailedError;
}

}  // namespace tessavo
