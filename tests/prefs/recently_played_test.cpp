#include "prefs/RecentlyPlayedManager.h"
#include "support/ManualRunLoop.h"
#include "support/MemoryDefaults.h"

#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

namespace {

const QString key = QStringLiteral("pellar.recentlyPlayed.v1");

QString titles(const RecentlyPlayedManager& manager)
{
    QString titles;
    for (const PlayedTrack& track : manager.tracks()) {
        titles += track.title;
    }
    return titles;
}

} // namespace

class RecentlyPlayedTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lists_data();
    void lists();
    void stores();
    void damage_data();
    void damage();

private:
    ManualRunLoop _clock;
};

void RecentlyPlayedTest::lists_data()
{
    QTest::addColumn<QString>("played");
    QTest::addColumn<QString>("listed");
    const auto row = [](const char* played, const char* listed) {
        QTest::newRow(played) << QString::fromLatin1(played) << QString::fromLatin1(listed);
    };
    row("ABA", "ABA");
    row("AABB", "BA");
    row("abcdefghijklmn", "nmlkjihgfedc");
}

void RecentlyPlayedTest::lists()
{
    QFETCH(QString, played);
    MemoryDefaults defaults;
    RecentlyPlayedManager manager(defaults, _clock);
    for (const QChar title : played) {
        manager.record(title, QString(), QString(title.cell(), u'x'), QString());
    }
    QTEST(titles(manager), "listed");
    QCOMPARE(RecentlyPlayedManager(defaults, _clock).tracks(), manager.tracks());
}

void RecentlyPlayedTest::stores()
{
    MemoryDefaults defaults;
    RecentlyPlayedManager manager(defaults, _clock);
    const QSignalSpy changes(&manager, &RecentlyPlayedManager::tracksChanged);
    for (const QString& title : {QString(), QStringLiteral("Not Playing")}) {
        manager.record(title, QStringLiteral("Band"), QString(), QString());
    }
    QVERIFY(changes.isEmpty() && defaults.values.isEmpty());

    manager.record(QStringLiteral("Song"), QStringLiteral("Band"), QStringLiteral("Album"),
                   QStringLiteral("spotify"));
    QCOMPARE(QJsonDocument::fromJson(defaults.data(key).value()), QJsonDocument::fromJson(R"([{
        "title": "Song", "artist": "Band", "album": "Album", "playedAt": 800000000, "source": "spotify"}])"));
    manager.record(QStringLiteral("Song"), QStringLiteral("Others"), QString(), QString());
    QCOMPARE(manager.tracks().size(), 2);
    manager.clear();
    QCOMPARE(changes.size(), 3);
    QCOMPARE(defaults.data(key), std::optional(QByteArray("[]")));
}

void RecentlyPlayedTest::damage_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("nothing") << QByteArray("");
    QTest::newRow("field missing") << QByteArray(R"([{"title":"S","artist":"B","album":"A","playedAt":1}])");
    QTest::newRow("date is a text") << QByteArray(
        R"([{"title":"S","artist":"B","album":"A","playedAt":"1","source":"x"}])");
}

void RecentlyPlayedTest::damage()
{
    QFETCH(QByteArray, json);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be read")));
    MemoryDefaults defaults;
    defaults.values.insert(key, json);
    RecentlyPlayedManager manager(defaults, _clock);
    QVERIFY(manager.tracks().isEmpty());
    QCOMPARE(defaults.data(key), std::optional(json));
    manager.record(QStringLiteral("A"), QString(), QString(), QString());
    QCOMPARE(titles(RecentlyPlayedManager(defaults, _clock)), QStringLiteral("A"));
}

QTEST_GUILESS_MAIN(RecentlyPlayedTest)
#include "recently_played_test.moc"
