#include "base/HttpCall.h"

#include "base/Decimal.h"
#include "base/RunLoop.h"
#include "base/WebAddress.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>

namespace {

constexpr int maximumRedirects = 5;
// The two redirects that repeat a post; after the others the new address is got.
constexpr int temporaryRedirect = 307;
constexpr int permanentRedirect = 308;
constexpr qint64 readBufferBytes = 262'144;

QNetworkRequest networkRequest(const HttpRequest& request)
{
    QNetworkRequest result(request.url);
    for (const auto& [name, value] : request.headers) {
        result.setRawHeader(name, value);
    }
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    result.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    result.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    return result;
}

bool isSuccess(const QNetworkReply& reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() / 100 == 2;
}

/// An answer such as "404 Not Found" is an error to Qt, too, but not to us.
bool isWholeAnswer(const QNetworkReply& reply, int status)
{
    const auto error = reply.error();
    const bool isOfStatus = status >= 400 && (error >= QNetworkReply::ContentAccessDenied ||
                                              error == QNetworkReply::ProxyAuthenticationRequiredError);
    return status >= 200 && (error == QNetworkReply::NoError || isOfStatus);
}

} // namespace

HttpCall::HttpCall(QNetworkAccessManager& network, RunLoop& runLoop, HttpRequest request,
                   Completion completion)
    : _network(network)
    , _request(std::move(request))
    , _completion(std::move(completion))
{
    if (!isWebAddress(_request.url) || (_request.isSecureOnly && !isSecureAddress(_request.url))) {
        runLoop.after(0, this, [this] {
            fail(_request.isSecureOnly ? QStringLiteral("not a secure web address")
                                       : QStringLiteral("not a web address"));
        });
        return;
    }
    start();
    runLoop.after(_request.timeout, this,
                  [this] { fail(QStringLiteral("no answer within %1 seconds").arg(_request.timeout)); });
}

HttpCall::~HttpCall()
{
    drop();
}

void HttpCall::start()
{
    const QNetworkRequest outgoing = networkRequest(_request);
    const bool isPost = _request.method == HttpRequest::Method::post;
    _reply = isPost ? _network.post(outgoing, _request.body) : _network.get(outgoing);
    _reply->setReadBufferSize(readBufferBytes);
    connect(_reply, &QNetworkReply::readyRead, this, &HttpCall::read);
    connect(_reply, &QNetworkReply::finished, this, &HttpCall::readEnd);
}

/// False when it was too much: the call has ended then, and may be gone.
bool HttpCall::read()
{
    // No more than is wanted: a small answer may decompress to a huge one.
    while (_length <= _request.byteLimit) {
        const QByteArray piece = _reply->read(_request.byteLimit + 1 - _length);
        if (piece.isEmpty()) {
            return true;
        }
        _length += piece.size();
        if (!_request.receive) {
            _body += piece;
        } else if (isSuccess(*_reply)) {
            _request.receive(piece);
        }
    }
    fail(QStringLiteral("more than %1 bytes").arg(_request.byteLimit));
    return false;
}

void HttpCall::readEnd()
{
    if (!read()) {
        return;
    }
    const int status = _reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QUrl target = _reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (!isWholeAnswer(*_reply, status)) {
        fail(_reply->errorString());
    } else if (target.isEmpty()) {
        finish({.status = status,
                .body = std::exchange(_body, {}),
                .retryAfter = readDecimal(QString::fromLatin1(_reply->rawHeader("Retry-After"))),
                .failure = {}});
    } else {
        redirect(status, _request.url.resolved(target));
    }
}

void HttpCall::redirect(int status, const QUrl& target)
{
    if (!_request.mayFollow(_request.url, target)) {
        fail(QStringLiteral("redirected to %1")
                 .arg(target.toString(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment)));
        return;
    }
    if (++_redirects > maximumRedirects) {
        fail(QStringLiteral("redirected more than %1 times").arg(maximumRedirects));
        return;
    }
    drop();
    _body.clear();
    _length = 0;
    _request.url = target;
    if (status != temporaryRedirect && status != permanentRedirect) {
        _request.method = HttpRequest::Method::get;
    }
    start();
}

void HttpCall::fail(const QString& failure)
{
    finish({.status = 0, .body = {}, .failure = failure});
}

void HttpCall::finish(const HttpReply& result)
{
    drop();
    if (const Completion completion = std::exchange(_completion, {})) {
        completion(result); // may have destroyed this call
    }
}

void HttpCall::drop()
{
    if (QNetworkReply* const reply = _reply.data()) {
        _reply.clear();
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
}
