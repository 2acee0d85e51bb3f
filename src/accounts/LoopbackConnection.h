#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>

class QTcpSocket;
class RunLoop;

/// One connection of a browser: it gets one answer, once the first line of its request is there, and deletes
/// itself. It reads 8192 bytes for that line at most and lasts ten seconds at most.
class LoopbackConnection : public QObject
{
    Q_OBJECT

public:
    /// The whole answer to a request line, "GET /path?query HTTP/1.1"; nothing ends the connection.
    using Respond = std::function<std::optional<QByteArray>(const QByteArray& requestLine)>;

    /// Takes the socket.
    LoopbackConnection(QTcpSocket* socket, RunLoop& runLoop, const Respond& respond, QObject* parent);

private:
    void read();
    bool respond();

    QTcpSocket* _socket;
    const Respond& _respond;
    QByteArray _received; ///< once it is answered, the end of it only
    qsizetype _bytes = 0; ///< received so far
    bool _isAnswered = false;
};
