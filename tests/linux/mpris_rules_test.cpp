#include "linux/mpris/MprisTrack.h"
#include "linux/mpris/PlayerChange.h"
#include "linux/mpris/PositionClock.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

/// The rules of the MPRIS mirror that need no bus.
class MprisRulesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsMetadata_data()
    {
        QTest::addColumn<QVariantMap>("metadata");
        QTest::addColumn<QString>("text"); // id|title|artist|album|length
        const auto row = [](const char* name, const char* key, const QVariant& value, const char* text) {
            QVariantMap metadata{{u"xesam:title"_s, u"T"_s}};
            metadata[QString::fromLatin1(key)] = value;
            QTest::newRow(name) << metadata << QString::fromUtf8(text);
        };
        const auto text = [](const char* latin1) { return QString::fromLatin1(latin1); };
        QTest::newRow("nothing") << QVariantMap() << text("||||-");
        QTest::newRow("file name for a title")
            << QVariantMap{{text("xesam:url"), text("file:///a/%E5%A4%9C%20b.flac")}} << u"|夜 b.flac|||-"_s;
        row("artists as a list", "xesam:artist", QStringList{text("A"), text("B")}, "|T|A, B||-");
        row("artist as one string", "xesam:artist", text("A"), "|T|A||-");
        row("artist list of nothing", "xesam:artist", QStringList{QString()}, "|T|||-");
        row("id as a string", "mpris:trackid", text("spotify:track:1"), "spotify:track:1|T|||-");
        const char* const length = "mpris:length";
        row("unsigned length", length, qulonglong(215000000), "|T|||215");
        row("32-bit length", length, 215000000, "|T|||215");
        row("length as a real", length, 1.5e6, "|T|||1.5");
        row("length as a text", length, text("3000000"), "|T|||3");
        row("length zero", length, qlonglong(0), "|T|||-");
        row("endless stream", length, std::numeric_limits<qlonglong>::max(), "|T|||-");
        row("length not a number", length, std::nan(""), "|T|||-");
        row("length a list", length, QStringList(), "|T|||-");
    }

    void readsMetadata()
    {
        QFETCH(QVariantMap, metadata);
        const MprisTrack track = MprisTrack::fromMetadata(metadata);
        const QString length = track.length ? QString::number(*track.length) : u"-"_s;
        QTEST(QStringList({track.id, track.title, track.artist, track.album, length}).join(u'|'), "text");
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

    void disbelievesFrozenPositions_data()
    {
        QTest::addColumn<QList<double>>("readings"); // one every 2 s of playing from 10 s on
        QTest::addColumn<double>("expected");        // at the last of them
        QTest::newRow("honest") << QList<double>{10, 12.1, 14.1} << 14.1;
        QTest::newRow("always zero") << QList<double>{0, 0, 0, 0} << 6.0;
        QTest::newRow("stalls, then goes on") << QList<double>{10, 10, 10.2} << 10.2;
    }

    void disbelievesFrozenPositions()
    {
        QFETCH(QList<double>, readings);
        PositionClock clock;
        clock.setRunning(true, {8});
        double now = 8;
        for (const double reading : readings) {
            now += 2;
            clock.observe(reading, {now});
        }
        QTEST(clock.at({now}), "expected");

        // A seek is believed, and so is the same answer again afterwards.
        clock.jump(60, {now});
        QVERIFY(!clock.observe(60, {now + 3}));
        QCOMPARE(clock.at({now + 3}), 63.0);
    }
};

QTEST_GUILESS_MAIN(MprisRulesTest)
#include "mpris_rules_test.moc"
