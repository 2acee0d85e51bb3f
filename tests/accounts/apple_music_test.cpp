#include "accounts/AppleMusicAuthManager.h"
#include "accounts/AppleMusicJWT.h"
#include "support/Command.h"
#include "support/FakePlatform.h"
#include "support/LogFile.h"

#include <QFile>
#include <QStandardPaths>
#include <QTcpSocket>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Reads a token with a library that has nothing to do with ours, and prints its header and claims.
const QString reader = uR"(
import json, jwt, sys
from cryptography.hazmat.primitives import serialization as s
unheeded = {'verify_exp': False, 'verify_iat': False} # the clock of the test stands
key = s.load_pem_private_key(open(sys.argv[1], 'rb').read(), None).public_key()
claims = jwt.decode(sys.argv[2], key, algorithms=['ES256'], options=unheeded)
print(json.dumps([jwt.get_unverified_header(sys.argv[2]), claims]))
)"_s;

void write(const QString& path, const QByteArray& text)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

} // namespace

class AppleMusicTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// The program's resources, of which the key is one, are in a folder of the test's own.
    void initTestCase()
    {
        qputenv("XDG_DATA_HOME", _folder.path().toUtf8());
        QVERIFY(QDir(_folder.path()).mkdir(u"pellar"_s));
        QVERIFY(QFile::copy(QStringLiteral(PELLAR_SOURCE_DIR "/src/resources/musickit-auth.html"),
                            _folder.filePath(u"pellar/musickit-auth.html"_s)));
        run(u"openssl genpkey -algorithm EC -pkeyopt ec_paramgen_curve:P-256 -out "_s + _key);
        QVERIFY(QFile::exists(_key));
    }

    void signsTokens()
    {
        AppleMusicCredentials credentials(_runLoop, u"TEAM567890"_s, u"KEY4567890"_s);
        const auto token = credentials.developerToken();
        QVERIFY(token);
        QVERIFY(!token->contains(u'+') && !token->contains(u'/') && !token->contains(u'='));
        QCOMPARE(credentials.developerToken(), token);
        QCOMPARE(_log.take(), {u"dev token minted, len=%1"_s.arg(token->size())});
        QCOMPARE(output(u"/usr/bin/python3"_s, {u"-c"_s, reader, _key, *token}),
                 uR"([{"alg": "ES256", "kid": "KEY4567890"}, )"
                 uR"({"exp": 1786083200, "iat": 1778307200, "iss": "TEAM567890"}])"_s);
        QVERIFY(output(u"/usr/bin/python3"_s, {u"-c"_s, reader, _key, *token + u'A'}) == u"?");
    }

    void saysWhyThereIsNoToken_data()
    {
        QTest::addColumn<QString>("keyID");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("log");
        QTest::newRow("build without") << u"REPLACE_WITH_KEY_ID"_s << _key << u"keyID not configured yet"_s;
        QTest::newRow("no file") << u"KEY"_s << QString() << u"could not load .p8"_s;
        const QString malformed = u"JWT signing failed: malformedP8"_s;
        QTest::newRow("no key") << u"KEY"_s << QStringLiteral(PELLAR_SOURCE_DIR "/LICENSE") << malformed;
        const QString other = _folder.filePath(u"other.pem"_s);
        run(u"openssl genpkey -algorithm EC -pkeyopt ec_paramgen_curve:P-384 -out "_s + other);
        QTest::newRow("other curve") << u"KEY"_s << other << malformed;
        const QString locked = _folder.filePath(u"locked.pem"_s);
        run(u"openssl pkcs8 -topk8 -passout pass:word -in %1 -out %2"_s.arg(_key, locked));
        QTest::newRow("password") << u"KEY"_s << locked << malformed;
    }
    void saysWhyThereIsNoToken()
    {
        QFETCH(const QString, keyID);
        QFETCH(const QString, key);
        const QByteArray home = qgetenv("XDG_DATA_HOME");
        const auto restore = qScopeGuard([&home] { qputenv("XDG_DATA_HOME", home); });
        const QTemporaryDir data;
        qputenv("XDG_DATA_HOME", data.path().toUtf8());
        QVERIFY(QDir(data.path()).mkdir(u"pellar"_s));
        QVERIFY(key.isEmpty() || QFile::copy(key, data.filePath(u"pellar/Pellar_MusicKit.p8"_s)));
        QVERIFY(!AppleMusicCredentials(_runLoop, u"TEAM"_s, keyID).developerToken());
        const QStringList log = _log.take();
        QCOMPARE(log.size(), 1);
        QTEST(log.constFirst(), "log");
    }

    /// A shell script in the place of the companion: what it does, and what becomes of that.
    void hearsItsCompanion_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QString>("token");
        QTest::addColumn<QString>("log");
        const auto row = [](const char* name, const QByteArray& script, const QString& log,
                            const QString& token = {}) { QTest::newRow(name) << script << token << log; };
        const auto says = [](const QByteArray& message) -> QByteArray {
            return "echo '" + message + "'\ncat >/dev/null";
        };
        const auto posts = [&says](const QByteArray& body) -> QByteArray {
            return says(R"({"event":"pellarAuth","body":)" + body + "}");
        };
        row("token", posts(R"({"type":"success","userToken":"user-token"})"), u"MUT stored, len=10"_s,
            u"user-token"_s);
        row("empty token", posts(R"({"type":"success","userToken":""})"), u"auth error: empty user token"_s);
        row("other token", posts(R"({"type":"success","userToken":7})"), u"auth error: empty user token"_s);
        row("error", posts(R"({"type":"error","message":"no"})"), u"auth error: no"_s);
        row("unknown error", posts(R"({"type":"error"})"), u"auth error: unknown"_s);
        row("cancelled", posts(R"({"type":"cancelled"})"), u"auth cancelled"_s);
        row("closed", says(R"({"event":"closed"})"), u"auth cancelled"_s);
        row("no page", says(R"({"event":"loadFailed","text":"net::ERR_FAILED"})"),
            u"auth error: page load failed: net::ERR_FAILED"_s);
        row("crash", "kill -SEGV $$", u"auth error: the sign-in window has crashed"_s);
        row("end", "echo no display >&2; exit 3", u"auth error: the sign-in window has ended with code 3"_s);
        row("garbage", "exec cat /dev/zero", u"auth error: the sign-in window sends too much"_s);
        row("silence", "cat >/dev/null", u"auth error: the sign-in window does not answer"_s);
        row("not installed", {},
            u"auth error: the sign-in window cannot be started: "_s + _folder.filePath(u"none"_s));
    }
    void hearsItsCompanion()
    {
        QFETCH(const QByteArray, script);
        QFETCH(const QString, token);
        QFETCH(const QString, log);
        const QString pid = _folder.filePath(u"pid"_s);
        const QString companion = _folder.filePath(script.isEmpty() ? u"none"_s : u"companion"_s);
        if (!script.isEmpty()) {
            write(companion, "#!/bin/sh\necho $$ >" + pid.toUtf8() + '\n' + script);
        }
        FakePlatform desktop;
        AppleMusicAuthManager manager(dependencies(desktop, companion));
        desktop.runLoop.settle();
        QStringList got;
        const auto take = [&got](const auto& value) { got << value.value_or(u"none"_s); };
        manager.ensureAuthorized(this, take);
        if (manager.isAuthorizing()) { // it has not failed at once
            manager.openAuthWindow(this, take);
            QCOMPARE(got.size(), 1); // one waits, the other does not
        }
        if (log.endsWith(u"answer")) {
            desktop.runLoop.advance(31);
        }
        QTRY_VERIFY(!manager.isAuthorizing());
        QCOMPARE(got.last(), token.isEmpty() ? u"none"_s : token);
        QStringList lines;
        QTRY_VERIFY((lines << _log.take()).contains(log));
        QCOMPARE(manager.isAuthorized(), !token.isEmpty());
        QVERIFY(!lines.join(u' ').contains(u"user-token"));
        desktop.runLoop.settle();
        QCOMPARE(desktop.keychain.items.value(u"com.orvalen.pellar.applemusic music-user-token"_s),
                 token.toUtf8());
        manager.disconnect();
        desktop.runLoop.settle();
        QVERIFY(desktop.keychain.items.isEmpty() && !manager.isAuthorized());
        QTRY_VERIFY(script.isEmpty() || !QFile::exists(u"/proc/"_s + run(u"cat "_s + pid)));
    }

    void servesItsPage()
    {
        AppleMusicAuthLoopback first(_runLoop);
        AppleMusicAuthLoopback second(_runLoop);
        QCOMPARE(first.start(u"♫"_s), std::optional<quint16>(7423));
        QCOMPARE(second.start(u"♫"_s), std::optional<quint16>(7424));
        QTcpSocket browser;
        browser.connectToHost(QHostAddress::LocalHost, 7424);
        browser.write("GET /whatever HTTP/1.1\r\n\r\n");
        QTRY_COMPARE(browser.state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(browser.readAll(),
                 "HTTP/1.1 200 OK\r\nContent-Type: text/html; charset=utf-8\r\nContent-Length: 3\r\n"
                 "Cache-Control: no-store\r\nConnection: close\r\n\r\n♫");
    }

    void keepsSecretsOutOfTheLog_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("logged");
        const QString token = QString(20, u'A') + u"/+b=." + QString(20, u'9');
        QTest::newRow("prose") << u"Nothing, that is: 42"_s << u"Nothing, that is: 42"_s;
        QTest::newRow("token") << u"got "_s + token + u'!' << u"got …!"_s;
        QTest::newRow("JSON") << uR"({"t":"%1","n":1})"_s.arg(token) << uR"({"t":"…","n":1})"_s;
        QTest::newRow("address") << u"x @ f (https://music.apple.com/musickit/v3/musickit.js?t=a#b:2:9) y"_s
                                 << u"x @ f (https://music.apple.com/musickit/v3/musickit.js) y"_s;
    }
    void keepsSecretsOutOfTheLog()
    {
        QFETCH(const QString, text);
        QTEST(authResult({{u"type"_s, u"error"_s}, {u"message"_s, text}})->text, "logged");
    }

private:
    AppleMusicAuthManager::Dependencies dependencies(FakePlatform& desktop, const QString& companion)
    {
        return {.window = {.runLoop = desktop.runLoop,
                           .appearance = desktop.appearance,
                           .musicKit = u"http://127.0.0.1:1"_s,
                           .program = companion},
                .keychain = desktop.keychain,
                .notifications = desktop.notifications,
                .credentials = AppleMusicCredentials(_runLoop, u"TEAM"_s, u"KEY"_s)};
    }

    QTemporaryDir _folder;
    const QString _key = _folder.filePath(u"pellar/Pellar_MusicKit.p8"_s);
    ManualRunLoop _runLoop;
    LogFile _log;
};

QTEST_GUILESS_MAIN(AppleMusicTest)
#include "apple_music_test.moc"
