#pragma once

#include "accounts/LoopbackConnection.h"

#include <QList>
#include <QTcpServer>

/// A web server for this machine's own browsers: it is bound to 127.0.0.1 and has few connections at a time,
/// of which the oldest make room for the new.
class LoopbackServer : public QObject
{
    Q_OBJECT

public:
    LoopbackServer(RunLoop& runLoop, LoopbackConnection::Respond respond);

    /// False when the port cannot be had; `errorString` then tells why.
    bool listen(quint16 port) { return _server.listen(QHostAddress::LocalHost, port); }
    QString errorString() const { return _server.errorString(); }

    /// Takes no new connections. Answers that are on their way still arrive.
    void close() { _server.close(); }

private:
    void accept();

    RunLoop& _runLoop;
    LoopbackConnection::Respond _respond;
    QTcpServer _server;
    QList<QPointer<LoopbackConnection>> _connections; ///< the oldest first
};

/// A whole answer of status 200 with a page of HTML. The extra headers end in a line break each.
QByteArray pageReply(const QByteArray& html, const QByteArray& extraHeaders = {});
