#include "TrayStandIn.h"
#include "accounts/AppleMusicAuthManager.h"
#include "accounts/Resources.h"
#include "accounts/SpotifyAuthManager.h"
#include "audio/PlayerChoice.h"
#include "linux/LinuxPlatform.h"
#include "linux/settings/PlistUserDefaults.h"
#include "lyrics/LyricsService.h"
#include "support/HttpStandIn.h"
#include "support/LogFile.h"
#include "support/LoopbackServices.h"
#include "support/MprisStandIn.h"
#include "support/Program.h"

#include <QCryptographicHash>
#include <QDBusConnectionInterface>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>
#include <QUrlQuery>

using namespace Qt::Literals::StringLiterals;

namespace {

/// What stands for a secret, in this run only.
QByteArray secret(const char* name)
{
    return QByteArray(name) + '.' + QUuid::createUuid().toByteArray(QUuid::Id128);
}

QByteArray tokenReply(const QByteArray& accessToken, const QByteArray& more)
{
    return "{\"access_token\":\"" + accessToken + '"' + more + "}";
}

void write(const QString& path, const QByteArray& text)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
    file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
}

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// "?" when the keyring has no such item.
QString stored(const QString& service, const QString& account)
{
    return run(u"secret-tool lookup server com.orvalen.pellar.%1 user %2"_s.arg(service, account));
}

QString windowNamed(const QString& name)
{
    return run(u"xdotool search --onlyvisible --name "_s + name);
}

/// Chromium, with what has it run as root and keeps it from looking for its makers' servers.
void makeDefaultBrowser()
{
    const QString home = qEnvironmentVariable("HOME");
    const QString browser = home + u"/browser"_s;
    write(browser, "#!/bin/sh\nexec chromium --no-sandbox --disable-gpu --no-first-run --disable-sync "
                   "--disable-background-networking --disable-component-update --user-data-dir=" +
                       home.toUtf8() + "/profile \"$@\" >/dev/null 2>&1\n");
    write(qEnvironmentVariable("XDG_DATA_HOME") + u"/applications/browser.desktop"_s,
          "[Desktop Entry]\nType=Application\nName=Browser\nExec=" + browser.toUtf8() + " %u\n");
    write(qEnvironmentVariable("XDG_CONFIG_HOME") + u"/mimeapps.list"_s,
          "[Default Applications]\nx-scheme-handler/http=browser.desktop\n");
}

} // namespace

/// The accounts with a real keyring, a real browser and the real sign-in window. The services are the test's.
class AccountsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        keepServicesToLoopback();
        makeDefaultBrowser();
        const QString resources = qEnvironmentVariable("XDG_DATA_HOME") + u"/pellar"_s;
        QVERIFY(QDir().mkpath(resources));
        QVERIFY(QFile::copy(QStringLiteral(PELLAR_SOURCE_DIR "/src/resources/musickit-auth.html"),
                            resources + u"/musickit-auth.html"_s));
        // Left to itself the bus would start a keyring whenever there is none, and a window that asks for its
        // password.
        for (const QByteArray name : {"org.freedesktop.secrets", "org.gnome.keyring.SystemPrompter"}) {
            write(qEnvironmentVariable("XDG_DATA_HOME") + u"/dbus-1/services/"_s + QLatin1String(name) +
                      u".service"_s,
                  "[D-BUS Service]\nName=" + name + "\nExec=/bin/false\n");
        }
        QDBusConnection::sessionBus().interface()->call(u"ReloadConfig"_s);
        startKeyring();
        QVERIFY(QDir::setCurrent(_folder.path()));
        run(u"openssl genpkey -algorithm EC -pkeyopt ec_paramgen_curve:P-256 -out Pellar_MusicKit.p8"_s);
    }

    void connectsSpotify()
    {
        HttpStandIn service;
        const QByteArray code = secret("code");
        const QByteArray accessToken = secret("access");
        const QByteArray refreshToken = secret("refresh");
        const QByteArray newToken = secret("new");
        service.answer("/authorize",
                       {.status = 302,
                        .headers = {"Location: http://127.0.0.1:7421/pellar-spotify-callback?code=" + code}});
        service.answer("/api/token",
                       {.body = tokenReply(accessToken,
                                           ",\"expires_in\":30,\"refresh_token\":\"" + refreshToken + '"')});
        service.answer(
            "/v1/me/player/queue",
            {.body = R"({"queue":[{"name":"Late Ferry","artists":[{"name":"Ines"},{"name":"Ola"}]}]})"});
        {
            PlistUserDefaults defaults(PlistUserDefaults::defaultPath());
            for (const auto* const name : {"spotifyAccounts", "spotifyWebApi"}) {
                defaults.setObject(u"com.orvalen.pellar.endpoint."_s + QLatin1String(name),
                                   service.address());
            }
        } // is written by now
        SpotifyAuthManager auth(
            {.runLoop = _ports.runLoop,
             .keychain = _ports.keychain,
             .workspace = _ports.workspace,
             .addresses = ServiceAddresses(PlistUserDefaults(PlistUserDefaults::defaultPath())),
             .clientId = SpotifyAuthManager::builtInClientId()});
        auth.startAuthorization();
        QTRY_VERIFY_WITH_TIMEOUT(auth.isAuthorized(), 30'000);
        QTRY_VERIFY(windowNamed(u"^Pellar.*Chromium"_s) != u"?");
        const auto requests = service.take();
        const auto asked = std::find_if(requests.begin(), requests.end(),
                                        [](const auto& r) { return r.path == "/authorize"; });
        const QByteArray verifier =
            QUrlQuery(QString::fromUtf8(requests.last().body)).queryItemValue(u"code_verifier"_s).toUtf8();
        QCOMPARE(QUrlQuery(QString::fromUtf8(asked->query)).queryItemValue(u"code_challenge"_s).toLatin1(),
                 QCryptographicHash::hash(verifier, QCryptographicHash::Sha256)
                     .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
        QTRY_COMPARE(stored(u"spotify"_s, u"refresh_token"_s).toUtf8(), refreshToken);
        QTRY_COMPARE(stored(u"spotify"_s, u"access_token"_s).toUtf8(), accessToken);
        QTRY_VERIFY(stored(u"spotify"_s, u"expires_at"_s).toDouble() > 0);

        // The program starts and finds the account, whose token has run out all but.
        service.answer("/api/token", {.body = tokenReply(newToken, R"(,"expires_in":3600)")});
        TrayStandIn tray;
        MprisStandIn player(u"spotify"_s);
        player.set(
            MprisStandIn::playing(MprisStandIn::metadata(u"/t"_s, u"Now"_s, u"Ines"_s, QString(), 200)));
        Program program(QStringLiteral(PELLAR_PROGRAM));
        QTRY_VERIFY(!tray.item.isEmpty());
        QTRY_VERIFY(tray.menu().contains(u"\"Late Ferry — Ines, Ola\""));
        QCOMPARE(service.take().last().headers.value("authorization"), "Bearer " + newToken);
        QTRY_COMPARE(stored(u"spotify"_s, u"access_token"_s).toUtf8(), newToken);

        expectNowhere({code, verifier, accessToken, refreshToken, newToken},
                      program.readAllStandardError() + contents(u"/tmp/pellar_debug.log"_s));
        auth.disconnect();
        QTRY_COMPARE(run(u"secret-tool search --all server com.orvalen.pellar.spotify"_s), QString());
    }

    /// MusicKit of the test's own, in the real web view.
    void connectsAppleMusic_data()
    {
        QTest::addColumn<QByteArray>("authorize"); ///< what it does to get a token
        QTest::addColumn<QStringList>("log");
        const auto row = [](const char* name, const QByteArray& authorize, const QStringList& log) {
            QTest::newRow(name) << authorize << log;
        };
        const QString stored = u"MUT stored, len=%1"_s.arg(_userToken.size());
        row("token", "return 'TOKEN'", {stored});
        row("popup", "open('ADDRESS/popup'); return new Promise(ok => onmessage = event => ok(event.data))",
            {u"popup requested for http://127.0.0.1:"_s, stored, u"popup closed"_s});
        row("no port", "return 'TOKEN'", {u"no port available in 7423-7428"_s, stored});
        row("empty", "return ''", {u"auth error: empty user token"_s});
        row("error", "throw new Error('no subscription')", {u"auth error: no subscription"_s});
        row("console", "console.warn('got', {token: 'TOKEN'}); throw 'no'",
            {uR"(warn got {"token":"…"})"_s, u"auth error: no"_s});
        row("close", "document.title = 'waits'; return new Promise(() => {})",
            {u"parent window closed without auth result"_s, u"auth cancelled"_s});
    }
    void connectsAppleMusic()
    {
        QFETCH(const QByteArray, authorize);
        QFETCH(const QStringList, log);
        HttpStandIn musicKit;
        const auto filled = [&](QByteArray text) {
            return text.replace("TOKEN", _userToken).replace("ADDRESS", musicKit.address().toUtf8());
        };
        musicKit.answer(
            "/musickit/v3/musickit.js",
            {.body = filled("MusicKit = {configure: async () => { if (!PellarDeveloperToken) throw 0; }, "
                            "getInstance: () => ({authorize: async () => {" +
                            authorize + "}})}")});
        musicKit.answer("/popup",
                        {.body = filled("<script>opener.postMessage('TOKEN', '*'); close()</script>"),
                         .headers = {"Content-Type: text/html"}});
        // Without a port the page is loaded as a file, of which the program leaves the addresses as they are.
        const QString page = resourcePath(u"musickit-auth.html"_s).value();
        const QByteArray html = contents(page);
        const auto restore = qScopeGuard([&] { write(page, html); });
        std::array<QTcpServer, 6> others;
        if (log.constFirst().startsWith(u"no port")) {
            write(page,
                  QByteArray(html).replace("https://js-cdn.music.apple.com", musicKit.address().toUtf8()));
            for (quint16 i = 0; i < others.size(); ++i) {
                QVERIFY(others[i].listen(QHostAddress::LocalHost, AppleMusicAuthLoopback::firstPort + i));
            }
        }
        AppleMusicAuthManager auth(dependencies(musicKit.address()));
        PlistUserDefaults defaults(PlistUserDefaults::defaultPath());
        const LyricsService lyrics(_ports.runLoop, _ports.notifications, defaults, _ports.workspace, nullptr);
        _log.take();
        QString token;
        auth.reauthorize(this, [&token](const auto& value) { token = value.value_or(u"none"_s); });
        if (qstrcmp(QTest::currentDataTag(), "close") == 0) {
            QTRY_VERIFY_WITH_TIMEOUT(musicKit.requestCount() > 0, 20'000);
            run(u"xdotool search --sync --onlyvisible --name ^Connect.Apple windowfocus --sync key alt+F4"_s);
        }
        QTRY_VERIFY_WITH_TIMEOUT(!token.isEmpty(), 20'000);
        QStringList lines;
        for (const QString& line : log) {
            QTRY_VERIFY2((lines << _log.take()).join(u'\n').contains(line), qPrintable(line));
        }
        const bool isConnected = token.toUtf8() == _userToken;
        QCOMPARE(isConnected, log.join(u' ').contains(u"stored"));
        QCOMPARE(lines.contains(u"Lyrics: auth changed — flushing cache, refetching active"_s), isConnected);
        QTRY_COMPARE(stored(u"applemusic"_s, u"music-user-token"_s).toUtf8(), isConnected ? _userToken : "?");
        QTRY_COMPARE(windowNamed(u"Apple.Music"_s), u"?"_s);
        expectNowhere({_userToken, "eyJhbGciOiJFUzI1NiI"}, lines.join(u' ').toUtf8());
        auth.disconnect();
        QTRY_COMPARE(stored(u"applemusic"_s, u"music-user-token"_s), u"?"_s);
    }

    /// It is not unlocked at first: there is nothing that could ask the user.
    void removesWhatIsLocked()
    {
        const QString account = u"locked"_s;
        AccountSecrets secrets(_ports.keychain, u"com.orvalen.pellar.test"_s, {account});
        secrets.save({{account, u"word"_s}});
        QTRY_COMPARE(stored(u"test"_s, account), u"word"_s);
        run(u"dbus-send --session --print-reply --dest=org.freedesktop.secrets /org/freedesktop/secrets "
            "org.freedesktop.Secret.Service.Lock array:objpath:/org/freedesktop/secrets/collection/login"_s);
        const QSignalSpy failed(&secrets, &AccountSecrets::removalFailed);
        const QSignalSpy removed(&secrets, &AccountSecrets::removed);
        secrets.clear();
        QTRY_COMPARE_WITH_TIMEOUT(failed.size(), 1, 20'000);
        QVERIFY(!_ports.keychain.keepsSecrets());
        _keyring.kill();
        _keyring.waitForFinished();
        startKeyring(); // open again
        QTRY_COMPARE(removed.size(), 1);
        QCOMPARE(stored(u"test"_s, account), u"?"_s);
    }

    void outlivesItsKeyring()
    {
        const QString account = u"one"_s;
        AccountSecrets secrets(_ports.keychain, u"com.orvalen.pellar.test"_s, {account});
        secrets.save({{account, u"first"_s}});
        QTRY_COMPARE(stored(u"test"_s, account), u"first"_s);
        _keyring.kill();
        _keyring.waitForFinished();
        startKeyring(); // another one, which knows nothing of what was agreed with the first
        secrets.save({{account, u"second"_s}});
        QTRY_COMPARE(stored(u"test"_s, account), u"second"_s);

        _log.take();
        _keyring.kill();
        _keyring.waitForFinished();
        BusStandIn broken(u"/org/freedesktop/secrets"_s);
        broken.failures.insert(u"*"_s, u"org.freedesktop.DBus.Error.Failed"_s);
        QVERIFY(broken.own(u"org.freedesktop.secrets"_s));
        secrets.save({{account, u"third"_s}});
        QTRY_VERIFY(!_ports.keychain.keepsSecrets());
        QCOMPARE(secrets.value(account), u"third"_s);
        secrets.save({{account, u"fourth"_s}});
        const int failed = broken.failed;
        QTRY_VERIFY(broken.failed > failed);
        QCOMPARE(_log.take().size(), 1);
        broken.disown(u"org.freedesktop.secrets"_s);
        startKeyring();
        QVERIFY(QTest::qWaitFor([&account] { return stored(u"test"_s, account) == u"fourth"_s; }));
        QTRY_VERIFY(_ports.keychain.keepsSecrets());
    }

private:
    AppleMusicAuthManager::Dependencies dependencies(const QString& musicKit)
    {
        return {.window = {.runLoop = _ports.runLoop,
                           .appearance = _ports.appearance,
                           .musicKit = musicKit,
                           .program = QStringLiteral(PELLAR_COMPANION)},
                .keychain = _ports.keychain,
                .notifications = _ports.notifications,
                .credentials = AppleMusicCredentials(_ports.runLoop, u"TEAM"_s, u"KEY"_s)};
    }

    void startKeyring()
    {
        _keyring.start(u"gnome-keyring-daemon"_s,
                       {u"--foreground"_s, u"--replace"_s, u"--unlock"_s, u"--components=secrets"_s});
        _keyring.write("password");
        _keyring.closeWriteChannel();
        QDBusConnectionInterface* const bus = QDBusConnection::sessionBus().interface();
        QTRY_COMPARE(bus->servicePid(u"org.freedesktop.secrets"_s).value(), uint(_keyring.processId()));
    }

    /// Looks for secrets where other programs and people can read.
    static void expectNowhere(const QByteArrayList& secrets, const QByteArray& logs)
    {
        QByteArray found = logs + contents(PlistUserDefaults::defaultPath());
        for (const QString& process : QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs)) {
            found +=
                contents(u"/proc/%1/cmdline"_s.arg(process)) + contents(u"/proc/%1/environ"_s.arg(process));
        }
        QVERIFY(found.contains("pellar-desktop") && logs.size() > 100);
        for (const QByteArray& secret : secrets) {
            QVERIFY2(!found.contains(secret), secret.constData());
        }
    }

    QTemporaryDir _folder;
    Program _keyring;
    const QByteArray _userToken = secret("user");
    LogFile _log;
    PlistUserDefaults _defaults{_folder.filePath(u"settings"_s)};
    PlayerChoice _casting{_defaults};
    LinuxPlatform _linux{_casting};
    Platform& _ports = _linux.ports();
};

QTEST_MAIN(AccountsTest)
#include "accounts_test.moc"
