#include "base/EventLoop.h"
#include "base/HttpClient.h"
#include "base/SerialQueue.h"
#include "base/WebAddress.h"
#include "support/HttpStandIn.h"
#include "support/ManualRunLoop.h"

#include <QTest>

using Answer = HttpStandIn::Answer;
using Manner = HttpStandIn::Manner;
using Method = HttpRequest::Method;

/// Every exchange is with a server on loopback.
class HttpTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void encodesQueries();
    void asksAsTold();
    void ends_data();
    void ends();
    void boundsTime();
    void followsNoUnsafeRedirect_data();
    void followsNoUnsafeRedirect();
    void dropsWhatIsCancelled_data();
    void dropsWhatIsCancelled();

private:
    HttpRequest request(const QString& path) const
    {
        HttpRequest request;
        request.url = QUrl(_server.address() + path);
        return request;
    }

    HttpStandIn _server;
    EventLoop _runLoop;
};

void HttpTest::encodesQueries()
{
    const QueryItems items = {{QStringLiteral("term"), QStringLiteral("A+B & Ü/?#=%41")},
                              {QStringLiteral("none"), QString()}};
    const auto address = webAddress(QStringLiteral("http://h:1"), QStringLiteral("/p"), items);
    QVERIFY(address);
    QCOMPARE(address->toEncoded(),
             QByteArray("http://h:1/p?term=A%2BB%20%26%20%C3%9C%2F%3F%23%3D%2541&none="));
    for (const char* service : {"", "h:1", "file://h", "http://", "http://a b", "https://h:port"}) {
        QVERIFY2(!webAddress(QString::fromLatin1(service), QStringLiteral("/p")), service);
    }
}

void HttpTest::asksAsTold()
{
    HttpClient client(_runLoop);
    _server.answer("/post", {.body = "done", .headers = {"Set-Cookie: a=b"}});
    for (int i = 0; i < 2; ++i) { // the second without the cookie of the first
        std::optional<HttpReply> reply;
        HttpRequest post = request(QStringLiteral("/post?a=%20"));
        post.method = Method::post;
        post.headers = {{"Content-Type", "text/x-test"}, {"X-One", "1"}};
        post.body = "two\r\nlines";
        const auto call = client.send(post, this, [&](const HttpReply& answer) { reply = answer; });
        QTRY_VERIFY(reply);
        QCOMPARE(reply->body, QByteArray("done"));
        const auto requests = _server.take();
        QCOMPARE(requests.size(), 1);
        QCOMPARE(requests[0].method, QByteArray("POST"));
        QCOMPARE(requests[0].query, QByteArray("a=%20"));
        QCOMPARE(requests[0].body, post.body);
        QCOMPARE(requests[0].headers.value("content-type"), QByteArray("text/x-test"));
        QCOMPARE(requests[0].headers.value("x-one"), QByteArray("1"));
        QVERIFY(!requests[0].headers.contains("cookie"));
    }
}

void HttpTest::ends_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    const auto row = [](const char* name, const Answer& answer, int status, const QByteArray& body = {}) {
        QTest::newRow(name) << answer << status << body;
    };
    const QByteArray atLimit(1000, 'x');
    row("at the limit", {.body = atLimit}, 200, atLimit);
    row("over the limit", {.body = atLimit + 'x'}, 0);
    row("endless", {.body = atLimit, .manner = Manner::endless}, 0);
    row("small, but huge decompressed",
        {.body = qCompress(QByteArray(100'000'000, 0)).mid(4), .headers = {"Content-Encoding: deflate"}}, 0);
    row("bad request", {.status = 400, .body = "why"}, 400, "why");
    row("unauthorised", {.status = 401, .body = "who", .headers = {"WWW-Authenticate: Basic realm=x"}}, 401,
        "who");
    row("not found", {.status = 404, .body = "what"}, 404, "what");
    row("server error", {.status = 503}, 503);
    row("cut off", {.body = "0123456789", .manner = Manner::cutOff}, 0);
    row("not found, cut off", {.status = 404, .body = "0123", .manner = Manner::cutOff}, 0);
    row("redirected", {.status = 302, .headers = {"Location: /end"}}, 200, "the end");
    row("redirected for ever", {.status = 302, .headers = {"Location: /start"}}, 0);
    row("redirected to a file", {.status = 302, .headers = {"Location: file:///etc/hostname"}}, 0);
}

/// The same ending for both ways to ask.
void HttpTest::ends()
{
    QFETCH(Answer, answer);
    QFETCH(int, status);
    _server.answer("/start", answer);
    _server.answer("/end", {.body = "the end"});
    HttpRequest asked = request(QStringLiteral("/start"));
    asked.byteLimit = 1000;
    QList<HttpReply> replies;
    HttpClient client(_runLoop);
    const auto call = client.send(asked, this, [&](const HttpReply& reply) { replies << reply; });
    QTRY_COMPARE(replies.size(), 1);

    std::atomic<bool> isDone = false;
    SerialQueue queue(QStringLiteral("test"));
    queue.async([&] {
        replies << HttpClient::sendAndWait(asked);
        isDone = true;
    });
    QTRY_VERIFY(isDone);
    for (const HttpReply& reply : replies) {
        QCOMPARE(reply.status, status);
        QTEST(reply.body, "body");
        QCOMPARE(reply.hasFailed(), status == 0);
    }
}

void HttpTest::boundsTime()
{
    ManualRunLoop runLoop;
    HttpClient client(runLoop);
    _server.answer("/slow", {.body = "x", .manner = Manner::endless}); // a byte now and then
    _server.take();
    std::optional<HttpReply> reply;
    const auto call =
        client.send(request(QStringLiteral("/slow")), this, [&](const HttpReply& answer) { reply = answer; });
    QTRY_COMPARE(_server.requestCount(), 1);
    runLoop.advance(14.9);
    QVERIFY(!reply);
    runLoop.advance(0.2);
    QVERIFY(reply && reply->hasFailed());
    QTRY_COMPARE(_server.connectionCount(), 0);
}

void HttpTest::followsNoUnsafeRedirect_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<bool>("plain");
    QTest::addColumn<bool>("authorised");
    const auto row = [](const char* from, const char* to, bool plain, bool authorised) {
        QTest::addRow("%s to %s", from, to)
            << QString::fromLatin1(from) << QString::fromLatin1(to) << plain << authorised;
    };
    row("http://a", "http://a/b", true, true);
    row("http://a", "https://a", true, true);
    row("https://a", "https://a/b", true, true);
    row("https://a", "https://b", true, false);
    row("http://a:1", "http://a:2", true, false);
    row("https://a", "http://a", false, false);
    row("http://a", "ftp://a", false, false);
    row("http://a", "data:text/plain,x", false, false);
}

void HttpTest::followsNoUnsafeRedirect()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(bool, plain);
    QFETCH(bool, authorised);
    HttpRequest post;
    post.method = Method::post;
    HttpRequest token;
    token.headers = {{"authorization", "Bearer x"}};
    QCOMPARE(HttpRequest().mayFollow(QUrl(from), QUrl(to)), plain);
    QCOMPARE(post.mayFollow(QUrl(from), QUrl(to)), authorised);
    QCOMPARE(token.mayFollow(QUrl(from), QUrl(to)), authorised);
}

void HttpTest::dropsWhatIsCancelled_data()
{
    QTest::addColumn<QString>("end");
    for (const char* end : {"handle", "context", "client"}) {
        QTest::newRow(end) << QString::fromLatin1(end);
    }
}

void HttpTest::dropsWhatIsCancelled()
{
    QFETCH(QString, end);
    _server.answer("/held", {.body = "late", .manner = Manner::held});
    _server.answer("/other", {.body = "other"});
    _server.take();
    auto client = std::make_unique<HttpClient>(_runLoop);
    auto context = std::make_unique<QObject>();
    QByteArrayList heard;
    const auto hear = [&](const HttpReply& reply) { heard << reply.body; };
    auto call = client->send(request(QStringLiteral("/held")), context.get(), hear);
    QTRY_COMPARE(_server.requestCount(), 1);
    if (end == QStringLiteral("handle")) {
        call.reset();
    } else if (end == QStringLiteral("context")) {
        context.reset();
    } else {
        client = std::make_unique<HttpClient>(_runLoop);
    }
    _server.release();
    const auto other = client->send(request(QStringLiteral("/other")), this, hear);
    QTRY_VERIFY(heard.contains("other"));
    QCOMPARE(heard.size(), 1);
}

QTEST_GUILESS_MAIN(HttpTest)
#include "http_test.moc"
