#pragma once

#include "base/HttpClient.h"
#include "base/SerialQueue.h"
#include "updates/Appcast.h"

#include <QFile>
#include <QObject>

/// One package on its way from the feed's address to a folder of our own, where only what has the announced
/// length and signature gets a name under which others can use it. What is there goes when this does, unless
/// it is to be kept: destroying it cancels it.
class UpdateDownload : public QObject
{
    Q_OBJECT

public:
    /// A longer package is refused.
    static constexpr qint64 lengthLimit = 1'073'741'824; // bytes

    /// Begins at once. The folder is emptied first: what is there is from an earlier update.
    UpdateDownload(RunLoop& runLoop, UpdateItem item, QByteArray publicKey, const QString& folder);
    ~UpdateDownload() override;

    /// Leaves the package in the folder, for whoever installs it.
    void keep() { _isKept = true; }

Q_SIGNALS:
    /// From 0 to 1.
    void progressed(double progress);

    /// The package is there, whole and signed, as long as this lives or longer.
    void finished(const QString& path);

    /// For people; nothing is left in the folder.
    void failed(const QString& reason);

private:
    bool openFile(const QString& folder);
    void start();
    void receive(const QByteArray& piece);
    void end(const HttpReply& reply);
    void check();
    void settle(bool isSigned);
    void fail(const QString& reason);
    QString fileName() const;

    UpdateItem _item;
    QByteArray _publicKey;
    QString _folder;
    QFile _file;
    bool _isKept = false;
    HttpClient _http;
    std::unique_ptr<HttpCall> _call;
    SerialQueue _queue{
        QStringLiteral("com.orvalen.pellar.updates")}; // waits for its work before the rest goes
};
