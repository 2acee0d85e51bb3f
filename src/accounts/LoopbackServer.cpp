#include "accounts/LoopbackServer.h"

#include "accounts/AccountsLog.h"

#include <QTcpSocket>

namespace {

constexpr qsizetype mostConnections = 64;

} // namespace

LoopbackServer::LoopbackServer(RunLoop& runLoop, LoopbackConnection::Respond respond)
    : _runLoop(runLoop)
    , _respond(std::move(respond))
{
    connect(&_server, &QTcpServer::newConnection, this, &LoopbackServer::accept);
    connect(&_server, &QTcpServer::acceptError, this,
            [this] { systemLog(QStringLiteral("Loopback listener failed: ") + _server.errorString()); });
}

void LoopbackServer::accept()
{
    while (QTcpSocket* const socket = _server.nextPendingConnection()) {
        _connections.removeAll(nullptr);
        if (_connections.size() >= mostConnections) {
            delete _connections.takeFirst();
        }
        _connections.append(new LoopbackConnection(socket, _runLoop, _respond, this));
    }
}

QByteArray pageReply(const QByteArray& html, const QByteArray& extraHeaders)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: text/html; charset=utf-8\r\nContent-Length: " +
           QByteArray::number(html.size()) + "\r\n" + extraHeaders + "Connection: close\r\n\r\n" + html;
}
