#include "base/HttpClient.h"

#include "base/EventLoop.h"

#include <QEventLoop>

#include <optional>

std::unique_ptr<HttpCall> HttpClient::send(HttpRequest request, QObject* context,
                                           HttpCall::Completion completion)
{
    return std::make_unique<HttpCall>(
        _network, _runLoop, std::move(request),
        [guard = QPointer(context), completion = std::move(completion)](const HttpReply& reply) {
            if (!guard.isNull()) {
                completion(reply);
            }
        });
}

HttpReply HttpClient::sendAndWait(HttpRequest request, const std::stop_token& stop)
{
    QEventLoop wait;
    EventLoop runLoop;
    QNetworkAccessManager network;
    std::optional<HttpReply> result;
    const HttpCall call(network, runLoop, std::move(request), [&](const HttpReply& reply) {
        result = reply;
        wait.quit();
    });
    const std::stop_callback giveUp(stop, [&wait, &result] {
        const auto end = [&wait, &result] {
            result = {.status = 0, .body = {}, .failure = QStringLiteral("given up")};
            wait.quit();
        };
        QMetaObject::invokeMethod(&wait, end, Qt::QueuedConnection);
    });
    while (!result) {
        wait.exec();
    }
    return *result;
}
