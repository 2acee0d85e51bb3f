#include "linux/mpris/MprisTrack.h"
#include "linux/mpris/PlayerChange.h"
#include "linux/mpris/PositionClock.h"

#include <QtTest>

using namespace Qt::Literals::StringLiterals;

/// The rules of the MPRIS mirror that need no bus.
class MprisRulesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsMetadata()
    {
        const QString title = u"xesam:title"_s;
        const QString artist = u"xesam:artist"_s;
        const QString length = u"mpris:length"_s;
        using Row = std::tuple<QString, QVariant, QString>;
        for (const auto& [key, value, expected] : // id|title|artist|album|length
             {Row{title, {}, u"||||-"_s},
              {u"xesam:url"_s, u"file:///a/%E5%A4%9C%20b.flac"_s, u"|夜 b.flac|||-"_s},
              {artist, QStringList{u"A"_s, u"B"_s}, u"|T|A, B||-"_s},
              {artist, u"A"_s, u"|T|A||-"_s},
              {artist, QStringList{QString()}, u"|T|||-"_s},
              {u"mpris:trackid"_s, u"spotify:track:1"_s, u"spotify:track:1|T|||-"_s},
              {length, qulonglong(215000000), u"|T|||215"_s},
              {length, 1.5e6, u"|T|||1.5"_s},
              {length, u"3000000"_s, u"|T|||3"_s},
              {length, std::numeric_limits<qlonglong>::max(), u"|T|||-"_s}, // an endless stream
              {length, std::nan(""), u"|T|||-"_s},
              {length, QStringList(), u"|T|||-"_s}}) {
            QVariantMap metadata = {{title, key == u"xesam:url" ? QVariant() : u"T"_s}};
            metadata[key] = value;
            const MprisTrack track = MprisTrack::fromMetadata(metadata);
            const QString seconds = track.length ? QString::number(*track.length) : u"-"_s;
            QCOMPARE(QStringList({track.id, track.title, track.artist, track.album, seconds}).join(u'|'),
                     expected);
        }
    }

    void reckonsPosition()
    {
        PositionClock clock;
        clock.setLength(20);
        clock.jump(5, {100});
        QCOMPARE(clock.at({103}), 5.0); // stands until it runs
        clock.setRunning(true, {103});
        QCOMPARE(clock.at({105}), 7.0);
        clock.setRate(2, {105});
        QCOMPARE(clock.at({106}), 9.0);
        clock.setRate(0, {106}); // no rate at all
        QCOMPARE(clock.at({107}), 11.0);
        clock.setRunning(false, {107});
        QCOMPARE(clock.at({200}), 11.0);
        clock.setRunning(true, {200});
        QCOMPARE(clock.at({300}), 20.0); // no further than the end
        QVERIFY(!clock.observe(11.5, {200}));
        QVERIFY(clock.observe(3, {201}));
        QCOMPARE(clock.at({202}), 5.0);
        QVERIFY(clock.observe(300, {202}));
        QVERIFY(!clock.observe(400, {202})); // behind the end it is at the end
        clock.restart({202});
        QVERIFY(!clock.observe(15, {202.9})); // an answer from before
        QCOMPARE(clock.at({203}), 2.0);
        clock.jump(-4, {203});
        clock.setRunning(false, {203});
        QCOMPARE(clock.at({203}), 0.0);
    }

    /// Readings are a tenth of a second late or more, as of a player that looks at its place now and then.
    void takesTheBestOfLateReadings()
    {
        PositionClock clock;
        clock.jump(50, {100});
        clock.setRunning(true, {100});
        for (const auto& [time, seconds, expected] : {std::tuple(102.0, 51.9, 52.0),
                                                      {102.2, 51.95, 52.2},
                                                      {102.4, 52.35, 52.35}, // the best of three
                                                      {110.0, 60.2, 60.2},
                                                      {111.0, 61.0, 61.2},
                                                      {111.1, 61.0, 61.3}}) { // ahead; whole seconds
            clock.observe(seconds, {time});
            QCOMPARE(clock.at({time}), expected);
        }
        clock.setRate(2, {112});
        QVERIFY(clock.isInDoubt());
        clock.observe(62, {112});
        QCOMPARE(clock.at({113}), 64.0); // a change of rate is heard later than it is told
    }

    /// What is announced half a second before it sounds is half a second behind from then on.
    void settlesOnATrackThatBeginsLate()
    {
        PositionClock clock;
        clock.setRunning(true, {99});
        clock.restart({100});
        for (const auto& [time, seconds, expected] : {std::tuple(100.2, 0.0, 0.2),
                                                      {100.4, 0.0, 0.4},
                                                      {100.6, 0.1, 0.6},
                                                      {101.1, 0.58, 1.1},
                                                      {101.3, 0.8, 1.3},
                                                      {101.5, 0.99, 1.0}}) { // the best of three
            QVERIFY(clock.isInDoubt() || time == 101.1);
            clock.observe(seconds, {time});
            QCOMPARE(clock.at({time}), expected);
        }
    }

    void knowsATrackThatIsAnnouncedEarly()
    {
        for (const auto& [reading, expected] : {std::pair(-0.4, -0.3), {0.3, 0.4}, {39.7, 0.2}, {0.0, 0.2}}) {
            PositionClock clock;
            clock.jump(39.5, {100});
            clock.setRunning(true, {100});
            clock.restart({100.2});
            clock.observe(reading, {100.3});
            QCOMPARE(clock.place({100.4}), expected); // no other is of this track
            QCOMPARE(clock.at({100.4}), std::max(0.0, expected));
        }
    }

    void tellsTracksApart()
    {
        const auto playing = [](const QString& title, const QString& id, const QString& location) {
            return MprisPlayer::State{MprisPlayer::Status::playing,
                                      {.id = id, .title = title, .location = location}};
        };
        const auto before = playing(u"a.flac"_s, u"/1"_s, u"file:///a.flac"_s);
        for (const auto& [title, id, location, isOther] :
             {std::tuple(u"A"_s, u"/1"_s, u"file:///a.flac"_s, false), // the tags come later
              {u"A"_s, u"/1"_s, u"file:///b.flac"_s, true},
              {u"a.flac"_s, u"/2"_s, u"file:///a.flac"_s, true}}) {
            QCOMPARE((PlayerChange{before, playing(title, id, location)}.isOtherTrack()), isOther);
        }
    }

    void disbelievesFrozenPositions()
    {
        using Row = std::pair<QList<double>, double>; // one every 2 s of playing from 10 s on; at the last
        for (const auto& [readings, expected] :
             {Row{{10, 12.1, 14.1}, 14.1}, {{0, 0, 0, 0}, 6}, {{10, 10, 10.2}, 10.2}}) {
            PositionClock clock;
            clock.setRunning(true, {8});
            double now = 8;
            for (const double reading : readings) {
                now += 2;
                clock.observe(reading, {now});
            }
            QCOMPARE(clock.at({now}), expected);

            // Nor are they waited for when it plays again.
            clock.setRunning(false, {now});
            clock.setRunning(true, {now});
            for (int i = 0; i < 3; ++i) {
                QVERIFY(clock.isInDoubt());
                clock.observe(readings.constLast(), {now += 0.6});
            }
            QVERIFY(!clock.isInDoubt());

            // A seek is believed, and so is the same answer again afterwards.
            clock.jump(60, {now});
            QVERIFY(!clock.observe(60, {now + 3}));
            QCOMPARE(clock.at({now + 3}), 63.0);
        }
    }
};

QTEST_GUILESS_MAIN(MprisRulesTest)
#include "mpris_rules_test.moc"
