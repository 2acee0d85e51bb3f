#include "accounts/SpotifyAPI.h"
#include "accounts/SpotifyAuthManager.h"
#include "accounts/SpotifyCallback.h"
#include "support/Command.h"
#include "support/FakePlatform.h"
#include "support/HttpStandIn.h"
#include "support/LogFile.h"
#include "support/MemoryDefaults.h"
#include "support/Program.h"

#include <QCryptographicHash>
#include <QTest>
#include <QUrlQuery>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString callback = u"GET /pellar-spotify-callback?code=the-code HTTP/1.1\r\n\r\n"_s;

HttpStandIn::Answer token(const QByteArray& more = {})
{
    return {.body = R"({"access_token":"first","expires_in":3600)" + more + "}"};
}

/// The program's side of an account, with a service of the test's own.
struct Account {
    Account(FakePlatform& desktop, const HttpStandIn& service) : Account(desktop, service.address()) {}
    Account(FakePlatform& desktop, const QString& service)
    {
        for (const auto* const name : {"spotifyAccounts", "spotifyWebApi"}) {
            defaults.setObject(u"com.orvalen.pellar.endpoint."_s + QLatin1String(name), service);
        }
        const ServiceAddresses addresses(defaults);
        auth = std::make_unique<SpotifyAuthManager>(
            SpotifyAuthManager::Dependencies{.runLoop = desktop.runLoop,
                                             .keychain = desktop.keychain,
                                             .workspace = desktop.workspace,
                                             .addresses = addresses,
                                             .clientId = SpotifyAuthManager::builtInClientId()});
        api = std::make_unique<SpotifyAPI>(SpotifyAPI::Dependencies{.runLoop = desktop.runLoop,
                                                                    .notifications = desktop.notifications,
                                                                    .auth = *auth,
                                                                    .addresses = addresses});
        for (int i = 0; i < 3; ++i) {
            desktop.runLoop.settle(); // an item of the keychain a turn
        }
    }

    MemoryDefaults defaults;
    std::unique_ptr<SpotifyAuthManager> auth;
    std::unique_ptr<SpotifyAPI> api;
};

/// Sends to the listener; gives what came back, once it has closed the connection.
QString answerTo(const QString& request)
{
    QTcpSocket browser;
    browser.connectToHost(QHostAddress::LocalHost, SpotifyAuthManager::loopbackPort);
    browser.write(request.toUtf8());
    if (!QTest::qWaitFor([&] { return browser.state() == QAbstractSocket::UnconnectedState; })) {
        return u"still open"_s;
    }
    return QString::fromUtf8(browser.readAll());
}

} // namespace

class SpotifyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        _desktop = std::make_unique<FakePlatform>();
        _service = std::make_unique<HttpStandIn>();
        _log.take();
    }

    void connects()
    {
        Account account(*_desktop, *_service);
        _service->answer("/api/token", token(R"(,"refresh_token":"again")"));
        account.auth->startAuthorization();
        const QUrl opened(_desktop->workspace.opened.value(0));
        const QUrlQuery query(opened);
        QCOMPARE(opened.path(), u"/authorize"_s);
        QCOMPARE(query.queryItems(QUrl::FullyDecoded).size(), 6);
        QCOMPARE(query.queryItemValue(u"scope"_s, QUrl::FullyDecoded),
                 u"user-read-playback-state user-read-currently-playing user-modify-playback-state"_s);

        const QString page = answerTo(callback);
        QVERIFY(page.contains(u"✓ Connected"));
        QCOMPARE(page.section(u"Content-Length: "_s, 1).section(u'\r', 0, 0).toInt(),
                 page.section(u"\r\n\r\n"_s, 1).toUtf8().size());
        QTRY_VERIFY(account.auth->isAuthorized());
        QVERIFY(!account.auth->isAuthorizing());
        QCOMPARE(_service->requestCount(), 1);
        const QUrlQuery body(QString::fromUtf8(_service->take().constFirst().body));
        const QByteArray verifier = body.queryItemValue(u"code_verifier"_s).toUtf8();
        QCOMPARE(verifier.size(), 64);
        QCOMPARE(QCryptographicHash::hash(verifier, QCryptographicHash::Sha256)
                     .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals),
                 query.queryItemValue(u"code_challenge"_s).toLatin1());
        QCOMPARE(body.queryItemValue(u"code"_s), u"the-code"_s);
        QCOMPARE(body.queryItemValue(u"redirect_uri"_s), u"http://127.0.0.1:7421/pellar-spotify-callback"_s);
        QCOMPARE(answerTo(callback), QString()); // nobody listens any more

        _desktop->runLoop.advance(1);
        const QString service = u"com.orvalen.pellar.spotify "_s;
        QCOMPARE(_desktop->keychain.items.value(service + u"refresh_token"_s), "again");
        QCOMPARE(_desktop->keychain.items.value(service + u"expires_at"_s), "800003600.0");
        Account restarted(*_desktop, *_service);
        QVERIFY(restarted.auth->isAuthorized());
        restarted.auth->disconnect();
        _desktop->runLoop.settle();
        QVERIFY(_desktop->keychain.items.isEmpty() && !restarted.auth->isAuthorized());
    }

    void hearsTheBrowserAmongOthers_data()
    {
        QTest::addColumn<QString>("request");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<bool>("goesOn");
        const QString failed = u"Connection failed"_s;
        QTest::newRow("denied") << u"GET /pellar-spotify-callback?error=access_denied HTTP/1.1\r\n\r\n"_s
                                << failed << false;
        QTest::newRow("icon") << u"GET /favicon.ico HTTP/1.1\r\n\r\n"_s << failed << true;
        QTest::newRow("no HTTP") << u"SSH-2.0-OpenSSH\r\n"_s << QString() << true;
        QTest::newRow("8 MB") << QString(8'000'000, u'?') << QString() << true;
        QTest::newRow("cookies") << u"GET / HTTP/1.1\r\nCookie: "_s + QString(100'000, u'c') + u"\r\n\r\n"_s
                                 << failed << true;
    }
    void hearsTheBrowserAmongOthers()
    {
        QFETCH(const QString, request);
        QFETCH(const QString, answer);
        QFETCH(const bool, goesOn);
        Account account(*_desktop, *_service);
        _service->answer("/api/token", token());
        account.auth->startAuthorization();
        const QString got = answerTo(request);
        QVERIFY2(answer.isEmpty() ? got.isEmpty() : got.contains(answer), qPrintable(got.left(200)));
        QCOMPARE(account.auth->isAuthorizing(), goesOn);
        QCOMPARE(answerTo(callback).contains(u"✓"), goesOn);
        QTRY_COMPARE(account.auth->isAuthorized(), goesOn);
    }

    /// The browser asks again on a connection that it has opened meanwhile, and so does somebody else.
    void heedsTheFirstCodeOnly()
    {
        Account account(*_desktop, *_service);
        _service->answer("/api/token", {.body = token().body, .manner = HttpStandIn::Manner::held});
        account.auth->startAuthorization();
        std::array<QTcpSocket, 2> others;
        for (QTcpSocket& other : others) {
            other.connectToHost(QHostAddress::LocalHost, SpotifyAuthManager::loopbackPort);
        }
        QVERIFY(answerTo(callback).contains(u"✓"));
        others[0].write(callback.toUtf8());
        others[1].write("GET /pellar-spotify-callback HTTP/1.1\r\n\r\n");
        for (const QTcpSocket& other : others) {
            QTRY_COMPARE(other.state(), QAbstractSocket::UnconnectedState);
        }
        QVERIFY(account.auth->isAuthorizing());
        QTRY_COMPARE(_service->requestCount(), 1);
        _service->release();
        QTRY_VERIFY(account.auth->isAuthorized());
    }

    /// The account of before is withdrawn as another is being connected, or when it just has been.
    void outlivesTheAccountBefore_data()
    {
        QTest::addColumn<HttpStandIn::Manner>("exchange");
        QTest::newRow("meanwhile") << HttpStandIn::Manner::held;
        QTest::newRow("afterwards") << HttpStandIn::Manner::whole;
    }
    void outlivesTheAccountBefore()
    {
        QFETCH(const HttpStandIn::Manner, exchange);
        storeTokens(30);
        Account account(*_desktop, *_service);
        _service->answer(
            "/api/token",
            {.status = 400, .body = R"({"error":"invalid_grant"})", .manner = HttpStandIn::Manner::held});
        QStringList got;
        account.auth->getValidToken(this, [&got](const auto& value) { got << value.value_or(u"none"_s); });
        QTRY_COMPARE(_service->requestCount(), 1);
        _service->answer("/api/token",
                         {.body = token(R"(,"refresh_token":"again")").body, .manner = exchange});
        account.auth->startAuthorization();
        QVERIFY(answerTo(callback).contains(u"✓"));
        QTRY_COMPARE(_service->requestCount(), 2);
        QTRY_COMPARE(account.auth->isAuthorizing(), exchange == HttpStandIn::Manner::held);
        _service->release();
        QTRY_VERIFY(!account.auth->isAuthorizing());
        QTRY_COMPARE(got, QStringList{exchange == HttpStandIn::Manner::held ? u"none"_s : u"first"_s});
        _desktop->runLoop.advance(1);
        QVERIFY(account.auth->isAuthorized() && account.auth->lastError().isEmpty());
        QCOMPARE(_desktop->keychain.items.value(u"com.orvalen.pellar.spotify refresh_token"_s), "again");
    }

    void bearsManyThatSayNothing()
    {
        Account account(*_desktop, *_service);
        _service->answer("/api/token", token());
        account.auth->startAuthorization();
        std::vector<std::unique_ptr<QTcpSocket>> silent;
        for (int i = 0; i < 1000; ++i) {
            silent.push_back(std::make_unique<QTcpSocket>());
            silent.back()->connectToHost(QHostAddress::LocalHost, SpotifyAuthManager::loopbackPort);
            silent.back()->write("GET /pellar-spot");
            QTRY_COMPARE(silent.back()->bytesToWrite(), 0);
        }
        const auto open = [&silent] {
            return std::count_if(silent.begin(), silent.end(), [](const auto& socket) {
                return socket->state() == QAbstractSocket::ConnectedState;
            });
        };
        QTRY_VERIFY(open() <= 64);
        QVERIFY(answerTo(callback).contains(u"✓"));
        QTRY_VERIFY(account.auth->isAuthorized());
        _desktop->runLoop.advance(10);
        QTRY_COMPARE(open(), 0);
    }

    void endsAfterTenMinutes()
    {
        Account account(*_desktop, *_service);
        account.auth->startAuthorization();
        _desktop->runLoop.advance(601);
        QVERIFY(!account.auth->isAuthorizing() && !account.auth->lastError().isEmpty());
        QCOMPARE(answerTo(callback), QString());
        QTcpServer other;
        QVERIFY(other.listen(QHostAddress::LocalHost, SpotifyAuthManager::loopbackPort));
        account.auth->startAuthorization();
        QVERIFY(_log.take().value(0).startsWith(u"[Pellar] Failed to start loopback HTTP listener: "));
        QCOMPARE(_desktop->workspace.opened.size(), 1);
    }

    void refreshes_data()
    {
        QTest::addColumn<HttpStandIn::Answer>("answer");
        QTest::addColumn<QString>("token"); ///< that whoever asks gets
        QTest::addColumn<bool>("isAuthorized");
        const auto row = [](const char* name, const HttpStandIn::Answer& answer, const QString& token,
                            bool isAuthorized = true) {
            QTest::newRow(name) << answer << token << isAuthorized;
        };
        row("new token", token(), u"first"_s);
        row("withdrawn", {.status = 400, .body = R"({"error":"invalid_grant"})"}, u""_s, false);
        row("out of order", {.status = 500, .body = R"({"error":"server_error"})"}, u""_s);
        row("no JSON", {.status = 502, .body = "<html>"}, u""_s);
        row("no token", {.body = R"({"access_token":"two\r\nlines"})"}, u""_s);
        row("elsewhere", {.status = 307, .headers = {"Location: /other"}}, u""_s);
        row("silent", {.manner = HttpStandIn::Manner::held}, u""_s);
    }
    void refreshes()
    {
        QFETCH(const HttpStandIn::Answer, answer);
        QFETCH(const QString, token);
        storeTokens(30);
        Account account(*_desktop, *_service);
        _service->answer("/api/token", answer);
        _service->answer("/other", ::token());
        QStringList got;
        for (int i = 0; i < 3; ++i) {
            account.auth->getValidToken(this,
                                        [&got](const auto& value) { got << value.value_or(QString()); });
        }
        QTRY_VERIFY(_service->requestCount() > 0);
        QTRY_VERIFY(got.size() == 3 || answer.manner == HttpStandIn::Manner::held);
        _desktop->runLoop.advance(61);
        QTRY_COMPARE(got, QStringList({token, token, token}));
        QCOMPARE(_service->requestCount(), 1);
        QTEST(account.auth->isAuthorized(), "isAuthorized");
        QCOMPARE(_desktop->keychain.items.value(u"com.orvalen.pellar.spotify refresh_token"_s),
                 account.auth->isAuthorized() ? "stored" : "");
        QVERIFY(!_log.take().join(u' ').contains(u"stored"));
    }

    /// A server whose certificate nobody vouches for learns nothing.
    void trustsNobody()
    {
        const QTemporaryDir folder;
        const QString key = folder.filePath(u"key.pem"_s);
        run(u"openssl req -x509 -newkey rsa:2048 -nodes -subj /CN=127.0.0.1 -keyout %1 -out %1"_s.arg(key));
        QTcpServer free;
        free.listen(QHostAddress::LocalHost);
        const QString port = QString::number(free.serverPort());
        free.close();
        Program server(u"openssl"_s, {u"s_server"_s, u"-accept"_s, port, u"-cert"_s, key, u"-key"_s, key});
        QVERIFY(server.waitForReadyRead()); // it accepts
        storeTokens(30);
        Account account(*_desktop, u"https://127.0.0.1:"_s + port);
        QStringList got;
        account.auth->getValidToken(this, [&got](const auto& value) { got << value.value_or(u"none"_s); });
        QTRY_COMPARE(got, QStringList{u"none"_s});
        QVERIFY(_log.take().value(0).contains(u"certificate"));
        QVERIFY(account.auth->isAuthorized() && !server.readAll().contains("refresh_token"));
    }

    void readsQueue_data()
    {
        QTest::addColumn<HttpStandIn::Answer>("answer");
        QTest::addColumn<QString>("log");
        QTest::addColumn<QStringList>("rows");
        const auto row = [](const char* name, const HttpStandIn::Answer& answer, const QString& log,
                            const QStringList& rows = {u"old"_s}) {
            QTest::newRow(name) << answer << log << rows;
        };
        QByteArrayList many(20, R"({"name":"A","artists":[{"name":"X"},{},{"name":"Y"}]})");
        many[1] = R"({"name":7})";
        row("twenty", {.body = R"({"queue":[)" + many.join(',') + "]}"}, u"queue: fetched 7 tracks"_s,
            QStringList(7, u"A by X, Y"_s));
        row("none", {.status = 204}, u"queue: no data, status=204"_s);
        row("no JSON", {.body = "Bearer fresh"}, u"queue: bad JSON, status=200, body=Bearer …"_s);
        row("refused", {.status = 401, .body = R"({"error":{}})"},
            u"queue: no `queue` field in response, status=401"_s);
        row("elsewhere", {.status = 302, .headers = {"Location: http://127.0.0.1:1/?fresh"}},
            u"queue: net error redirected to http://127.0.0.1:1/"_s);
    }
    void readsQueue()
    {
        QFETCH(const HttpStandIn::Answer, answer);
        storeTokens(600);
        Account account(*_desktop, *_service);
        const QByteArray path = "/v1/me/player/queue";
        _service->answer(path, {.body = R"({"queue":[{"name":"old"}]})"});
        QCOMPARE(account.api->cachedQueue(), {});
        QTRY_COMPARE(account.api->cachedQueue().size(), 1);
        QCOMPARE(_service->take().value(0).headers.value("authorization"), "Bearer fresh");
        QCOMPARE(_service->requestCount(), 0); // fresh for four seconds
        _log.take();

        _service->answer(path, answer);
        _service->answer("/api/token", token());
        _desktop->runLoop.advance(4.1);
        account.api->cachedQueue();
        account.api->refreshQueueAsync(); // on top
        QStringList log;
        QTRY_VERIFY(!(log << _log.take()).isEmpty());
        QTEST(log.last(), "log");
        // A token that is refused is refreshed, once.
        QCOMPARE(_service->requestCount(), answer.status == 401 ? 3 : 1);
        QStringList rows;
        for (const UpNextTrack& track : account.api->cachedQueue()) {
            rows << (track.artist.isEmpty() ? track.title : track.title + u" by " + track.artist);
        }
        QTEST(rows, "rows");

        account.auth->disconnect(); // what comes next for the next account is not known
        QTRY_VERIFY(account.api->cachedQueue().isEmpty());
    }

    void waitsAsLongAsToldTo_data()
    {
        QTest::addColumn<QByteArrayList>("headers");
        QTest::addColumn<int>("quiet"); ///< seconds
        QTest::newRow("told") << QByteArrayList{"Retry-After: 90"} << 90;
        QTest::newRow("a date") << QByteArrayList{"Retry-After: Fri, 31 Dec 2027 23:59:59 GMT"} << 30;
        QTest::newRow("not told") << QByteArrayList() << 30;
    }
    void waitsAsLongAsToldTo()
    {
        QFETCH(const QByteArrayList, headers);
        QFETCH(const int, quiet);
        storeTokens(6000);
        Account account(*_desktop, *_service);
        _service->answer("/v1/me/player/queue", {.status = 429, .body = "{}", .headers = headers});
        account.api->refreshQueueAsync();
        QStringList log;
        QTRY_VERIFY(!(log << _log.take()).isEmpty());
        QVERIFY(log.constFirst().endsWith(u"status=429"));
        _desktop->runLoop.advance(quiet - 1);
        account.api->refreshQueueAsync();
        _desktop->runLoop.advance(2);
        account.api->refreshQueueAsync();
        QTRY_COMPARE(_service->requestCount(), 2);
    }

    /// The keychain is away at first, or only when the account goes.
    void outlivesItsKeychain()
    {
        Account account(*_desktop, *_service);
        _service->answer("/api/token", token(R"(,"refresh_token":"again")"));
        _desktop->keychain.fail(Keychain::failed);
        account.auth->startAuthorization();
        answerTo(callback);
        QTRY_VERIFY(account.auth->isAuthorized());
        _desktop->runLoop.advance(1);
        QVERIFY(_desktop->keychain.items.isEmpty());
        QString got;
        account.auth->getValidToken(this, [&got](const auto& value) { got = value.value_or(QString()); });
        QCOMPARE(got, u"first"_s);
        _desktop->keychain.fail(Keychain::done);
        _desktop->runLoop.advance(1);
        QCOMPARE(_desktop->keychain.items.size(), 3);

        _desktop->keychain.fail(Keychain::refused);
        account.auth->disconnect();
        _desktop->runLoop.advance(1);
        QVERIFY(!account.auth->isAuthorized() && account.auth->lastError().contains(u"next start"));
        _desktop->keychain.fail(Keychain::done);
        _desktop->runLoop.advance(1);
        QVERIFY(_desktop->keychain.items.isEmpty() && account.auth->lastError().isEmpty());
    }

private:
    void storeTokens(int secondsLeft)
    {
        const QString service = u"com.orvalen.pellar.spotify "_s;
        _desktop->keychain.items = {
            {service + u"access_token"_s, "fresh"},
            {service + u"refresh_token"_s, "stored"},
            {service + u"expires_at"_s, QByteArray::number(800'000'000 + secondsLeft)}};
    }

    std::unique_ptr<FakePlatform> _desktop;
    std::unique_ptr<HttpStandIn> _service;
    LogFile _log;
};

QTEST_GUILESS_MAIN(SpotifyTest)
#include "spotify_test.moc"
