#include "SpokenLyrics.h"
#include "base/EventLoop.h"
#include "linux/settings/PlistUserDefaults.h"
#include "support/HttpStandIn.h"
#include "support/LoopbackServices.h"
#include "support/Program.h"
#include "support/RealPlayer.h"

#include <cmath>
#include <utility>

namespace {

constexpr double bar = 0.1;     // seconds that the line may be off
constexpr double steady = 0.04; // seconds
constexpr int momentsAStep = 4;
constexpr int triesAStep = 12; // some tell nothing
constexpr int leastMoments = 40;

} // namespace

/// The built program beside a real player: the line on the screen, as a screen reader is told it, against
/// where the player says that it is.
class LineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QString lrc;
        const double lengths[] = {0.7, 1.1, 0.8, 3.0, 0.9, 1.3, 0.7, 1.9}; // seconds
        for (double time = 0; time < 60; time += lengths[_begins.size() % std::size(lengths)]) {
            lrc += u"[0:%1]Line %2\\n"_s.arg(time, 0, 'f', 2).arg(_begins.size());
            _begins << time;
        }
        _server.answer("/api/get", {.body = u"{\"syncedLyrics\":\"%1\"}"_s.arg(lrc).toUtf8()});
        keepServicesToLoopback();
        PlistUserDefaults(PlistUserDefaults::defaultPath())
            .setObject(u"com.orvalen.pellar.endpoint.lyrics"_s, _server.address());
        qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
        QVERIFY(_mpv.start({u"--ao-null-buffer=0.02"_s}));
        _program.emplace(QStringLiteral(PELLAR_PROGRAM));
        const auto pill = [] { return run(u"xdotool search --onlyvisible --name ^Pellar$"_s); };
        QTRY_VERIFY_WITH_TIMEOUT(pill().toInt() > 0, 10000);
        run(u"xdotool mousemove --window %1 135 14 mousedown 1 sleep 0.6 mouseup 1 mousemove 5 700"_s.arg(
            pill()));
        QTRY_VERIFY(_spoken.find());
        QTRY_VERIFY(line() >= 0);
    }

    void isWhereThePlayerIs()
    {
        const QString setRate =
            u"dbus-send --print-reply --dest=org.mpris.MediaPlayer2.mpv /org/mpris/MediaPlayer2 "
            "org.freedesktop.DBus.Properties.Set string:org.mpris.MediaPlayer2.Player string:Rate "
            "variant:double:"_s;
        for (const auto& [command, rate] : {std::pair(QString(), 1.0),
                                            {u"position 21"_s, 1},
                                            {u"position 12.3"_s, 1},
                                            {u"pause"_s, 0},
                                            {u"position 9.5"_s, 0},
                                            {u"play"_s, 1},
                                            {u"next"_s, 1},
                                            {setRate + u"1.5", 1.5},
                                            {u"position 20"_s, 1.5},
                                            {setRate + u"1", 1},
                                            {u"previous"_s, 1},
                                            {u"position 38"_s, 1}}) { // which goes on to the next track
            _rate = rate;
            if (command.startsWith(u"dbus-send")) {
                run(command);
            } else if (!command.isEmpty()) {
                RealPlayer::tell(command);
            }
            _what = command.section(u':', -1);
            const auto isRight = [this] { return std::abs(off(&LineTest::see).value_or(bar)) < bar; };
            QVERIFY2(QTest::qWaitFor(isRight, 3000), qPrintable(_what));
            const int wanted = _moments + momentsAStep;
            for (int i = 0; i < triesAStep && _moments < wanted; ++i) {
                note(off(rate > 0 && i % 2 == 1 ? &LineTest::seeChange : &LineTest::see));
            }
        }
        qInfo(
            "%d moments, the line at most %.3f s early and %.3f s late, at worst %s; %d more not to be told",
            _moments, -_earliest, _latest, qPrintable(_worst), _untold);
        QVERIFY2(std::max(-_earliest, _latest) < bar, qPrintable(_worst));
        QVERIFY(_moments >= leastMoments);
    }

private:
    double now() const { return _clock.uptime().seconds; }

    /// The index of the line on the screen; -1 for none.
    int line() const
    {
        const QString said = _spoken.line();
        return said.startsWith(u"Line ") ? said.mid(5).toInt() : -1;
    }

    /// What was on the screen at some time of a span, which is as short as the machine allows.
    struct Sight {
        double from;
        double to;
        int line;
        bool isNew; ///< the line came at that time
    };
    Sight see() const
    {
        Sight sight{now(), 0, line(), false};
        sight.to = now();
        return sight;
    }
    Sight seeChange() const
    {
        const Sight first = see();
        Sight last = first;
        Sight next = see();
        while (next.line == first.line && next.from - first.from < 5) {
            QTest::qWait(1); // the server is here, too
            last = std::exchange(next, see());
        }
        return {last.from, next.to, next.line, next.line >= 0};
    }

    /// When the track began, had it been played at this pace from there. The player looks at its place only
    /// some times a second, so of its answers the one furthest ahead is right.
    double trackStart() const
    {
        double start = -1e9;
        for (int i = 0; i < 16; ++i) {
            const double before = now();
            const double position = RealPlayer::position();
            start = std::max(start, position - _rate * (before + now()) / 2);
        }
        return start;
    }

    /// Track seconds by which the line on the screen is late; below 0 when it is early. None when that cannot
    /// be told: the player has meanwhile halted, as it does on a busy machine, or the answers took too long.
    std::optional<double> off(Sight (LineTest::*look)() const) const
    {
        const double before = trackStart();
        const Sight sight = (this->*look)();
        const double after = trackStart();
        if (std::abs(after - before) > steady || sight.to - sight.from > steady) {
            return std::nullopt;
        }
        const double time = sight.isNew ? (sight.from + sight.to) / 2 : sight.from;
        const double place = std::max(before, after) + _rate * time;
        const double begin = sight.line < 0 ? -1 : _begins[sight.line];
        if (sight.isNew || place < begin) {
            return place - begin;
        }
        return std::max(0.0, place - _begins[sight.line + 1]);
    }

    void note(std::optional<double> off)
    {
        if (!off) {
            ++_untold;
            return;
        }
        ++_moments;
        if (std::abs(*off) >= std::max(-_earliest, _latest)) {
            _worst = u"%1 s after \"%2\""_s.arg(*off, 0, 'f', 3).arg(_what);
        }
        _earliest = std::min(_earliest, *off);
        _latest = std::max(_latest, *off);
    }

    EventLoop _clock;
    HttpStandIn _server;
    RealPlayer _mpv;
    std::optional<Program> _program;
    SpokenLyrics _spoken;
    QList<double> _begins; ///< of the lines, in seconds
    double _rate = 1;
    QString _what;
    QString _worst;
    int _moments = 0;
    int _untold = 0;
    double _earliest = 0;
    double _latest = 0;
};

QTEST_MAIN(LineTest)
#include "line_test.moc"
