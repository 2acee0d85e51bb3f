#include "linux/mpris/MprisTrack.h"
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

            // A seek is believed, and so is the same answer again afterwards.
            clock.jump(60, {now});
            QVERIFY(!clock.observe(60, {now + 3}));
            QCOMPARE(clock.at({now + 3}), 63.0);
        }
    }
};

QTEST_GUILESS_MAIN(MprisRulesTest)
#include "mpris_rules_test.moc"
