#pragma once

#include "base/HttpCall.h"

#include <QNetworkAccessManager>

#include <memory>
#ifndef Q_MOC_RUN // moc 6.4 cannot read this header
#include <stop_token>
#endif

/// Asks web services. Redirects are followed where that is safe, to a depth of five; there are no cookies and
/// no cache, and an answer is bounded in length and time.
class HttpClient
{
public:
    explicit HttpClient(RunLoop& runLoop) : _runLoop(runLoop) {}

    /// Sends a request from the main thread. `completion` gets the reply there, once, later than this call,
    /// unless by then the handle is destroyed or `context` or the client is gone.
    [[nodiscard]] std::unique_ptr<HttpCall> send(HttpRequest request, QObject* context,
                                                 HttpCall::Completion completion);

    /// Sends a request and waits for the reply. Any thread but the main thread. Told to stop, it gives up at
    /// once, with a failure.
    static HttpReply sendAndWait(HttpRequest request, const std::stop_token& stop = {});

private:
    RunLoop& _runLoop;
    QNetworkAccessManager _network;
};
