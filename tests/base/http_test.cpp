#include "base/EventLoop.h"
#include "base/HttpClient.h"
#include "base/SerialQueue.h"
#include "base/WebAddress.h"
#include "support/HttpStandIn.h"
#include "support/ManualRunLoop.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using Answer = HttpStandIn::Answer;
using Manner = HttpStandIn::Manner;
using Method = HttpRequest::Method;

/// Every exchange is with a server on loopback.
class HttpTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void encodesQueries()
    {
        const auto address = webAddress(u"http://h:1"_s, u"/p"_s, {{u"a"_s, u"+ &Ü/?#=%41"_s}, {u"b"_s, {}}});
        QVERIFY(address && address->toEncoded() == "http://h:1/p?a=%2B%20%26%C3%9C%2F%3F%23%3D%2541&b=");
        for (const char* service : {"", "h:1", "file://h", "http://", "http://a b", "https://h:port"}) {
            QVERIFY2(!webAddress(QString::fromLatin1(service), u"/p"_s), service);
        }
    }

    void asksAsTold()
    {
        HttpClient client(_runLoop);
        _server.answer("/post", {.body = "done", .headers = {"Set-Cookie: a=b"}});
        HttpRequest post = request(u"/post?a=%20"_s);
        post.method = Method::post;
        post.headers = {{"Content-Type", "text/x-test"}, {"X-One", "1"}};
        post.body = "two\r\nlines";
        for (int i = 0; i < 2; ++i) { // the second without the cookie of the first
            std::optional<HttpReply> reply;
            const auto call = client.send(post, this, [&](const HttpReply& answer) { reply = answer; });
            QTRY_VERIFY(reply);
            QCOMPARE(reply->body, QByteArray("done"));
            const auto asked = _server.take().at(0);
            QCOMPARE(asked.method + asked.query + asked.body, "POSTa=%20" + post.body);
            QCOMPARE(asked.headers.value("content-type") + asked.headers.value("x-one"),
                     QByteArray("text/x-test1"));
            QVERIFY(!asked.headers.contains("cookie"));
        }
    }

    /// The same ending for both ways to ask.
    void ends()
    {
        const QByteArray atLimit(1000, 'x');
        const QByteArray zeros(100'000'000, 0);
        const std::vector<std::tuple<Answer, int, QByteArray>> rows = {
            // status, 0 when it fails, and body
            {{.body = atLimit}, 200, atLimit},
            {{.body = atLimit, .manner = Manner::endless}, 0, {}},
            {{.body = qCompress(zeros).mid(4), .headers = {"Content-Encoding: deflate"}}, 0, {}},
            {{.status = 401, .body = "who", .headers = {"WWW-Authenticate: Basic realm=x"}}, 401, "who"},
            {{.body = "0123456789", .manner = Manner::cutOff}, 0, {}},
            {{.status = 404, .body = "0123", .manner = Manner::cutOff}, 0, {}},
            {{.status = 404, .body = "what"}, 404, "what"},
            {{.status = 302, .headers = {"Location: /end"}}, 200, "the end"},
            {{.status = 302, .headers = {"Location: /start"}}, 0, {}},
            {{.status = 302, .headers = {"Location: file:///etc/hostname"}}, 0, {}}};
        _server.answer("/end", {.body = "the end"});
        HttpClient client(_runLoop);
        HttpRequest asked = request(u"/start"_s);
        asked.byteLimit = 1000;
        for (const auto& [answer, status, body] : rows) {
            _server.answer("/start", answer);
            QList<HttpReply> replies;
            const auto call = client.send(asked, this, [&](const HttpReply& reply) { replies << reply; });
            QTRY_COMPARE(replies.size(), 1);
            std::atomic<bool> isDone = false;
            SerialQueue queue(u"test"_s);
            queue.async([&] {
                replies << HttpClient::sendAndWait(asked);
                isDone = true;
            });
            QTRY_VERIFY(isDone);
            for (const HttpReply& reply : replies) {
                QCOMPARE(reply.status, status);
                QCOMPARE(reply.body, body);
                QCOMPARE(reply.hasFailed(), status == 0);
            }
        }
    }

    void boundsTime()
    {
        ManualRunLoop runLoop;
        HttpClient client(runLoop);
        _server.answer("/slow", {.body = "x", .manner = Manner::endless}); // a byte now and then
        _server.take();
        std::optional<HttpReply> reply;
        const auto call =
            client.send(request(u"/slow"_s), this, [&](const HttpReply& answer) { reply = answer; });
        QTRY_COMPARE(_server.requestCount(), 1);
        runLoop.advance(14.9);
        QVERIFY(!reply);
        runLoop.advance(0.2);
        QVERIFY(reply && reply->hasFailed());
        QTRY_COMPARE(_server.connectionCount(), 0);
    }

    void followsNoUnsafeRedirect()
    {
        HttpRequest plain;
        HttpRequest post;
        post.method = Method::post;
        HttpRequest token;
        token.headers = {{"authorization", "Bearer x"}};
        for (const char* const row :
             {"http://a http://a/b yes yes", "https://a https://a/b yes yes", "http://a https://a yes yes",
              "https://a https://b yes no", "http://a:1 http://a:2 yes no", "https://a http://a no no",
              "http://a data:text/plain,x no no"}) {
            const QStringList words = QString::fromLatin1(row).split(u' '); // the last is for secrets
            for (const HttpRequest* const request : {&plain, &post, &token}) {
                const bool isAllowed = request->mayFollow(QUrl(words[0]), QUrl(words[1]));
                QVERIFY2(isAllowed == (words[request == &plain ? 2 : 3] == u"yes"), row);
            }
        }
    }

    void dropsWhatIsCancelled()
    {
        _server.answer("/held", {.body = "late", .manner = Manner::held});
        _server.answer("/other", {.body = "other"});
        _server.take();
        HttpClient client(_runLoop);
        auto context = std::make_unique<QObject>();
        QByteArrayList heard;
        const auto hear = [&](const HttpReply& reply) { heard << reply.body; };
        auto dropped = client.send(request(u"/held"_s), this, hear);
        const auto orphaned = client.send(request(u"/held"_s), context.get(), hear);
        QTRY_COMPARE(_server.requestCount(), 2);
        _server.release();
        dropped.reset();
        context.reset();
        const auto other = client.send(request(u"/other"_s), this, hear);
        QTRY_VERIFY(heard.contains("other"));
        QCOMPARE(heard.size(), 1);
    }

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

QTEST_GUILESS_MAIN(HttpTest)
#include "http_test.moc"
