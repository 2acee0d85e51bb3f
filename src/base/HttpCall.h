#pragma once

#include "base/HttpRequest.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <optional>

class QNetworkAccessManager;
class QNetworkReply;
class RunLoop;

/// How a request ended: with a whole answer of the server, whatever its status, or with a failure.
struct HttpReply {
    int status = 0;  ///< HTTP status; 0 after a failure
    QByteArray body; ///< empty after a failure: nothing of a cut-off answer is handed on
    std::optional<double> retryAfter = {}; ///< seconds until the server wants to be asked again
    QString failure; ///< why there is no whole answer, for the log; empty when there is one

    bool hasFailed() const { return !failure.isEmpty(); }
};

/// One request under way. Destroying it cancels the request: nothing is delivered from then on.
class HttpCall final : public QObject
{
public:
    using Completion = std::function<void(const HttpReply&)>;

    /// Sends at once. `completion` runs once, from the event loop of this thread and never inside this call;
    /// it may destroy the call.
    HttpCall(QNetworkAccessManager& network, RunLoop& runLoop, HttpRequest request, Completion completion);
    ~HttpCall() override;
    HttpCall(const HttpCall&) = delete;
    HttpCall& operator=(const HttpCall&) = delete;

private:
    void start();
    bool read();
    void readEnd();
    void redirect(int status, const QUrl& target);
    void fail(const QString& failure);
    void finish(const HttpReply& result);
    void drop();

    QNetworkAccessManager& _network; ///< while there is a reply of it
    HttpRequest _request;            ///< its address is that of the last redirect followed
    Completion _completion;
    QPointer<QNetworkReply> _reply; ///< belongs to the network manager
    QByteArray _body;
    qsizetype _length = 0; ///< of what has come, in bytes
    int _redirects = 0;    ///< followed so far
};
