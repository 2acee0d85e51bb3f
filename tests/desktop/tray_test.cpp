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
    const QString settings = PlistUserDefaults::defaultPath();
    PlistUserDefaults(settings).setObject(QStringLiteral("pellar.linux.musicPlayer"),
                                          QStringLiteral("chosen"));
    MprisStandIn other(QStringLiteral("standin"));
    other.set(MprisStandIn::playing(MprisStandIn::metadata(
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
    QTRY_COMPARE(toolTip(), QStringLiteral("Not Playing — waiting for chosen"));
    MprisStandIn player(QStringLiteral("chosen"));
    player.change(MprisStandIn::playing(MprisStandIn::metadata(
        QStringLiteral("/t/1"), QStringLiteral("Rock & Roll"), QStringLiteral("Band"), QString(), 9)));
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
    QVERIFY(menu().contains(QStringLiteral("Roll\""))); // the ampersand is a mnemonic's to Qt
    player.change(
        {{QStringLiteral("Metadata"), MprisStandIn::metadata(QStringLiteral("/t/2"), QStringLiteral("Blues"),
                                                             QStringLiteral("Band"), QString(), 9)}});
    QTRY_VERIFY(menu().contains(QStringLiteral("\"Blues\"")));
    const QString aboveQuit = menu().section(QStringLiteral("\"Quit Pellar\""), 0, 0);
    const QString id = aboveQuit.section(QStringLiteral("int32 "), -1).section(u'\n', 0, 0);
    ask({QStringLiteral("com.canonical.dbusmenu.Event"), u"int32:" + id, QStringLiteral("string:clicked"),
         QStringLiteral("variant:int32:0"), QStringLiteral("uint32:0")});
    QTRY_COMPARE(program.state(), QProcess::NotRunning);
    QCOMPARE(program.exitCode(), 0);
}

QTEST_GUILESS_MAIN(TrayTest)
#include "tray_test.moc"
