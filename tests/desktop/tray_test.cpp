#include "linux/settings/PlistUserDefaults.h"
#include "support/Command.h"
#include "support/LoopbackServices.h"
#include "support/MprisStandIn.h"
#include "support/Program.h"

#include <QDBusMessage>
#include <QtTest>

namespace {

/// A desktop's tray, as far as programs notice it.
class Tray final : public BusStandIn
{
public:
    Tray() : BusStandIn(u"/StatusNotifierWatcher"_s)
    {
        set({{u"IsStatusNotifierHostRegistered"_s, true}});
        own(u"org.kde.StatusNotifierWatcher"_s);
    }

    QString introspect(const QString& /*path*/) const override
    {
        return u"<interface name=\"org.kde.StatusNotifierWatcher\">"
               "<property name=\"IsStatusNotifierHostRegistered\" type=\"b\" access=\"read\"/>"
               "</interface>"_s;
    }

    /// What the program answers that has put an icon here.
    QString ask(const QString& call) const
    {
        return run(u"dbus-send --print-reply --dest=%1 "_s.arg(item) + call);
    }
    QString toolTip() const
    {
        return ask(u"/StatusNotifierItem org.freedesktop.DBus.Properties.Get "
                   "string:org.kde.StatusNotifierItem string:ToolTip"_s);
    }
    QString menu() const
    {
        return ask(u"/MenuBar com.canonical.dbusmenu.GetLayout int32:0 int32:-1 array:string:"_s);
    }

    void tell(const QString& row, const char* event) const
    {
        ask(u"/MenuBar com.canonical.dbusmenu.Event int32:%1 string:%2 variant:int32:0 uint32:0"_s.arg(
            row, QString::fromLatin1(event)));
    }

    QString item; ///< the bus name of that program

protected:
    std::optional<QVariantList> perform(const QDBusMessage& registration) override
    {
        item = registration.service();
        return QVariantList();
    }
};

} // namespace

class TrayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// The menu as a panel takes it that asks for it only once.
    void tellsWhatPlays()
    {
        keepServicesToLoopback();
        Tray tray;
        const auto song = [](const QString& title, const QString& artist) {
            return MprisStandIn::playing(
                MprisStandIn::metadata(u"/t/"_s + title.front(), title, artist, QString(), 9));
        };
        PlistUserDefaults(PlistUserDefaults::defaultPath())
            .setObject(u"pellar.linux.musicPlayer"_s, u"chosen"_s);
        MprisStandIn other(u"standin"_s);
        other.set(song(u"Rock & Roll"_s, u"Band"_s));
        const Program program(QStringLiteral(PELLAR_PROGRAM));
        QTRY_VERIFY(!tray.item.isEmpty());
        QTRY_VERIFY(tray.toolTip().contains(u"string \"Not Playing — waiting for chosen\""));
        MprisStandIn player(u"chosen"_s);
        player.change(song(u"Rock & Roll"_s, u"Band"_s));
        QTRY_VERIFY(tray.toolTip().contains(u"string \"Rock & Roll — Band\""));
        const QString before = tray.menu();
        QVERIFY(before.contains(u"& Roll\"")); // the ampersand is a mnemonic's to Qt
        player.change(song(u"Blues"_s, u"Trio"_s));
        QString read;
        QTRY_VERIFY((read = tray.menu()).contains(u"\"Blues\""));
        QVERIFY(read.contains(u"\"Trio\"") && !read.contains(u"\"Band\""));

        // Nothing changes under the pointer.
        tray.ask(u"/MenuBar com.canonical.dbusmenu.AboutToShow int32:0"_s);
        player.change(song(u"Waltz"_s, u"Duo"_s));
        QTRY_VERIFY(tray.toolTip().contains(u"Waltz — Duo"));
        QVERIFY(tray.menu().contains(u"\"Blues\""));
        tray.tell(u"0"_s, "closed");
        QTRY_VERIFY(tray.menu().contains(u"\"Waltz\""));

        // The number of a row that the panel read two tracks ago.
        const QString aboveQuit = before.section(u"\"Quit Pellar\""_s, 0, 0);
        tray.tell(aboveQuit.section(u"int32 "_s, -1).section(u'\n', 0, 0), "clicked");
        QTRY_COMPARE(program.state(), QProcess::NotRunning);
        QCOMPARE(program.exitCode(), 0);
    }
};

QTEST_GUILESS_MAIN(TrayTest)
#include "tray_test.moc"
