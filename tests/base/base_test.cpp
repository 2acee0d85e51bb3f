#include "base/ClockText.h"
#include "base/DebugLog.h"
#include "base/Decimal.h"
#include "base/EventLoop.h"
#include "base/HttpClient.h"
#include "base/NotificationCenter.h"
#include "base/SerialQueue.h"
#include "support/HttpStandIn.h"
#include "support/ManualRunLoop.h"

#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using Answer = HttpStandIn::Answer;
using Manner = HttpStandIn::Manner;
using Method = HttpRequest::Method;

/// Every exchange of HTTP is with a server on loopback.
class BaseTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void remainingTimes()
    {
        for (const auto& [duration, elapsed, text] : {std::tuple(200.0, 12.1, "-3:07"),
                                                      {200.5, 12.0, "-3:08"},
                                                      {10, 5, "-0:05"},
                                                      {3725, 0, "-62:05"},
                                                      {10, 11, "-0:00"},
                                                      {0, 0, ""}}) {
            QCOMPARE(timeRemainingText(duration, elapsed), QLatin1String(text));
        }
    }

    void decimals()
    {
        for (const auto& [text, value] : {std::pair("42.5", 42.5),
                                          {"90.0", 90.0},
                                          {"-1.25", -1.25},
                                          {"9.9e-05", 9.9e-5},
                                          {"1000000000000000.0", 1e15},
                                          {"1.0e+16", 1e16},
                                          {"187.99999999999997", 187.99999999999997}}) {
            QCOMPARE(decimalText(value), QLatin1String(text));
            QCOMPARE(parseDecimal(QString::fromLatin1(text)), value);
        }
        QCOMPARE(parseDecimal(u"+215.5"_s), 215.5);
        for (const char* none : {"", " 1", "1\t", "12,5", "12s", "+-1", "nan", "inf", "1e999", "٣"}) {
            QVERIFY2(parseDecimal(QString::fromUtf8(none)) == 0, none);
        }
    }

    void notifies()
    {
        NotificationCenter center;
        QObject context;
        QStringList heard;
        center.observe(u"a"_s, &context, [&](const QVariantMap& info) {
            heard << info[u"k"_s].toString();
            // Registered while posting: from the next time on.
            center.observe(u"a"_s, &context, [&](const QVariantMap&) { heard << u"late"_s; });
        });
        auto dying = std::make_unique<QObject>();
        center.observe(u"a"_s, &context, [&](const QVariantMap&) { dying.reset(); });
        center.observe(u"a"_s, dying.get(), [&](const QVariantMap&) { heard << u"too late"_s; });
        center.post(u"a"_s, {{u"k"_s, 1}});
        QCOMPARE(heard, QStringList(u"1"_s));
        center.post(u"a"_s);
        QCOMPARE(heard.last(), u"late"_s);
    }

    void runsSerially()
    {
        QList<int> order;
        {
            SerialQueue queue(u"test"_s);
            for (int i = 0; i < 500; ++i) {
                queue.async([&order, i] { order << i; }); // unguarded: only safe if nothing overlaps
            }
        }
        QCOMPARE(order.size(), 500);
        QVERIFY(std::is_sorted(order.begin(), order.end()));
    }

    void firesWhileContextLives()
    {
        EventLoop loop;
        auto context = std::make_unique<QObject>();
        int once = 0;
        int often = 0;
        loop.after(0, context.get(), [&] { ++once; });
        QCOMPARE(once, 0); // never inside the call
        auto timer = loop.every(0.005, context.get(), [&] { ++often; });
        QTRY_VERIFY(once == 1 && often >= 3);
        timer.reset();
        const int stopped = often;
        bool isLater = false;
        loop.after(0.05, this, [&] { isLater = true; });
        loop.after(0.02, context.get(), [&] { ++once; });
        context.reset();
        QTRY_VERIFY(isLater);
        QVERIFY(often == stopped && once == 1);
    }

    void logsLines()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"log"_s));
        const mode_t before = umask(0);
        for (const bool isNew : {true, false}) {
            DebugLog(file.fileName()).write(u"naïve 夜"_s);
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QString text = QString::fromUtf8(file.readAll());
            file.close();
            QCOMPARE(text.count(u"+0000] naïve 夜\n"_s), isNew ? 1 : 2);
            QCOMPARE(QFileInfo(file).permissions() & 0x0fff, QFile::ReadUser | QFile::WriteUser);
            file.setPermissions(QFile::ReadOther | QFile::ReadOwner | QFile::WriteOwner); // to be narrowed
        }
        umask(before);
        const QDateTime summer(QDate(2026, 7, 1), QTime(1, 2, 3), QTimeZone("Asia/Tokyo"));
        QCOMPARE(DebugLog::line(summer, u"a\r\nb\u2028c"_s), u"[2026-06-30 16:02:03 +0000] a  b c\n"_s);
    }

    void logsToNoOtherFile()
    {
        using Place = int (*)(const char* path, const char* target); // 0 when it is there
        for (const Place place : {Place([](auto path, auto target) { return ::symlink(target, path); }),
                                  Place([](auto path, auto target) { return ::link(target, path); }),
                                  Place([](auto path, auto) { return ::mkfifo(path, 0600); }),
                                  Place([](auto path, auto) { return ::mkdir(path, 0700); })}) {
            const QTemporaryDir folder;
            QFile target(folder.filePath(u"target"_s));
            QVERIFY(target.open(QIODevice::ReadWrite));
            const QString path = folder.filePath(u"log"_s);
            QCOMPARE(place(qPrintable(path), qPrintable(target.fileName())), 0);
            DebugLog log(path);
            log.write(u"line"_s);
            log.flush(); // a pipe without a reader must not hold it up
            QCOMPARE(target.readAll(), QByteArray());
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
            queue.async([&] { replies << HttpClient::sendAndWait(asked), isDone = true; });
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

QTEST_GUILESS_MAIN(BaseTest)
#include "base_test.moc"
