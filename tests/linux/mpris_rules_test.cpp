#include "linux/mpris/MprisTrack.h"
#include "linux/mpris/PositionClock.h"

#include <QTest>

/// The rules of the MPRIS mirror that need no bus.
class MprisRulesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsMetadata_data();
    void readsMetadata();
    void reckonsPosition();
    void disbelievesFrozenPositions_data();
    void disbelievesFrozenPositions();
};

void MprisRulesTest::readsMetadata_data()
{
    QTest::addColumn<QVariantMap>("metadata");
    QTest::addColumn<QString>("text"); // id|title|artist|album|length
    const QString title = QStringLiteral("xesam:title");
    const QString artist = QStringLiteral("xesam:artist");
    const QString length = QStringLiteral("mpris:length");
    const auto text = [](const char* utf8) { return QString::fromUtf8(utf8); };
    QTest::newRow("nothing") << QVariantMap() << text("||||-");
    QTest::newRow("artists as a list")
        << QVariantMap{{title, text("T")}, {artist, QStringList{text("A"), text("B")}}} << text("|T|A, B||-");
    QTest::newRow("artist as one string")
        << QVariantMap{{title, text("T")}, {artist, text("A")}} << text("|T|A||-");
    QTest::newRow("artist list of nothing")
        << QVariantMap{{title, text("T")}, {artist, QStringList{QString()}}} << text("|T|||-");
    QTest::newRow("id as a string") << QVariantMap{{text("mpris:trackid"), text("spotify:track:1")},
                                                   {title, text("T")}}
                                    << text("spotify:track:1|T|||-");
    QTest::newRow("file name for a title")
        << QVariantMap{{text("xesam:url"), text("file:///a/%E5%A4%9C%20b.flac")}} << text("|夜 b.flac|||-");
    const auto lengthRow = [&](const char* name, const QVariant& value, const char* expected) {
        QTest::newRow(name) << QVariantMap{{title, text("T")}, {length, value}}
                            << text("|T|||") + QString::fromLatin1(expected);
    };
    lengthRow("64-bit length", QVariant::fromValue(qlonglong(215000000)), "215");
    lengthRow("unsigned length", QVariant::fromValue(qulonglong(215000000)), "215");
    lengthRow("32-bit length", QVariant::fromValue(int(215000000)), "215");
    lengthRow("length as a real", QVariant(1.5e6), "1.5");
    lengthRow("length as a text", QVariant(text("3000000")), "3");
    lengthRow("length zero", QVariant::fromValue(qlonglong(0)), "-");
    lengthRow("length negative", QVariant::fromValue(qlonglong(-1)), "-");
    lengthRow("endless stream", QVariant::fromValue(std::numeric_limits<qlonglong>::max()), "-");
    lengthRow("length not a number", QVariant(std::nan("")), "-");
    lengthRow("length a list", QVariant(QStringList()), "-");
}

void MprisRulesTest::readsMetadata()
{
    QFETCH(QVariantMap, metadata);
    const MprisTrack track = MprisTrack::fromMetadata(metadata);
    const QString length = track.length ? QString::number(*track.length) : QStringLiteral("-");
    QTEST(QStringList({track.id, track.title, track.artist, track.album, length}).join(u'|'), "text");
}

void MprisRulesTest::reckonsPosition()
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
    clock.restart({202});
    QCOMPARE(clock.at({203}), 2.0);
    clock.jump(-4, {203});
    clock.setRunning(false, {203});
    QCOMPARE(clock.at({203}), 0.0);
}

void MprisRulesTest::disbelievesFrozenPositions_data()
{
    QTest::addColumn<QList<double>>("readings"); // one every 2 s of playing from 10 s on
    QTest::addColumn<double>("expected");        // at the last of them
    QTest::newRow("honest") << QList<double>{10, 12.1, 14.1} << 14.1;
    QTest::newRow("always zero") << QList<double>{0, 0, 0, 0} << 6.0;
    QTest::newRow("stalls, then goes on") << QList<double>{10, 10, 10.2} << 10.2;
}

void MprisRulesTest::disbelievesFrozenPositions()
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

QTEST_GUILESS_MAIN(MprisRulesTest)
#include "mpris_rules_test.moc"
