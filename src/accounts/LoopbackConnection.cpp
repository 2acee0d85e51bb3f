#include "accounts/LoopbackConnection.h"

#include "base/RunLoop.h"

#include <QTcpSocket>

namespace {

constexpr double lifetime = 10; // seconds
constexpr qsizetype longestLine = 8192;
constexpr qsizetype mostBytes = 131'072; // of a request; browsers may have many cookies for this machine

bool isRequestLine(const QByteArray& line)
{
    const QByteArrayList words = line.split(' ');
    return words.size() == 3 && words[1].startsWith('/') && words[2].startsWith("HTTP/1.");
}

} // namespace

LoopbackConnection::LoopbackConnection(QTcpSocket* socket, RunLoop& runLoop, const Respond& respond,
                                       QObject* parent)
    : QObject(parent)
    , _socket(socket)
    , _respond(respond)
{
    _socket->setParent(this);
    _socket->setReadBufferSize(longestLine);
    connect(_socket, &QTcpSocket::readyRead, this, &LoopbackConnection::read);
    connect(_socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    runLoop.after(lifetime, this, [this] { deleteLater(); });
    read();
}

void LoopbackConnection::read()
{
    if (!_socket->isOpen()) {
        return; // given up, and still told of what had come before
    }
    const QByteArray piece = _socket->readAll();
    _bytes += piece.size();
    if (_bytes > mostBytes) {
        _socket->abort();
    }
    if (piece.isEmpty() || _bytes > mostBytes) {
        return;
    }
    _received += piece;
    if (!_isAnswered && !respond()) {
        return;
    }
    // To close before the browser has sent everything would take the answer back.
    constexpr char headEnd[] = "\r\n\r\n";
    if (_received.contains(headEnd)) {
        _socket->disconnectFromHost(); // when all is sent
    }
    _received = _received.right(std::size(headEnd) - 2);
}

/// False when there is no answer, or not yet.
bool LoopbackConnection::respond()
{
    const qsizetype end = _received.indexOf('\n');
    if (end < 0 && _received.size() < longestLine) {
        return false;
    }
    const QByteArray line = _received.left(end).trimmed();
    const auto reply = end >= 0 && isRequestLine(line) ? _respond(line) : std::nullopt;
    if (!reply) {
        _socket->abort();
        return false;
    }
    _isAnswered = true;
    _socket->write(*reply);
    return true;
}
