#include "support/FakePlatform.h"
#include "support/HttpStandIn.h"
#include "support/LogFile.h"
#include "support/MemoryDefaults.h"
#include "updates/UpdaterManager.h"
#include "updates/VersionComparison.h"

#include <QDesktopServices>
#include <QDir>
#include <QtTest>

#include <openssl/evp.h>

using namespace Qt::Literals::StringLiterals;
using State = UpdaterManager::State;
using Manner = HttpStandIn::Manner;

namespace {

/// The maker, who signs packages.
class Maker
{
public:
    QByteArray publicKey() const
    {
        QByteArray key(32, '\0');
        size_t length = 32;
        EVP_PKEY_get_raw_public_key(_key.get(), reinterpret_cast<unsigned char*>(key.data()), &length);
        return key;
    }
    QByteArray signature(const QByteArray& package) const
    {
        QByteArray signature(64, '\0');
        size_t length = 64;
        EVP_MD_CTX* const context = EVP_MD_CTX_new();
        EVP_DigestSignInit(context, nullptr, nullptr, nullptr, _key.get());
        EVP_DigestSign(context, reinterpret_cast<unsigned char*>(signature.data()), &length,
                       reinterpret_cast<const unsigned char*>(package.data()),
                       static_cast<size_t>(package.size()));
        EVP_MD_CTX_free(context);
        return signature.toBase64();
    }

private:
    std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> _key{EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"),
                                                             &EVP_PKEY_free};
};

/// Opens files with what the desktop has for them.
class OpeningWorkspace final : public FakeWorkspace
{
    bool open(const QUrl& url) override { return QDesktopServices::openUrl(url); }
};

} // namespace

/// Feeds and packages from a server of the test's own, and an installer that the desktop finds on its PATH.
class UpdatesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QFile opener(_folder.filePath(u"xdg-open"_s));
        QVERIFY(opener.open(QFile::WriteOnly));
        opener.write(
            "#!/bin/sh\ncp \"${1#file://}\" %1.new && mv %1.new %1\n"_ba.replace("%1", installed().toUtf8()));
        QVERIFY(opener.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
        qputenv("PATH", _folder.path().toUtf8() + ':' + qgetenv("PATH"));
    }

    void init()
    {
        _server = std::make_unique<HttpStandIn>();
        _defaults.values.clear();
        _server->answer("/pellar_2.deb", {.body = _package});
        QFile::remove(installed());
        QDir(packages()).removeRecursively();
        _log.take();
    }

    void comparesVersions_data()
    {
        QTest::addColumn<QStringList>("ascending");
        QTest::addColumn<bool>("areSame");
        const auto row = [](const char* name, const char* versions, bool areSame = false) {
            QTest::newRow(name) << QString::fromLatin1(versions).split(u' ') << areSame;
        };
        row("numbers", "0.9 0.10 1 1.0.1 1.2 1.10.0 10 99999999999999999999 100000000000000000000");
        row("before a release", "2.0a1 2.0b1 2.0b2 2.0b10 2.0rc 2.0-beta 2.0 2.0.1b3 2.0.1");
        row("zeros", "1 1.0 1.0.0 01.00", true);
        row("separators", "1.2 1,2 1_2", true);
        row("nothing", " 0.1");
    }

    void comparesVersions()
    {
        QFETCH(const QStringList, ascending);
        QFETCH(const bool, areSame);
        for (qsizetype i = 0; i < ascending.size(); ++i) {
            for (qsizetype j = 0; j < ascending.size(); ++j) {
                const int order = compareVersions(ascending[i], ascending[j]);
                const int sign = (order > 0) - (order < 0);
                const int wanted = areSame ? 0 : (i > j) - (i < j);
                QVERIFY2(sign == wanted, qUtf8Printable(ascending[i] + u' ' + ascending[j]));
            }
        }
    }

    void offersAndInstalls()
    {
        put(item(u"1.5"_s) + item(u"2.0b3"_s) +
            item(u"3"_s, u"<sparkle:minimumSystemVersion>13.1</sparkle:minimumSystemVersion>"_s) +
            item(u"4"_s, u"<sparkle:channel>beta</sparkle:channel>"_s));
        const auto updater = start();
        _platform.runLoop.advance(1.9);
        QVERIFY(_server->take().isEmpty());
        _platform.runLoop.advance(0.2);
        QTRY_COMPARE(updater->state(), State::offered);
        QCOMPARE(updater->version(), u"Pellar 2.0b3"_s);
        QCOMPARE(updater->notes(), u"New & better"_s);
        updater->install();
        QTRY_VERIFY(QFile::exists(installed()));
        QCOMPARE(updater->state(), State::handedOver);
        QCOMPARE(updater->progress(), 1.0);
        QFile file(installed());
        QVERIFY(file.open(QFile::ReadOnly));
        QCOMPARE(file.readAll(), _package);
    }

    void putsOff()
    {
        put(item(u"2"_s));
        {
            const auto updater = start();
            _platform.runLoop.advance(2);
            QTRY_COMPARE(updater->state(), State::offered);
            updater->remindLater();
            QCOMPARE(updater->state(), State::idle);
        }
        const auto updater = start();
        const auto isOffered = [&](double later) {
            _server->take();
            _platform.runLoop.advance(later);
            return QTest::qWaitFor([&] { return _server->requestCount() > 0; }) &&
                   QTest::qWaitFor([&] { return updater->state() == State::offered; }, 300);
        };
        QVERIFY(!isOffered(2));
        QVERIFY(isOffered(86'400));
        updater->skip();
        QVERIFY(!isOffered(86'400));
        updater->checkForUpdates(); // the user wants to know
        QTRY_COMPARE(updater->state(), State::offered);
        updater->skip();
        put(item(u"2.1"_s));
        QVERIFY(isOffered(86'400));
    }

    void refuses_data()
    {
        QTest::addColumn<QString>("feed");
        QTest::addColumn<State>("end"); // after the user has asked, and tried to install
        const auto row = [this](const char* name, const QString& feed, State end = State::failed) {
            QTest::newRow(name) << feed << end;
        };
        const QString two = item(u"2"_s);
        const auto with = [&two](const QString& before, const QString& after) {
            return QString(two).replace(QRegularExpression(before), after);
        };
        row("no signature", with(u"sparkle:edSignature='[^']*'"_s, {}));
        row("broken signature", with(u"edSignature='..."_s, u"edSignature='!!"_s));
        row("wrong signature", with(u"edSignature='..."_s, u"edSignature='AAA"_s));
        row("no length", with(u"length"_s, u"size"_s));
        row("shorter", with(u"100000"_s, u"99999"_s));
        row("longer", with(u"100000"_s, u"100001"_s));
        row("cut off", with(u"pellar_2.deb"_s, u"cut.deb"_s));
        row("not there", with(u"pellar_2.deb"_s, u"none.deb"_s));
        row("redirected into the open", with(u"pellar_2.deb"_s, u"moved.deb"_s));
        row("in the open", with(u"http://127.0.0.1:\\d+"_s, u"http://example.org"_s));
        row("a file", with(u"http://127.0.0.1:\\d+"_s, u"file:///"_s));
        row("older", item(u"0.9"_s), State::upToDate);
        row("the same", item(u"1.0.0"_s), State::upToDate);
        row("nothing that fits",
            with(u"<title>"_s, u"<sparkle:minimumSystemVersion>99</sparkle:minimumSystemVersion><title>"_s),
            State::upToDate);
        row("broken feed", u"<item>"_s);
        row("entities", u"<!DOCTYPE"_s);
    }

    void refuses()
    {
        QFETCH(const QString, feed);
        QFETCH(const State, end);
        put(QString(feed).replace(QRegularExpression(u"127.0.0.1:\\d+"_s), _server->address().mid(7)));
        if (feed.startsWith(u"<!")) {
            _server->answer("/feed", {.body = "<!DOCTYPE rss [<!ENTITY a \"b\">]><rss><channel/></rss>"});
        }
        _server->answer("/cut.deb", {.body = _package, .manner = Manner::cutOff});
        _server->answer("/moved.deb", {.status = 302, .headers = {"Location: http://example.org/2.deb"}});
        const auto updater = start();
        _log.take();
        updater->checkForUpdates();
        QTRY_VERIFY(updater->state() != State::checking);
        updater->install();
        QTRY_COMPARE(updater->state(), end);
        QCOMPARE(updater->message().isEmpty(), end == State::upToDate);
        QCOMPARE(_log.take().size(), QByteArray(QTest::currentDataTag()) == "the same" ? 0 : 1);
        QVERIFY(!QDir(packages()).exists() && !QFile::exists(installed()));
    }

    void cancels()
    {
        put(item(u"2"_s));
        _server->answer("/pellar_2.deb", {.body = _package, .manner = Manner::held});
        const auto updater = start();
        updater->checkForUpdates();
        QTRY_COMPARE(updater->state(), State::offered);
        updater->install();
        QTRY_VERIFY(_server->wasAsked("/pellar_2.deb"));
        QVERIFY(QDir(packages()).exists());
        updater->cancel();
        QCOMPARE(updater->state(), State::idle);
        QVERIFY(!QDir(packages()).exists());
        QTRY_COMPARE(_server->connectionCount(), 1); // the feed's, which waits for more
    }

    void buildsWithoutUpdates()
    {
        for (const auto& [feed, key] : {std::pair(QString(), _maker.publicKey()),
                                        std::pair(u"http://example.org/feed"_s, _maker.publicKey()),
                                        std::pair(u"https://example.org/feed"_s, QByteArray("short"))}) {
            UpdaterManager updater({_defaults, _platform.runLoop, _workspace}, {.feed = feed,
                                                                                .publicKey = key,
                                                                                .version = u"1"_s,
                                                                                .systemVersion = {},
                                                                                .folder = packages()});
            QVERIFY(!updater.isAvailable());
            QCOMPARE(_log.take().size(), 1);
            updater.checkForUpdates();
            QCOMPARE(updater.state(), State::failed);
        }
    }

private:
    QString installed() const { return _folder.filePath(u"installed"_s); }
    QString packages() const { return _folder.filePath(u"packages"_s); }

    /// An item of the feed, whose package is signed.
    QString item(const QString& version, const QString& more = {}) const
    {
        return QStringLiteral(
                   "<item><title>x</title><description>&lt;p&gt;New &amp;amp; better</description>%3"
                   "<enclosure url='http://127.0.0.1:1/pellar_2.deb' sparkle:version='%1' length='100000'"
                   " sparkle:shortVersionString='Pellar %1' sparkle:edSignature='%2'/></item>")
            .arg(version, _signature, more);
    }

    void put(const QString& items)
    {
        const QString text = QString(items).replace(u"127.0.0.1:1/"_s, _server->address().mid(7) + u'/');
        _server->answer("/feed", {.body = "<rss version='2.0' xmlns:sparkle="
                                          "'http://www.andymatuschak.org/xml-namespaces/sparkle'><channel>" +
                                          text.toUtf8() + "</channel></rss>"});
    }

    std::unique_ptr<UpdaterManager> start()
    {
        return std::make_unique<UpdaterManager>(
            UpdaterManager::Dependencies{_defaults, _platform.runLoop, _workspace},
            UpdaterManager::Build{.feed = _server->address() + u"/feed",
                                  .publicKey = _maker.publicKey(),
                                  .version = u"1.0"_s,
                                  .systemVersion = u"12.4"_s,
                                  .folder = packages()});
    }

    QTemporaryDir _folder;
    LogFile _log;
    Maker _maker;
    MemoryDefaults _defaults;
    FakePlatform _platform;
    OpeningWorkspace _workspace;
    const QByteArray _package = QByteArray("a package of 100,000 bytes").leftJustified(100'000, '.');
    const QString _signature = QString::fromLatin1(_maker.signature(_package));
    std::unique_ptr<HttpStandIn> _server;
};

QTEST_MAIN(UpdatesTest)
#include "updates_test.moc"
