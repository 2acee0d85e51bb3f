#include "prefs/ListeningStats.h"
#include "prefs/RecentlyPlayedManager.h"
#include "support/ManualRunLoop.h"
#include "support/MemoryDefaults.h"

#include <QtTest>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString statsKey = u"pellar_listening_stats"_s;
const QString tracksKey = u"pellar.recentlyPlayed.v1"_s;
const QString band = u"Band"_s;

void moveTo(ManualRunLoop& clock, const QByteArray& utc)
{
    const auto time = QDateTime::fromString(QString::fromLatin1(utc), Qt::ISODate);
    clock.advance(Date{static_cast<double>(time.toSecsSinceEpoch()) - Date::unixOffset} - clock.now());
}

/// A record of ten seconds of Band on each of the days.
QByteArray stored(const QString& dates)
{
    QStringList records;
    for (const QString& date : dates.split(u',', Qt::SkipEmptyParts)) {
        records << QStringLiteral(R"({"date":"%1","totalSeconds":10,"artists":{"Band":10}})").arg(date);
    }
    return '[' + records.join(u',').toLatin1() + ']';
}

} // namespace

class PersonalDataTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { qunsetenv("TZ"); }
    void calendarDay()
    {
        ManualRunLoop clock;
        MemoryDefaults defaults;
        auto stats = std::make_unique<ListeningStats>(defaults, clock);
        // Each side of midnight, at the ends of a day of 23 hours, and flown over the date line.
        for (const QByteArray moment :
             {"America/New_York 2026-07-02T03:59:59Z", "America/New_York 2026-07-02T04:00:00Z",
              "Pacific/Kiritimati 2026-07-02T10:00:00Z", "Pacific/Pago_Pago 2026-07-02T10:00:01Z",
              "Europe/Berlin 2026-03-28T23:00:00Z", "Europe/Berlin 2026-03-29T22:00:00Z"}) {
            qputenv("TZ", moment.split(' ')[0]);
            moveTo(clock, moment.split(' ')[1]);
            stats->tick(band);
        }
        stats.reset();
        QByteArrayList days;
        const auto records = QJsonDocument::fromJson(defaults.data(statsKey).value()).array();
        for (const auto& record : records) {
            days << record[u"date"].toString().toLatin1();
        }
        QCOMPARE(days.join(' '), QByteArray("2026-07-01 2026-07-02 2026-07-03 2026-03-29 2026-03-30"));
    }

    void savesEveryThirtiethTick()
    {
        moveTo(_clock, "2026-06-30T12:00:00Z");
        MemoryDefaults defaults;
        const QByteArray before = stored(u"2026-04-01,2026-04-02,2026-06-23,2026-06-24"_s);
        defaults.values.insert(statsKey, before);
        ListeningStats stats(defaults, _clock);
        for (int i = 0; i < 29; ++i) {
            stats.tick(u"Other"_s);
        }
        QCOMPARE(defaults.data(statsKey), std::optional(before));
        QCOMPARE(stats.todayListeningTime(), 29.0);
        QCOMPARE(stats.weekListeningTime(), 39.0);
        QCOMPARE(ListeningStats::formatTime(3599.9) + ListeningStats::formatTime(7325), u"59m2h 2m"_s);
        stats.tick(band);
        const QByteArray after =
            stored(u"2026-04-02,2026-06-23,2026-06-24"_s).chopped(1) +
            R"(,{"date":"2026-06-30","totalSeconds":30,"artists":{"Band":1,"Other":29}}])";
        QCOMPARE(QJsonDocument::fromJson(defaults.data(statsKey).value()), QJsonDocument::fromJson(after));
        QCOMPARE(stats.topArtists(1), (QList{std::pair{band, 31.0}}));
        QCOMPARE(stats.topArtists(-1).size() + stats.topArtists(9).size(), 2);
    }

    void countsStreak()
    {
        ManualRunLoop clock;
        moveTo(clock, "2028-03-01T12:00:00Z");
        const QList<std::pair<QString, int>> cases = {
            {QString(), 0},
            {u"2028-02-27,2028-02-29,2028-03-01"_s, 2},
            {u"2028-02-29,2028-02-28,2028-02-29,2028-02-26"_s, 2}, // not yet today
            {u"2028-02-27,2028-02-28"_s, 0},                       // it is over
            {u"2028-03-01,2028-03-02"_s, 2}};                      // flown over the date line
        for (const auto& [dates, days] : cases) {
            MemoryDefaults defaults;
            defaults.values.insert(statsKey, stored(dates));
            QVERIFY2(ListeningStats(defaults, clock).currentStreak() == days, qPrintable(dates));
        }
    }

    void listsTracks()
    {
        for (const auto& [played, listed] : {std::pair("ABA", "ABA"), std::pair("AABB", "BA"),
                                             std::pair("abcdefghijklmn", "nmlkjihgfedc")}) {
            MemoryDefaults defaults;
            RecentlyPlayedManager manager(defaults, _clock);
            for (const QChar title : QString::fromLatin1(played)) {
                manager.record(title, band, QString(), QString());
            }
            QString titles;
            for (const PlayedTrack& track : RecentlyPlayedManager(defaults, _clock).tracks()) {
                titles += track.title;
            }
            QCOMPARE(titles, QString::fromLatin1(listed));
        }
    }

    void storesTracks()
    {
        const ManualRunLoop clock;
        MemoryDefaults defaults;
        RecentlyPlayedManager manager(defaults, clock);
        manager.record(QString(), band, QString(), QString());
        manager.record(u"Not Playing"_s, band, QString(), QString());
        QVERIFY(defaults.values.isEmpty());
        manager.record(u"Song"_s, band, u"Album"_s, u"spotify"_s);
        QCOMPARE(QJsonDocument::fromJson(defaults.data(tracksKey).value()), QJsonDocument::fromJson(R"([{
        "title": "Song", "artist": "Band", "album": "Album", "playedAt": 800000000, "source": "spotify"}])"));
        manager.clear();
        QCOMPARE(defaults.data(tracksKey), std::optional(QByteArray("[]")));
    }

    void keepsWhatCanBeRead()
    {
        moveTo(_clock, "2026-06-30T12:00:00Z");
        MemoryDefaults defaults;
        defaults.values = {{statsKey, QByteArray(R"([
        {"date":"2026-06-28","totalSeconds":"5","artists":{"Band":7,"Other":"8","Endless":1e300,"Back":-5}},
        3, {"date":"2026-06-31","totalSeconds":1}, {"totalSeconds":1},
        {"date":"2026-06-30","totalSeconds":60,"new":true}])")},
                           {tracksKey, QByteArray(R"([{"title":"A","artist":7,"playedAt":1e300},
        {"title":"","artist":"Band"}, null, {"title":"B","artist":"Band","playedAt":"today"}])")}};
        QTest::ignoreMessage(QtWarningMsg, "3 entries of a stored list cannot be read; they are left out");
        QTest::ignoreMessage(QtWarningMsg, "2 entries of a stored list cannot be read; they are left out");
        const ListeningStats stats(defaults, _clock);
        QCOMPARE(stats.weekListeningTime(), 60.0);
        QCOMPARE(stats.topArtists(9), (QList{std::pair(u"Endless"_s, 1e6), {band, 7.0}, {u"Back"_s, 0.0}}));
        const RecentlyPlayedManager tracks(defaults, _clock);
        QCOMPARE(tracks.tracks(),
                 (QList<PlayedTrack>{{u"A"_s, {}, {}, {1e300}, {}}, {u"B"_s, band, {}, {0}, {}}}));
    }

    void damage()
    {
        for (const QVariant& json :
             {QVariant(stored(u"2026-05-09"_s).chopped(1)), QVariant(u"[]"_s), QVariant(QByteArray("{}"))}) {
            MemoryDefaults defaults;
            defaults.values = {{statsKey, json}, {tracksKey, json}};
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(statsKey + u" cannot be read"));
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(tracksKey + u" cannot be read"));
            const QVariantMap before = defaults.values;
            QCOMPARE(ListeningStats(defaults, _clock).currentStreak(), 0);
            QVERIFY(RecentlyPlayedManager(defaults, _clock).tracks().isEmpty());
            QCOMPARE(defaults.values, before);
        }
    }

private:
    ManualRunLoop _clock;
};

QTEST_GUILESS_MAIN(PersonalDataTest)
#include "personal_data_test.moc"
