#include "support/HttpStandIn.h"

#include <QTcpSocket>

namespace {

/// Takes a whole request off the front of what was received; none while it is not all there.
std::optional<HttpStandIn::Request> takeRequest(QByteArray& received)
{
    const qsizetype headEnd = received.indexOf("\r\n\r\n");
    if (headEnd < 0) {
        return std::nullopt;
    }
    const QByteArrayList lines = received.left(headEnd).replace("\r\n", "\n").split('\n');
    const QByteArrayList words = lines.first().split(' ');
    HttpStandIn::Request request;
    request.method = words.value(0);
    const QByteArray target = words.value(1);
    const qsizetype mark = target.indexOf('?');
    request.path = mark < 0 ? target : target.left(mark);
    request.query = mark < 0 ? QByteArray() : target.mid(mark + 1);
    for (const QByteArray& line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        request.headers.insert(line.left(colon).toLower(), line.mid(colon + 1).trimmed());
    }
    const qsizetype bodyStart = headEnd + 4;
    const qsizetype bodySize = request.headers.value("content-length").toLongLong();
    if (received.size() < bodyStart + bodySize) {
        return std::nullopt;
    }
    request.body = received.mid(bodyStart, bodySize);
    received.remove(0, bodyStart + bodySize);
    return request;
}

} // namespace

HttpStandIn::HttpStandIn()
{
    _server.listen(QHostAddress::LocalHost);
    QObject::connect(&_server, &QTcpServer::newConnection, &_server, [this] {
        QTcpSocket* const socket = _server.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, &_server, [this, socket] { read(socket); });
        QObject::connect(socket, &QTcpSocket::disconnected, &_server, [this, socket] {
            _received.remove(socket);
            socket->deleteLater();
        });
    });
}

QString HttpStandIn::address() const
{
    return QStringLiteral("http://127.0.0.1:%1").arg(_server.serverPort());
}

void HttpStandIn::answer(const QByteArray& path, const Answer& answer)
{
    _answers.insert(path, answer);
}

void HttpStandIn::release()
{
    for (auto& [socket, answer] : std::exchange(_held, {})) {
        if (socket) {
            answer.manner = Manner::whole;
            respond(socket, answer);
        }
    }
}

qsizetype HttpStandIn::connectionCount() const
{
    const auto sockets = _server.findChildren<QTcpSocket*>();
    return std::count_if(sockets.begin(), sockets.end(), [](const QTcpSocket* socket) {
        return socket->state() == QAbstractSocket::ConnectedState;
    });
}

void HttpStandIn::read(QTcpSocket* socket)
{
    _received[socket] += socket->readAll();
    while (const auto request = takeRequest(_received[socket])) {
        _requests << *request;
        respond(socket, _answers.value(request->path, {.status = 404, .body = "not here"}));
    }
}

void HttpStandIn::respond(QTcpSocket* socket, const Answer& answer)
{
    if (answer.manner == Manner::held) {
        _held.emplace_back(socket, answer);
        return;
    }
    QByteArray head = "HTTP/1.1 " + QByteArray::number(answer.status) + " Scripted\r\n";
    for (const QByteArray& header : answer.headers) {
        head += header + "\r\n";
    }
    if (answer.manner == Manner::endless) {
        socket->write(head + "\r\n" + answer.body);
        QObject::connect(socket, &QTcpSocket::bytesWritten, socket,
                         [socket, body = answer.body] { socket->write(body); });
        return;
    }
    head += "Content-Length: " + QByteArray::number(answer.body.size()) + "\r\n\r\n";
    if (answer.manner == Manner::cutOff) {
        socket->write(head + answer.body.left(answer.body.size() / 2));
        socket->disconnectFromHost();
        return;
    }
    socket->write(head + answer.body);
}
