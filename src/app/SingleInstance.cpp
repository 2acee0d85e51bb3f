#include "app/SingleInstance.h"

#include <QDir>
#include <QStandardPaths>

SingleInstance::SingleInstance()
    : _lock(QDir(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation))
                .filePath(QStringLiteral("pellar.lock")))
{
    _lock.setStaleLockTime(0); // held for as long as the program runs, be it months
    _isFirst = _lock.tryLock(0) || _lock.error() != QLockFile::LockFailedError;
}
