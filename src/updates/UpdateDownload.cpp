#include "updates/UpdateDownload.h"

#include "base/RunLoop.h"
#include "updates/UpdateSignature.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

constexpr double timeout = 3600; // seconds

const QString partName = QStringLiteral("part");

} // namespace

UpdateDownload::UpdateDownload(RunLoop& runLoop, UpdateItem item, QByteArray publicKey, const QString& folder)
    : _item(std::move(item))
    , _publicKey(std::move(publicKey))
    , _folder(folder)
    , _http(runLoop)
{
    if (openFile(folder)) {
        start();
    } else {
        runLoop.after(0, this,
                      [this] { fail(QStringLiteral("there is no room for it: ") + _file.errorString()); });
    }
}

UpdateDownload::~UpdateDownload()
{
    _call.reset();
    _queue.drain();
    if (!_isKept) {
        QDir(_folder).removeRecursively();
    }
}

/// Others on this computer have no business in the folder.
bool UpdateDownload::openFile(const QString& folder)
{
    QDir(folder).removeRecursively();
    constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    _file.setFileName(QDir(folder).filePath(partName));
    return QDir().mkpath(folder) && QFile::setPermissions(folder, ownerOnly) &&
           _file.open(QIODevice::ReadWrite | QIODevice::Truncate);
}

void UpdateDownload::start()
{
    HttpRequest request{.url = _item.address,
                        .headers = {},
                        .body = {},
                        .timeout = timeout,
                        .byteLimit = _item.length,
                        .isSecureOnly = true,
                        .receive = [this](const QByteArray& piece) { receive(piece); }};
    _call = _http.send(std::move(request), this, [this](const HttpReply& reply) { end(reply); });
}

/// What cannot be written is missed at the end, by the length.
void UpdateDownload::receive(const QByteArray& piece)
{
    _file.write(piece);
    Q_EMIT progressed(static_cast<double>(_file.pos()) / static_cast<double>(_item.length));
}

void UpdateDownload::end(const HttpReply& reply)
{
    constexpr int ok = 200;
    if (reply.hasFailed()) {
        fail(reply.failure);
    } else if (reply.status != ok) {
        fail(QStringLiteral("the server answers with %1").arg(reply.status));
    } else if (!_file.flush() || _file.size() != _item.length) {
        fail(QStringLiteral("it has %1 bytes in place of %2").arg(_file.size()).arg(_item.length));
    } else {
        check();
    }
}

/// It takes the whole package at once, and half a second for a large one.
void UpdateDownload::check()
{
    _queue.async([this] {
        const uchar* const data = _file.map(0, _item.length);
        const bool isSigned = data != nullptr && UpdateSignature::isValid(_publicKey, _item.signature,
                                                                          QByteArrayView(data, _item.length));
        QMetaObject::invokeMethod(
            this, [this, isSigned] { settle(isSigned); }, Qt::QueuedConnection);
    });
}

void UpdateDownload::settle(bool isSigned)
{
    if (!isSigned) {
        fail(QStringLiteral("its signature is wrong"));
        return;
    }
    _file.close();
    if (!_file.rename(QDir(_folder).filePath(fileName()))) {
        fail(_file.errorString());
        return;
    }
    Q_EMIT finished(_file.fileName());
}

void UpdateDownload::fail(const QString& reason)
{
    _file.close();
    QDir(_folder).removeRecursively();
    Q_EMIT failed(reason);
}

/// That of the address, which tells the desktop what kind of package it is; "part" is taken.
QString UpdateDownload::fileName() const
{
    static const QRegularExpression odd(QStringLiteral("^\\.+|[^A-Za-z0-9._+~-]"));
    constexpr qsizetype longest = 128;
    const QString name = QFileInfo(_item.address.path()).fileName().right(longest).remove(odd);
    return name.isEmpty() || name == partName ? QStringLiteral("pellar-update") : name;
}
