#include "linux/settings/PlistUserDefaults.h"
#include "prefs/PowerModeManager.h"
#include "support/FakePlatform.h"
#include "support/LoopbackServices.h"
#include "support/Program.h"
#include "support/RealPlayer.h"
#include "ui/pill/PillLayout.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QRasterWindow>
#include <QScreen>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

namespace {

constexpr QSize pillSize(185, 28);

class Cover final : public QRasterWindow
{
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter(this).fillRect(0, 0, width(), height(), Qt::red);
    }
};

QString xdotool(const QString& words)
{
    return run(u"xdotool "_s + words);
}

} // namespace

/// The built program in a real session: what is on the screen, and what its clicks do to a real player.
class DesktopTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        keepServicesToLoopback();
        {
            PlistUserDefaults defaults(PlistUserDefaults::defaultPath());
            FakePower power;
            const auto poll = [](PowerModeSettings& mode) { mode.driftRefreshSeconds = 1; };
            PowerModeManager(defaults, power).updateSettings(PowerMode::normal, poll);
        } // is written by now
        QVERIFY(startProgram());
        _idle = pillPicture();
        QVERIFY2(_idle != QImage(_idle.size(), _idle.format()), "nothing is drawn");
    }

    void cleanupTestCase()
    {
        _program.terminate();
        _program.waitForFinished();
    }

    /// Every test begins with a player that plays, on show.
    void init()
    {
        QVERIFY(_program.state() == QProcess::Running || startProgram());
        QVERIFY(_mpv.isRunning() || _mpv.start());
        RealPlayer::tell(u"play"_s);
        QTRY_COMPARE(RealPlayer::status(), u"Playing"_s);
        QTRY_VERIFY(!isIdle(_layout.title) && !isIdle(_layout.playButton));
    }

    void answersWithoutADisplay()
    {
        const auto said = [this](const QString& option, int code, bool isAlone) -> QByteArray {
            const QString run = isAlone ? _elsewhere.path() : qEnvironmentVariable("XDG_RUNTIME_DIR");
            Program other(u"env"_s, {u"-u"_s, u"DISPLAY"_s, u"XDG_RUNTIME_DIR="_s + run,
                                     QStringLiteral(PELLAR_PROGRAM), option});
            const bool hasEnded = other.waitForFinished(10000) && other.exitCode() == code;
            return hasEnded ? QByteArray(other.readAllStandardOutput() + other.readAllStandardError())
                            : QByteArray("?");
        };
        QVERIFY(said(u"--help"_s, 0, false).startsWith("pellar "));
        QVERIFY(said(u"--version"_s, 0, false).startsWith("Pellar "));
        QVERIFY(said(u"--pause"_s, 2, false).contains("--pause"));
        QCOMPARE(said(u"--next"_s, 1, true), "Pellar needs a display to be shown on, and there is none.\n");
        QCOMPARE(said(u"--quit"_s, 0, true), "");
    }

    void obeysOtherStarts()
    {
        const auto start = [](const QString& option) {
            return run(u"env -u DISPLAY " PELLAR_PROGRAM " "_s + option).isEmpty();
        };
        QVERIFY(start(u"--play-pause"_s));
        QTRY_COMPARE(RealPlayer::status(), u"Paused"_s);
        QVERIFY(start(u"--play-pause"_s));
        QTRY_COMPARE(RealPlayer::status(), u"Playing"_s);
        const QString title = RealPlayer::metadata(u"title"_s);
        auto call = QDBusMessage::createMethodCall(u"com.orvalen.pellar"_s, u"/com/orvalen/pellar"_s,
                                                   u"org.freedesktop.Application"_s, u"ActivateAction"_s);
        call << u"next"_s << QVariantList() << QVariantMap();
        QCOMPARE(QDBusConnection::sessionBus().call(call).type(), QDBusMessage::ReplyMessage);
        QTRY_VERIFY(RealPlayer::metadata(u"title"_s) != title);
    }

    void showsItselfWhereItIsCovered()
    {
        const QPoint place = pill().center();
        const auto isShown = [&] {
            return _screen->grabWindow(0).toImage().pixelColor(place) != QColor(Qt::red);
        };
        QVERIFY(isShown());
        Cover cover;
        cover.showFullScreen();
        QTRY_VERIFY(!isShown());
        QCOMPARE(run(QStringLiteral(PELLAR_PROGRAM)), QString());
        QTRY_VERIFY(isShown());
        QTRY_VERIFY_WITH_TIMEOUT(!isShown(), 6000); // the window is still there, and in front again
    }

    void obeysClicks()
    {
        const QImage playing = part(_layout.playButton);
        click(_layout.playButton);
        QTRY_COMPARE(RealPlayer::status(), u"Paused"_s);
        QTRY_VERIFY(isIdle(_layout.playButton));
        click(_layout.playButton);
        QTRY_COMPARE(RealPlayer::status(), u"Playing"_s);
        QTRY_COMPARE(part(_layout.playButton), playing);
        const QString title = RealPlayer::metadata(u"title"_s);
        const QImage shown = part(_layout.title);
        click(_layout.nextButton);
        QTRY_VERIFY(RealPlayer::metadata(u"title"_s) != title);
        QTRY_VERIFY(part(_layout.title) != shown && !isIdle(_layout.progress));
        click(_layout.previousButton);
        QTRY_COMPARE(RealPlayer::metadata(u"title"_s), title);
        const double length = RealPlayer::metadata(u"mpris:length"_s).toDouble() / 1e6;
        click(_layout.progress);
        QTRY_VERIFY(RealPlayer::position() >= length / 2 - 1);
    }

    /// What the player does after the last press shows which of those before it were commands. All the while
    /// another program is in front, and keeps the keyboard.
    void tellsPressesApart()
    {
        const Program other(u"xmessage"_s, {u"In front"_s});
        const QString front = xdotool(u"search --sync --onlyvisible --class xmessage"_s);
        QTRY_COMPARE(xdotool(u"getwindowfocus -f"_s), front);
        RealPlayer::tell(u"pause"_s);
        QTRY_VERIFY(isIdle(_layout.playButton));
        click(_layout.title);
        const QString hold = u"mousedown 1 sleep 0.6 mouseup 1 mousemove 5 500"_s; // a long press
        const auto isPreviewOpen = [] {
            return xdotool(u"search --onlyvisible --name ^Pellar.Preview$"_s) != u"?";
        };
        pointAt(_layout.title, hold);
        QTRY_VERIFY(isPreviewOpen());
        xdotool(u"key Escape"_s);
        QTRY_VERIFY(!isPreviewOpen());
        const QString title = RealPlayer::metadata(u"title"_s);
        click(_layout.playButton);
        QTRY_COMPARE(RealPlayer::status(), u"Playing"_s);
        pointAt(_layout.playButton, hold);
        QTRY_COMPARE(RealPlayer::status(), u"Paused"_s);
        QCOMPARE(RealPlayer::metadata(u"title"_s), title);
        QTRY_COMPARE(xdotool(u"getwindowfocus -f"_s), front);
    }

    void survivesStoppedPlayer()
    {
        const auto goOn = qScopeGuard([this] { _mpv.send(SIGCONT); });
        _mpv.send(SIGSTOP);
        // It still redraws, while it wants to know three times how the player is: the button under the
        // pointer lights up.
        QElapsedTimer stopped;
        stopped.start();
        const auto isLit = [this] { return part(_layout.playButton).pixelColor(0, 8).lightness() < 240; };
        while (stopped.elapsed() < 3500) {
            xdotool(u"mousemove 5 500"_s);
            QTRY_VERIFY_WITH_TIMEOUT(!isLit(), 1000);
            pointAt(_layout.playButton, QString());
            QTRY_VERIFY_WITH_TIMEOUT(isLit(), 1000);
        }
        xdotool(u"click 1"_s); // kept for the player until it goes on
        _mpv.send(SIGCONT);
        QTRY_COMPARE(RealPlayer::status(), u"Paused"_s);
        xdotool(u"mousemove 5 500"_s);
        QTRY_VERIFY(isIdle(_layout.playButton));
    }

    void clearsWhenPlayerIsKilled()
    {
        _mpv.kill();
        QTRY_VERIFY_WITH_TIMEOUT(isIdle(_layout.title), 1000);
        QTRY_COMPARE_WITH_TIMEOUT(pillPicture(), _idle, 3000); // the meter has to come down
    }

    void isDraggedAndRemembersIt()
    {
        const QRect before = pill();
        dragPill(u"ctrl"_s);
        QTRY_COMPARE(pill().x(), before.x() - 60);
        dragPill(u"super"_s);
        QTRY_COMPARE(pill().topLeft(), before.topLeft() - QPoint(120, 0));
        _program.terminate();
        QVERIFY(_program.waitForFinished());
        QVERIFY(startProgram());
        QTRY_COMPARE(pill().x(), before.x() - 120);
    }

private:
    bool startProgram()
    {
        _program.start(QStringLiteral(PELLAR_PROGRAM), QStringList());
        const auto isDrawn = [this] {
            return pill().size() == pillSize && pillPicture().pixelColor(60, 3).lightness() > 200;
        };
        return _program.waitForStarted() && QTest::qWaitFor(isDrawn, 10000);
    }

    /// Where the window server says that the pill is.
    QRect pill() const
    {
        const QString geometry = xdotool(u"search --onlyvisible --name ^Pellar$ getwindowgeometry --shell"_s);
        static const QRegularExpression number(u"\\bX=(.+)\nY=(.+)\nWIDTH=(.+)\nHEIGHT=(.+)\n"_s);
        const auto found = number.match(geometry);
        const auto at = [&found](int i) { return found.captured(i).toInt(); };
        return {at(1), at(2), at(3), at(4)};
    }

    QImage pillPicture() const { return _screen->grabWindow(0).toImage().copy(pill()); }
    QImage part(const QRectF& frame) const { return pillPicture().copy(frame.toAlignedRect()); }
    bool isIdle(const QRectF& frame) const { return part(frame) == _idle.copy(frame.toAlignedRect()); }
    void pointAt(const QRectF& frame, const QString& action) const
    {
        const QPoint point = pill().topLeft() + frame.center().toPoint();
        xdotool(u"mousemove %1 %2 "_s.arg(point.x()).arg(point.y()) + action);
    }

    void click(const QRectF& frame) const { pointAt(frame, u"click 1 mousemove 5 500"_s); }
    /// By 60 to the left, and down a little.
    void dragPill(const QString& key) const
    {
        const QPoint from = pill().topLeft() + QPoint(120, 10);
        xdotool(u"keydown %1 mousemove %2 %3 mousedown 1"_s.arg(key).arg(from.x()).arg(from.y()));
        xdotool(u"mousemove_relative -- -30 0"_s);
        xdotool(u"mousemove_relative -- -30 50 mouseup 1 keyup "_s + key);
    }

    QScreen* _screen = QGuiApplication::primaryScreen();
    QProcess _program;
    QTemporaryDir _elsewhere; ///< where nothing runs
    RealPlayer _mpv;
    PillLayout _layout = PillLayout::make(pillSize, {});
    QImage _idle; ///< the pill without a player
};

QTEST_MAIN(DesktopTest)
#include "desktop_test.moc"
