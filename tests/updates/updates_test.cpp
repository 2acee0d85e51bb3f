#include "support/FakePlatform.h"
#include "support/HttpStandIn.h"
#include "support/LogFile.h"
#include "support/MemoryDefaults.h"
#include "support/Windows.h"
#include "ui/QmlModules.h"
#include "ui/settings/UpdateWindowController.h"
#include "updates/UpdaterManager.h"
#include "updates/VersionComparison.h"

#include <QDesktopServices>
#include <QDir>
#include <QQuickWindow>
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

/// What the user has on the screen of an update.
QWindow* window()
{
    return Windows::named(u"Software Update"_s);
}

bool press(const QString& button)
{
    QAccessibleInterface* const found =
        window() != nullptr ? Windows::find(QAccessible::queryAccessibleInterface(window()), button)
                            : nullptr;
    if (found == nullptr || found->state().invisible) {
        return false;
    }
    found->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    return true;
}

} // namespace

/// Feeds and packages from a server of the test's own, and an installer that the desktop finds on its PATH.
class UpdatesTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
        importQmlModules();
    }

private Q_SLOTS:
    void initTestCase()
    {
        QGuiApplication::setQuitOnLastWindowClosed(false);
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

    void comparesVersions()
    {
        const QStringList ascending =
            u" 0.1 0.9 0.10 1 1.0.1 1.2 1.10.0 2.0a1 2.0b1 2.0b2 2.0b10 2.0rc 2.0-beta 2.0 "
            "2.0.1b3 2.0.1 10 99999999999999999999 100000000000000000000"_s.split(u' ');
        for (qsizetype i = 1; i < ascending.size(); ++i) {
            QVERIFY2(compareVersions(ascending[i - 1], ascending[i]) < 0, qPrintable(ascending[i]));
            QVERIFY2(compareVersions(ascending[i], ascending[i - 1]) > 0, qPrintable(ascending[i]));
        }
        for (const QString& same : {u"1.2"_s, u"1.2.0.0"_s, u"01.02"_s, u"1,2"_s}) {
            QVERIFY2(compareVersions(same, u"1.2"_s) == 0 && compareVersions(u"1.2"_s, same) == 0,
                     qPrintable(same));
        }
    }

    void offersAndInstalls()
    {
        put(item(u"1.5"_s) + item(u"2.0b3"_s) +
            item(u"3"_s, u"<sparkle:minimumSystemVersion>13.1</sparkle:minimumSystemVersion>"_s) +
            item(u"4"_s, u"<sparkle:channel>beta</sparkle:channel>"_s));
        const auto updater = start();
        const UpdateWindowController windows(_desktop, *updater);
        _platform.runLoop.advance(1.9);
        QVERIFY(_server->take().isEmpty());
        _platform.runLoop.advance(0.2);
        QTRY_COMPARE(updater->state(), State::offered);
        QCOMPARE(updater->version(), u"Pellar 2.0b3"_s);
        QCOMPARE(updater->notes(), u"New & better"_s);
        QVERIFY(press(u"Install"_s));
        QTRY_VERIFY(QFile::exists(installed()));
        QCOMPARE(updater->state(), State::handedOver);
        QCOMPARE(updater->progress(), 1.0);
        QFile file(installed());
        QVERIFY(file.open(QFile::ReadOnly));
        QCOMPARE(file.readAll(), _package);
        QVERIFY(press(u"OK"_s) && updater->state() == State::idle && window() == nullptr);
    }

    void putsOff()
    {
        put(item(u"2"_s));
        {
            const auto updater = start();
            const UpdateWindowController windows(_desktop, *updater);
            _platform.runLoop.advance(2);
            QTRY_COMPARE(updater->state(), State::offered);
            QVERIFY(press(u"Remind Me Later"_s));
            QVERIFY(updater->state() == State::idle && window() == nullptr);
        }
        const auto updater = start();
        const UpdateWindowController windows(_desktop, *updater);
        const auto isOffered = [&](double later) {
            _server->take();
            _platform.runLoop.advance(later);
            return QTest::qWaitFor([&] { return _server->requestCount() > 0; }) &&
                   QTest::qWaitFor([&] { return updater->state() == State::offered; }, 300);
        };
        QVERIFY(!isOffered(2));
        QVERIFY(isOffered(86'400));
        QVERIFY(press(u"Skip This Version"_s));
        QVERIFY(!isOffered(86'400) && window() == nullptr);
        updater->checkForUpdates(); // the user wants to know
        QTRY_COMPARE(updater->state(), State::offered);
        QVERIFY(press(u"Skip This Version"_s));
        put(item(u"2.1"_s));
        QVERIFY(isOffered(86'400));
    }

    void refuses_data()
    {
        QTest::addColumn<QString>("feed");
        QTest::addColumn<QString>("why"); // none when nothing newer is found
        const auto row = [](const char* name, const QString& feed, const char* why) {
            QTest::newRow(name) << feed << QString::fromLatin1(why);
        };
        const QString two = item(u"2"_s);
        const auto with = [&two](const QString& before, const QString& after) {
            return QString(two).replace(QRegularExpression(before), after);
        };
        row("no signature", with(u"sparkle:edSignature='[^']*'"_s, {}), "no signature");
        row("broken signature", with(u"edSignature='..."_s, u"edSignature='!!"_s), "no signature");
        row("wrong signature", with(u"edSignature='..."_s, u"edSignature='AAA"_s), "signature is wrong");
        row("no length", with(u"length"_s, u"size"_s), "length cannot be");
        row("shorter", with(u"100000"_s, u"99999"_s), "more than 99999 bytes");
        row("longer", with(u"100000"_s, u"100001"_s), "100000 bytes in place of 100001");
        row("cut off", with(u"pellar_2.deb"_s, u"cut.deb"_s), "closed");
        row("not there", with(u"pellar_2.deb"_s, u"none.deb"_s), "404");
        row("redirected", with(u"pellar_2.deb"_s, u"moved.deb"_s), "redirected to http://example.org");
        row("in the open", with(u"http://127.0.0.1:\\d+"_s, u"http://example.org"_s), "in the open");
        row("older", item(u"0.9"_s), "");
        row("for others", item(u"2"_s, u"<sparkle:minimumSystemVersion>99</sparkle:minimumSystemVersion>"_s),
            "");
        row("broken feed", u"<item>"_s, "cannot be read");
    }

    void refuses()
    {
        QFETCH(const QString, feed);
        QFETCH(const QString, why);
        put(QString(feed).replace(QRegularExpression(u"127.0.0.1:\\d+"_s), _server->address().mid(7)));
        _server->answer("/cut.deb", {.body = _package, .manner = Manner::cutOff});
        _server->answer("/moved.deb", {.status = 302, .headers = {"Location: http://example.org/2.deb"}});
        const auto updater = start();
        _log.take();
        updater->checkForUpdates();
        QTRY_VERIFY(updater->state() != State::checking);
        updater->install();
        QTRY_COMPARE(updater->state(), why.isEmpty() ? State::upToDate : State::failed);
        QVERIFY2(updater->message().contains(why), qPrintable(updater->message()));
        QCOMPARE(_log.take().size(), 1);
        QVERIFY(!QDir(packages()).exists() && !QFile::exists(installed()));
    }

    void cancels()
    {
        put(item(u"2"_s));
        _server->answer("/pellar_2.deb", {.body = _package, .manner = Manner::held});
        const auto updater = start();
        const UpdateWindowController windows(_desktop, *updater);
        updater->checkForUpdates();
        QTRY_COMPARE(updater->state(), State::offered);
        QVERIFY(press(u"Install"_s));
        QTRY_VERIFY(_server->wasAsked("/pellar_2.deb"));
        QVERIFY(QDir(packages()).exists());
        QWindow other;
        other.show();
        other.requestActivate();
        QTRY_COMPARE(QGuiApplication::focusWindow(), &other);
        updater->checkForUpdates(); // which shows how far it is
        QTRY_COMPARE(QGuiApplication::focusWindow(), window());
        QVERIFY(press(u"Cancel"_s) && window() == nullptr);
        QCOMPARE(updater->state(), State::idle);
        QVERIFY(!QDir(packages()).exists());
        QTRY_COMPARE(_server->connectionCount(), 1); // the feed's, which waits for more
    }

    void buildsWithoutUpdates()
    {
        for (const auto& [feed, key] : {std::pair(QString(), _maker.publicKey()),
                                        std::pair(u"http://example.org/feed"_s, _maker.publicKey()),
                                        std::pair(u"https://example.org/feed"_s, QByteArray("short"))}) {
            UpdaterManager updater({_defaults, _platform.runLoop, _workspace}, {feed, key, u"1"_s, {}, {}});
            updater.checkForUpdates();
            QVERIFY(!updater.isAvailable() && updater.state() == State::failed);
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
    const ProgramWindow::Desktop _desktop{.defaults = _defaults, .appearance = _platform.appearance};
    OpeningWorkspace _workspace;
    const QByteArray _package = QByteArray("a package of 100,000 bytes").leftJustified(100'000, '.');
    const QString _signature = QString::fromLatin1(_maker.signature(_package));
    std::unique_ptr<HttpStandIn> _server;
};

QTEST_MAIN(UpdatesTest)
#include "updates_test.moc"
