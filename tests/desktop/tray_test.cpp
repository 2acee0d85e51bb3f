#include "TrayStandIn.h"
#include "linux/settings/PlistUserDefaults.h"
#include "support/LoopbackServices.h"
#include "support/MprisStandIn.h"
#include "support/Program.h"

#include <QtTest>

class TrayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// The menu as a panel takes it that asks for it only once.
    void tellsWhatPlays()
    {
        keepServicesToLoopback();
        TrayStandIn tray;
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
