#include "linux/settings/PlistUserDefaults.h"

#include "linux/settings/PropertyList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QSaveFile>
#include <QStandardPaths>

#include <utility>

namespace {

Q_LOGGING_CATEGORY(defaultsLog, "com.orvalen.pellar.defaults")

constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

bool makeFolder(const QString& path)
{
    const QFileInfo folder(path);
    return folder.isDir() || (makeFolder(folder.path()) && QDir().mkdir(path, ownerOnly | QFile::ExeOwner));
}

QString unusedName(const QString& path)
{
    for (int number = 1;; ++number) {
        const QFileInfo info(path + QStringLiteral(".damaged-%1").arg(number));
        if (!info.exists() && !info.isSymLink()) {
            return info.filePath();
        }
    }
}

/// The error of the write; empty when the bytes are in the file.
QString write(const QString& path, const QByteArray& bytes)
{
    const QString folder = QFileInfo(path).path();
    if (bytes.isEmpty()) {
        return QStringLiteral("more than %1 bytes").arg(PropertyList::maximumBytes);
    }
    if (!makeFolder(folder)) {
        return QStringLiteral("no folder %1").arg(folder);
    }
    QSaveFile file(path);
    const bool isWritten = file.open(QFile::WriteOnly) && file.setPermissions(ownerOnly) &&
                           file.write(bytes) == bytes.size() && file.commit();
    return isWritten ? QString() : file.errorString();
}

} // namespace

PlistUserDefaults::PlistUserDefaults(QString path) : _path(std::move(path))
{
    load();
}

QString PlistUserDefaults::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/pellar/com.orvalen.pellar.plist");
}

void PlistUserDefaults::setObject(const QString& key, const QVariant& value)
{
    const auto storable = PropertyList::storable(value);
    if (!storable || !PropertyList::isStorableKey(key)) {
        qCWarning(defaultsLog).noquote() << "refused a value for" << key << "of type" << value.typeName();
        return;
    }
    _values.insert(key, *storable);
    save();
}

void PlistUserDefaults::removeObject(const QString& key)
{
    if (_values.remove(key) > 0) {
        save();
    }
}

void PlistUserDefaults::load()
{
    const QFileInfo info(_path);
    if (!info.exists()) {
        return;
    }
    QFile file(_path);
    if (!info.isFile()) { // opening a pipe would wait for its other end
        setAside(QStringLiteral("no plain file"));
    } else if (!file.open(QFile::ReadOnly)) {
        setAside(file.errorString());
    } else {
        const QByteArray text = file.read(PropertyList::maximumBytes + 1);
        QString fault;
        if (auto values = PropertyList::decode(text, fault)) {
            _values = *std::move(values);
            _stored = PropertyList::encode(_values);
        } else {
            setAside(file.error() == QFile::NoError ? fault : file.errorString());
        }
    }
}

void PlistUserDefaults::setAside(const QString& fault)
{
    const QString name = unusedName(_path);
    _isWritable = QFile::rename(_path, name);
    qCWarning(defaultsLog).noquote()
        << _path << "cannot be read:" << fault
        << (_isWritable ? QStringLiteral("- kept as ") + name
                        : QStringLiteral("- it cannot be renamed either, so no change will be kept"));
}

void PlistUserDefaults::save()
{
    if (!_isWritable) {
        return;
    }
    const std::lock_guard guard(_latestLock);
    if (!std::exchange(_latest, _values)) {
        _queue.async([this] { writeLatest(); });
    }
}

void PlistUserDefaults::writeLatest()
{
    std::unique_lock guard(_latestLock);
    const QVariantMap values = *std::exchange(_latest, std::nullopt);
    guard.unlock();
    const QByteArray text = PropertyList::encode(values);
    if (!text.isEmpty() && text == _stored) {
        return;
    }
    const QString error = write(_path, text);
    if (error.isEmpty()) {
        _stored = text;
    } else if (!_isFailing) {
        qCWarning(defaultsLog).noquote() << _path << "could not be written:" << error;
    }
    _isFailing = !error.isEmpty();
}
