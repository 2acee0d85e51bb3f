#include "support/Command.h"
#include "support/LoopbackServices.h"
#include "support/RealPlayer.h"
#include "ui/pill/PillLayout.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QTest>

#include <csignal>

namespace {

constexpr QSize pillSize(185, 28);
const QString debugLog = QStringLiteral("/tmp/pellar_debug.log");

QImage screenshot()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage();
}

} // namespace

/// The built program in a real session: what is on the screen, and what its clicks do to a real player.
class DesktopTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void staysAlone();
    void followsPlayerOnScreen();
    void obeysClicks();
    void seeks();
    void tellsPressesApart();
    void survivesStoppedPlayer();
    void clearsWhenPlayerIsKilled();
    void isDraggedAndRemembersIt();
    void quitsFromItsMenu();

private:
    bool startProgram();
    QRect pill() const;
    QImage pillPicture() const { return screenshot().copy(pill()); }
    QImage part(const QRectF& frame) const { return pillPicture().copy(frame.toAlignedRect()); }
    void click(const QRectF& frame, int button = 1) const;
    void hold(const QRectF& frame) const;
    void dragProgress(double from, double to) const;

    QProcess _program;
    RealPlayer _mpv;
    PillLayout _layout = PillLayout::make(pillSize, {});
    QImage _idle;
    qint64 _logBefore = 0; ///< the log may have lines of other runs
};

void DesktopTest::initTestCase()
{
    keepServicesToLoopback();
    QVERIFY(startProgram());
    _idle = pillPicture();
    QVERIFY2(_idle != QImage(_idle.size(), _idle.format()), "nothing is drawn");
}

void DesktopTest::cleanupTestCase()
{
    _program.terminate();
    _program.waitForFinished();
}

bool DesktopTest::startProgram()
{
    _logBefore = QFileInfo(debugLog).size();
    _program.start(QStringLiteral(PELLAR_PROGRAM), QStringList());
    const auto isDrawn = [this] {
        return pill().size() == pillSize && pillPicture().pixelColor(60, 3).lightness() > 200;
    };
    return _program.waitForStarted() && QTest::qWaitFor(isDrawn, 10000);
}

/// Where the window server says that the pill is.
QRect DesktopTest::pill() const
{
    const QString id =
        run(QStringLiteral("xdotool search --onlyvisible --name ^Pellar$")).section(u'\n', 0, 0);
    const QStringList lines = run(QStringLiteral("xdotool getwindowgeometry --shell ") + id).split(u'\n');
    QMap<QString, int> values;
    for (const QString& line : lines) {
        values[line.section(u'=', 0, 0)] = line.section(u'=', 1).toInt();
    }
    return {values[QStringLiteral("X")], values[QStringLiteral("Y")], values[QStringLiteral("WIDTH")],
            values[QStringLiteral("HEIGHT")]};
}

void DesktopTest::click(const QRectF& frame, int button) const
{
    const QPoint point = pill().topLeft() + frame.center().toPoint();
    run(QStringLiteral("xdotool mousemove %1 %2 click %3").arg(point.x()).arg(point.y()).arg(button));
    run(QStringLiteral("xdotool mousemove 5 500"));
}

/// A press as long as a long press is.
void DesktopTest::hold(const QRectF& frame) const
{
    const QPoint point = pill().topLeft() + frame.center().toPoint();
    run(QStringLiteral("xdotool mousemove %1 %2 mousedown 1 sleep 0.6 mouseup 1")
            .arg(point.x())
            .arg(point.y()));
    run(QStringLiteral("xdotool mousemove 5 500"));
}

/// Presses and lets go at parts of the progress line's width.
void DesktopTest::dragProgress(double from, double to) const
{
    const QRectF line = _layout.progress.translated(pill().topLeft());
    const auto at = [&line](double part) { return qRound(line.left() + part * line.width()); };
    run(QStringLiteral("xdotool mousemove %1 %2 mousedown 1").arg(at(from)).arg(qRound(line.center().y())));
    run(QStringLiteral("xdotool mousemove %1 %2 mouseup 1 mousemove 5 500").arg(at(to)).arg(300));
}

void DesktopTest::staysAlone()
{
    QProcess second;
    second.start(QStringLiteral(PELLAR_PROGRAM), QStringList());
    QVERIFY(second.waitForFinished(10000));
    QCOMPARE(second.readAllStandardError(), QByteArray("Pellar is already running.\n"));
    QCOMPARE(second.exitCode(), 1);
    QCOMPARE(run(QStringLiteral("xdotool search --onlyvisible --name ^Pellar$")).split(u'\n').size(), 1);
}

void DesktopTest::followsPlayerOnScreen()
{
    QVERIFY(_mpv.start());
    QTRY_VERIFY(part(_layout.title) != _idle.copy(_layout.title.toAlignedRect()));
    QTRY_VERIFY(part(_layout.playButton) != _idle.copy(_layout.playButton.toAlignedRect()));
    const QImage first = part(_layout.title);
    RealPlayer::tell(QStringLiteral("next"));
    QTRY_VERIFY(part(_layout.title) != first);
    QTRY_VERIFY(part(_layout.progress) != _idle.copy(_layout.progress.toAlignedRect()));
    QFile log(debugLog);
    QVERIFY(log.open(QIODevice::ReadOnly) && log.seek(_logBefore));
    QVERIFY(log.readAll().contains("] refresh: srcs=3 am=true sp=false active="));
    QCOMPARE(log.permissions() &
                 (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
             QFile::Permissions());
}

void DesktopTest::obeysClicks()
{
    QCOMPARE(RealPlayer::status(), QStringLiteral("Playing"));
    const QImage playing = part(_layout.playButton);
    click(_layout.playButton);
    QTRY_COMPARE(RealPlayer::status(), QStringLiteral("Paused"));
    QTRY_COMPARE(part(_layout.playButton), _idle.copy(_layout.playButton.toAlignedRect()));
    click(_layout.playButton);
    QTRY_COMPARE(RealPlayer::status(), QStringLiteral("Playing"));
    QTRY_COMPARE(part(_layout.playButton), playing);
    const QString title = RealPlayer::metadata(QStringLiteral("title"));
    click(_layout.nextButton);
    QTRY_VERIFY(RealPlayer::metadata(QStringLiteral("title")) != title);
    click(_layout.previousButton);
    QTRY_COMPARE(RealPlayer::metadata(QStringLiteral("title")), title);
    click(_layout.title); // no control: the next click pauses all the same
    click(_layout.playButton);
    QTRY_COMPARE(RealPlayer::status(), QStringLiteral("Paused"));
    click(_layout.playButton);
    QTRY_COMPARE(RealPlayer::status(), QStringLiteral("Playing"));
}

void DesktopTest::seeks()
{
    RealPlayer::tell(QStringLiteral("pause"));
    QTRY_COMPARE(RealPlayer::status(), QStringLiteral("Paused"));
    const double length = RealPlayer::metadata(QStringLiteral("mpris:length")).toDouble() / 1e6;
    const auto isAt = [length](double part) { return std::abs(RealPlayer::position() - part * length) < 1; };
    click(_layout.progress);
    QTRY_VERIFY(isAt(0.5));
    dragProgress(0.9, 0.25);
    QTRY_VERIFY(isAt(0.25));
    dragProgress(0.5, -0.3); // beyond the start
    QTRY_VERIFY(isAt(0));
    const QPointF quarter(_layout.progress.left() + 0.25 * _layout.progress.width(),
                          _layout.progress.center().y());
    QTRY_COMPARE(pillPicture().pixelColor(quarter.toPoint()), _idle.pixelColor(quarter.toPoint()));
}

/// What the player does after the last press shows which of those before it were commands.
void DesktopTest::tellsPressesApart()
{
    QTRY_COMPARE(RealPlayer::status(), QStringLiteral("Paused"));
    for (const QRectF& control : {_layout.playButton, _layout.nextButton, _layout.progress}) {
        click(control, 3);
        QTRY_VERIFY(run(QStringLiteral("xdotool search --onlyvisible --class pellar")).split(u'\n').size() >
                    1);
        run(QStringLiteral("xdotool key Escape"));
        QTRY_COMPARE(run(QStringLiteral("xdotool search --onlyvisible --class pellar")).split(u'\n').size(),
                     1);
    }
    hold(_layout.title);
    const QString title = RealPlayer::metadata(QStringLiteral("title"));
    click(_layout.playButton);
    QTRY_COMPARE(RealPlayer::status(), QStringLiteral("Playing"));
    hold(_layout.playButton);
    QTRY_COMPARE(RealPlayer::status(), QStringLiteral("Paused"));
    click(_layout.playButton);
    QTRY_COMPARE(RealPlayer::status(), QStringLiteral("Playing"));
    QCOMPARE(RealPlayer::metadata(QStringLiteral("title")), title);
}

void DesktopTest::survivesStoppedPlayer()
{
    _mpv.send(SIGSTOP);
    // It still redraws: the button under the pointer lights up, for as long as the player is stopped.
    QElapsedTimer stopped;
    stopped.start();
    const QPoint play = pill().topLeft() + _layout.playButton.center().toPoint();
    for (int round = 0; round < 5; ++round) {
        run(QStringLiteral("xdotool mousemove 5 500"));
        QTRY_VERIFY_WITH_TIMEOUT(part(_layout.playButton).pixelColor(0, 8).lightness() > 240, 1000);
        run(QStringLiteral("xdotool mousemove %1 %2").arg(play.x()).arg(play.y()));
        QTRY_VERIFY_WITH_TIMEOUT(part(_layout.playButton).pixelColor(0, 8).lightness() < 240, 1000);
        QTest::qWait(2000 * (round + 1) - static_cast<int>(stopped.elapsed()));
    }
    QVERIFY(stopped.elapsed() >= 10000);
    run(QStringLiteral("xdotool click 1")); // kept for the player until it goes on
    _mpv.send(SIGCONT);
    QTRY_COMPARE(RealPlayer::status(), QStringLiteral("Paused"));
    run(QStringLiteral("xdotool mousemove 5 500"));
    QTRY_COMPARE(part(_layout.playButton), _idle.copy(_layout.playButton.toAlignedRect()));
    RealPlayer::tell(QStringLiteral("play"));
    QTRY_VERIFY(part(_layout.playButton) != _idle.copy(_layout.playButton.toAlignedRect()));
}

void DesktopTest::clearsWhenPlayerIsKilled()
{
    QVERIFY(pillPicture() != _idle);
    _mpv.kill();
    QTRY_COMPARE_WITH_TIMEOUT(part(_layout.title), _idle.copy(_layout.title.toAlignedRect()), 1000);
    QTRY_COMPARE_WITH_TIMEOUT(pillPicture(), _idle, 3000); // the meter has to come down
}

void DesktopTest::isDraggedAndRemembersIt()
{
    const QRect before = pill();
    const auto drag = [this](int way, const QString& key) {
        const QPoint from = pill().topLeft() + QPoint(120, 10);
        if (!key.isEmpty()) {
            run(u"xdotool keydown " + key);
        }
        run(QStringLiteral("xdotool mousemove %1 %2").arg(from.x()).arg(from.y()));
        run(QStringLiteral("xdotool mousedown 1"));
        run(QStringLiteral("xdotool mousemove %1 %2").arg(from.x() + way / 2).arg(from.y()));
        run(QStringLiteral("xdotool mousemove %1 %2").arg(from.x() + way).arg(from.y() + 50));
        run(QStringLiteral("xdotool mouseup 1"));
        if (!key.isEmpty()) {
            run(u"xdotool keyup " + key);
        }
    };
    drag(40, QString()); // without the key it is the pill's own
    drag(-60, QStringLiteral("ctrl"));
    QTRY_COMPARE(pill().x(), before.x() - 60);
    drag(-60, QStringLiteral("super"));
    QTRY_COMPARE(pill().x(), before.x() - 120);
    QCOMPARE(pill().y(), before.y());
    _program.terminate();
    QVERIFY(_program.waitForFinished());
    QVERIFY(startProgram());
    QTRY_COMPARE(pill().x(), before.x() - 120);
}

void DesktopTest::quitsFromItsMenu()
{
    click(_layout.title, 3);
    QTRY_VERIFY(run(QStringLiteral("xdotool search --onlyvisible --class pellar")).split(u'\n').size() > 1);
    run(QStringLiteral("xdotool key Up Return")); // the last row
    QTRY_COMPARE(_program.state(), QProcess::NotRunning);
    QCOMPARE(_program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(_program.exitCode(), 0);
}

QTEST_MAIN(DesktopTest)
#include "desktop_test.moc"
