#include "support/Command.h"
#include "support/LoopbackServices.h"
#include "support/MprisStandIn.h"

#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QProcess>
#include <QTest>

namespace {

/// A desktop's tray, as far as programs notice it.
class Tray final : public BusStandIn
{
public:
    Tray() : BusStandIn(QStringLiteral("/StatusNotifierWatcher"))
    {
        set({{QStringLiteral("IsStatusNotifierHostRegistered"), true}});
        own(QStringLiteral("org.kde.StatusNotifierWatcher"));
    }

    QString introspect(const QString& /*path*/) const override
    {
        return QStringLiteral("<interface name=\"org.kde.StatusNotifierWatcher\">"
                              "<property name=\"IsStatusNotifierHostRegistered\" type=\"b\" access=\"read\"/>"
                              "</interface>");
    }

    QString item; ///< the bus name of the program that has put an icon here

protected:
    std::optional<QVariantList> perform(const QDBusMessage& call) override
    {
        if (call.member() == QStringLiteral("RegisterStatusNotifierItem")) {
            item = call.service();
        }
        return QVariantList();
    }
};

} // namespace

class TrayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhatPlays();
};

void TrayTest::tellsWhatPlays()
{
    keepServicesToLoopback();
    Tray tray;
    MprisStandIn player(QStringLiteral("standin"));
    player.set(MprisStandIn::playing(MprisStandIn::metadata(
        QStringLiteral("/t/1"), QStringLiteral("Rock & Roll"), QStringLiteral("Band"), QString(), 9)));
    QProcess program;
    const auto end = qScopeGuard([&program] {
        program.terminate();
        program.waitForFinished();
    });
    program.start(QStringLiteral(PELLAR_PROGRAM), QStringList());
    QTRY_VERIFY(!tray.item.isEmpty());
    const auto toolTip = [&tray] {
        QDBusMessage ask = QDBusMessage::createMethodCall(tray.item, QStringLiteral("/StatusNotifierItem"),
                                                          QStringLiteral("org.freedesktop.DBus.Properties"),
                                                          QStringLiteral("Get"));
        ask.setArguments({QStringLiteral("org.kde.StatusNotifierItem"), QStringLiteral("ToolTip")});
        const QDBusMessage reply = QDBusConnection::sessionBus().call(ask, QDBus::BlockWithGui, 2000);
        const auto argument =
            reply.arguments().value(0).value<QDBusVariant>().variant().value<QDBusArgument>();
        QString icon;
        QString title;
        QString description;
        argument.beginStructure();
        argument >> icon;
        argument.asVariant(); // the pictures
        argument >> title >> description;
        argument.endStructure();
        return title;
    };
    QTRY_COMPARE(toolTip(), QStringLiteral("Rock & Roll — Band"));

    // The menu as a panel takes it that asks for it only once, and a row of it chosen there.
    const auto ask = [&tray](const QStringList& words) {
        return output(
            QStringLiteral("dbus-send"),
            QStringList{QStringLiteral("--print-reply"), u"--dest=" + tray.item, QStringLiteral("/MenuBar")} +
                words);
    };
    const auto menu = [&ask] {
        return ask({QStringLiteral("com.canonical.dbusmenu.GetLayout"), QStringLiteral("int32:0"),
                    QStringLiteral("int32:-1"), QStringLiteral("array:string:")});
    };
    const auto tell = [&ask](const QString& id, const QString& event) {
        ask({QStringLiteral("com.canonical.dbusmenu.Event"), u"int32:" + id, u"string:" + event,
             QStringLiteral("variant:int32:0"), QStringLiteral("uint32:0")});
    };
    const auto play = [&player](const QString& title, const QString& artist) {
        player.change({{QStringLiteral("Metadata"),
                        MprisStandIn::metadata(u"/t/" + title, title, artist, QString(), 9)}});
    };
    const QString before = menu();
    QVERIFY(before.contains(QStringLiteral("Roll\""))); // the ampersand is a mnemonic's to Qt
    play(QStringLiteral("Blues"), QStringLiteral("Trio"));
    QString read;
    QTRY_VERIFY((read = menu()).contains(QStringLiteral("\"Blues\"")));
    QVERIFY(read.contains(QStringLiteral("\"Trio\"")) && !read.contains(QStringLiteral("\"Band\"")));

    // Nothing changes under the pointer.
    ask({QStringLiteral("com.canonical.dbusmenu.AboutToShow"), QStringLiteral("int32:0")});
    play(QStringLiteral("Waltz"), QStringLiteral("Duo"));
    QTRY_COMPARE(toolTip(), QStringLiteral("Waltz — Duo"));
    QVERIFY(menu().contains(QStringLiteral("\"Blues\"")));
    tell(QStringLiteral("0"), QStringLiteral("closed"));
    QTRY_VERIFY(menu().contains(QStringLiteral("\"Waltz\"")));

    // The number of a row that the panel read two tracks ago.
    const QString aboveQuit = before.section(QStringLiteral("\"Quit Pellar\""), 0, 0);
    tell(aboveQuit.section(QStringLiteral("int32 "), -1).section(u'\n', 0, 0), QStringLiteral("clicked"));
    QTRY_COMPARE(program.state(), QProcess::NotRunning);
    QCOMPARE(program.exitCode(), 0);
}

QTEST_GUILESS_MAIN(TrayTest)
#include "tray_test.moc"
