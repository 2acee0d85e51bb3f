#pragma once

#include <QHash>
#include <QMap>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

#include <algorithm>

/// A web server on loopback. It keeps every request as it came and answers from a script.
class HttpStandIn
{
public:
    struct Request {
        QByteArray method;
        QByteArray path;
        QByteArray query;                     ///< as sent, not decoded
        QMap<QByteArray, QByteArray> headers; ///< by lower-case name
        QByteArray body;
    };

    /// How an answer comes.
    enum class Manner {
        whole,
        held,   ///< not before `release`
        cutOff, ///< the connection ends in the middle of the body
        endless ///< the body never ends
    };
    struct Answer {
        int status = 200;
        QByteArray body{};
        QByteArrayList headers{}; ///< "Name: value"
        Manner manner = Manner::whole;
    };

    /// Listens on a free port; answers 404 to what is not in the script.
    HttpStandIn()
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

    /// "http://127.0.0.1:PORT"
    QString address() const { return QStringLiteral("http://127.0.0.1:%1").arg(_server.serverPort()); }

    /// Answers every request of this path so from now on.
    void answer(const QByteArray& path, const Answer& answer) { _answers.insert(path, answer); }

    /// Sends the answers that are held back, on the connections that are still there.
    void release()
    {
        for (auto& [socket, answer] : std::exchange(_held, {})) {
            if (socket) {
                answer.manner = Manner::whole;
                respond(socket, answer);
                socket->flush();
            }
        }
    }

    /// The requests since the last call.
    QList<Request> take() { return std::exchange(_requests, {}); }
    qsizetype requestCount() const { return _requests.size(); }
    bool wasAsked(const QByteArray& path) const
    {
        return std::any_of(_requests.begin(), _requests.end(),
                           [&](const Request& request) { return request.path == path; });
    }

    /// How many connections the other side has open.
    qsizetype connectionCount() const
    {
        const auto sockets = _server.findChildren<QTcpSocket*>();
        return std::count_if(sockets.begin(), sockets.end(), [](const QTcpSocket* socket) {
            return socket->state() == QAbstractSocket::ConnectedState;
        });
    }

private:
    /// Takes a whole request off the front of what was received; none while it is not all there.
    static std::optional<Request> takeRequest(QByteArray& received)
    {
        const qsizetype headEnd = received.indexOf("\r\n\r\n");
        if (headEnd < 0) {
            return std::nullopt;
        }
        const QByteArrayList lines = received.left(headEnd).replace("\r\n", "\n").split('\n');
        const QByteArrayList words = lines.first().split(' ');
        Request request;
        request.method = words.value(0);
        const QByteArrayList target = words.value(1).split('?');
        request.path = target.first();
        request.query = target.value(1);
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

    void read(QTcpSocket* socket)
    {
        _received[socket] += socket->readAll();
        while (const auto request = takeRequest(_received[socket])) {
            _requests << *request;
            respond(socket, _answers.value(request->path, {.status = 404, .body = "not here"}));
        }
    }

    void respond(QTcpSocket* socket, const Answer& answer)
    {
        if (answer.manner == Manner::held) {
            _held.emplace_back(socket, answer);
            return;
        }
        QByteArray head = "HTTP/1.1 " + QByteArray::number(answer.status) + " Scripted\r\n";
        head += (answer.headers + QByteArrayList{QByteArray()}).join("\r\n");
        if (answer.manner == Manner::endless) {
            socket->write(head + "\r\n" + answer.body);
            QObject::connect(socket, &QTcpSocket::bytesWritten, socket,
                             [socket, body = answer.body] { socket->write(body); });
            return;
        }
        head += "Content-Length: " + QByteArray::number(answer.body.size()) + "\r\n\r\n";
        const bool isCutOff = answer.manner == Manner::cutOff;
        socket->write(head + answer.body.left(answer.body.size() / (isCutOff ? 2 : 1)));
        if (isCutOff) {
            socket->disconnectFromHost();
        }
    }

    QTcpServer _server;
    QHash<QByteArray, Answer> _answers;
    QHash<QTcpSocket*, QByteArray> _received;
    QList<std::pair<QPointer<QTcpSocket>, Answer>> _held;
    QList<Request> _requests;
};
