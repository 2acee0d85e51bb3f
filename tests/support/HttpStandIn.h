#pragma once

#include <QHash>
#include <QMap>
#include <QPointer>
#include <QTcpServer>

#include <functional>

class QTcpSocket;

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
    HttpStandIn();

    /// "http://127.0.0.1:PORT"
    QString address() const;

    /// Answers every request of this path so from now on.
    void answer(const QByteArray& path, const Answer& answer);

    /// Sends the answers that are held back, on the connections that are still there.
    void release();

    /// The requests since the last call.
    QList<Request> take() { return std::exchange(_requests, {}); }
    qsizetype requestCount() const { return _requests.size(); }

    /// How many connections the other side has open.
    qsizetype connectionCount() const;

private:
    void read(QTcpSocket* socket);
    void respond(QTcpSocket* socket, const Answer& answer);

    QTcpServer _server;
    QHash<QByteArray, Answer> _answers;
    QHash<QTcpSocket*, QByteArray> _received;
    QList<std::pair<QPointer<QTcpSocket>, Answer>> _held;
    QList<Request> _requests;
};
