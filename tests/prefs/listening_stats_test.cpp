#include "prefs/ListeningStats.h"
#include "support/ManualRunLoop.h"
#include "support/MemoryDefaults.h"

#include <QJsonDocument>
#include <QTest>

namespace {

const QString key = QStringLiteral("pellar_listening_stats");
const QString band = QStringLiteral("Band");

void moveTo(ManualRunLoop& clock, const char* utc)
{
    const auto time = QDateTime::fromString(QString::fromLatin1(utc), Qt::ISODate);
    clock.advance(Date{static_cast<double>(time.toSecsSinceEpoch()) - Date::unixOffset} - clock.now());
}

/// A record of ten seconds of Band on each of the days.
QByteArray stored(const QStringList& dates)
{
    QStringList records;
    for (const QString& date : dates) {
        records.append(QStringLiteral(R"({"date":"%1","totalSeconds":10,"artists":{"Band":10}})").arg(date));
    }
    return '[' + records.join(u',').toLatin1() + ']';
}

} // namespace

class ListeningStatsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { qunsetenv("TZ"); }
    void calendarDay_data();
    void calendarDay();
    void savesEveryThirtiethTick();
    void streak_data();
    void streak();
    void ranksArtists();
    void damage_data();
    void damage();
    void format_data();
    void format();
};

void ListeningStatsTest::calendarDay_data()
{
    QTest::addColumn<QByteArrayList>("zones");
    QTest::addColumn<QByteArrayList>("times");
    QTest::addColumn<QByteArray>("days");
    const QByteArrayList berlin(2, "Europe/Berlin");
    QTest::newRow("midnight") << QByteArrayList(2, "America/New_York")
                              << QByteArrayList{"2026-07-02T03:59:59Z", "2026-07-02T04:00:00Z"}
                              << QByteArray("2026-07-01,2026-07-02");
    QTest::newRow("day of 23 hours") << berlin
                                     << QByteArrayList{"2027-03-27T23:00:00Z", "2027-03-28T22:00:00Z"}
                                     << QByteArray("2027-03-28,2027-03-29");
    QTest::newRow("day of 25 hours") << berlin
                                     << QByteArrayList{"2026-10-24T22:00:00Z", "2026-10-25T22:59:59Z"}
                                     << QByteArray("2026-10-25");
    QTest::newRow("over the date line, while running")
        << QByteArrayList{"Pacific/Kiritimati", "Pacific/Pago_Pago"}
        << QByteArrayList{"2026-07-02T10:00:00Z", "2026-07-02T10:00:01Z"}
        << QByteArray("2026-07-03,2026-07-01");
}

void ListeningStatsTest::calendarDay()
{
    QFETCH(QByteArrayList, zones);
    QFETCH(QByteArrayList, times);
    ManualRunLoop clock;
    MemoryDefaults defaults;
    {
        ListeningStats stats(defaults, clock);
        for (qsizetype i = 0; i < times.size(); ++i) {
            qputenv("TZ", zones[i]);
            moveTo(clock, times[i]);
            stats.tick(band);
        }
    }
    QByteArrayList days;
    const QVariantList records = QJsonDocument::fromJson(defaults.data(key).value()).toVariant().toList();
    for (const QVariant& record : records) {
        days.append(record.toMap().value(QStringLiteral("date")).toByteArray());
    }
    QTEST(days.join(','), "days");
}

void ListeningStatsTest::savesEveryThirtiethTick()
{
    ManualRunLoop clock;
    moveTo(clock, "2026-06-30T12:00:00Z");
    MemoryDefaults defaults;
    const QByteArray before =
        stored(QStringLiteral("2026-04-01,2026-04-02,2026-06-23,2026-06-24").split(u','));
    defaults.values.insert(key, before);
    ListeningStats stats(defaults, clock);
    for (int i = 0; i < 29; ++i) {
        stats.tick(QStringLiteral("Other"));
    }
    QCOMPARE(defaults.data(key), std::optional(before));
    QCOMPARE(stats.todayListeningTime(), 29.0);
    QCOMPARE(stats.weekListeningTime(), 39.0);
    stats.tick(band);
    const QByteArray after =
        stored(QStringLiteral("2026-04-02,2026-06-23,2026-06-24").split(u',')).chopped(1) +
        R"(,{"date":"2026-06-30","totalSeconds":30,"artists":{"Band":1,"Other":29}}])";
    QCOMPARE(QJsonDocument::fromJson(defaults.data(key).value()), QJsonDocument::fromJson(after));
}

void ListeningStatsTest::streak_data()
{
    QTest::addColumn<QString>("dates");
    QTest::addColumn<int>("days");
    const auto row = [](const char* name, const char* dates, int days) {
        QTest::newRow(name) << QString::fromLatin1(dates) << days;
    };
    row("none", "", 0);
    row("one, long ago", "2020-01-01", 1);
    row("over the ends of a month and a year", "2027-12-30,2027-12-31,2028-01-01", 3);
    row("gap", "2026-05-01,2026-05-03,2026-05-04", 2);
    row("out of order, twice, and no day", "2026-05-04,2026-05-03,2026-05-04,someday,2026-05-02", 3);
    row("leap day left out", "2028-02-28,2028-03-01", 1);
}

void ListeningStatsTest::streak()
{
    QFETCH(QString, dates);
    ManualRunLoop clock;
    MemoryDefaults defaults;
    defaults.values.insert(key, stored(dates.split(u',', Qt::SkipEmptyParts)));
    QTEST(ListeningStats(defaults, clock).currentStreak(), "days");
}

void ListeningStatsTest::ranksArtists()
{
    ManualRunLoop clock;
    MemoryDefaults defaults;
    defaults.values.insert(key, stored({QStringLiteral("2026-01-01"), QStringLiteral("2026-01-02")}));
    ListeningStats stats(defaults, clock);
    for (int i = 0; i < 21; ++i) {
        stats.tick(QStringLiteral("Most"));
    }
    stats.tick(QStringLiteral("Least"));
    const std::pair most{QStringLiteral("Most"), 21.0};
    QCOMPARE(stats.topArtists(2), (QList{most, std::pair{band, 20.0}}));
    QCOMPARE(stats.topArtists(9).size(), 3);
    QVERIFY(stats.topArtists(0).isEmpty() && stats.topArtists(-1).isEmpty());
}

void ListeningStatsTest::damage_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("cut short") << stored({QStringLiteral("2026-05-09")}).chopped(1);
    QTest::newRow("object") << QByteArray("{}");
    QTest::newRow("second entry is no record") << stored({QStringLiteral("2026-05-09")}).chopped(1) + ",3]";
    QTest::newRow("no artists") << QByteArray(R"([{"date":"2026-05-09","totalSeconds":1}])");
    QTest::newRow("time is a text") << QByteArray(
        R"([{"date":"2026-05-09","totalSeconds":1,"artists":{"Band":"1"}}])");
    QTest::newRow("time without end")
        << QByteArray(R"([{"date":"2026-05-09","totalSeconds":1e308,"artists":{}}])");
}

void ListeningStatsTest::damage()
{
    QFETCH(QByteArray, json);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be read")));
    ManualRunLoop clock;
    MemoryDefaults defaults;
    defaults.values.insert(key, json);
    {
        ListeningStats stats(defaults, clock);
        QVERIFY(stats.topArtists(1).isEmpty());
    }
    QCOMPARE(defaults.data(key), std::optional(json));
}

void ListeningStatsTest::format_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("text");
    const auto row = [](double seconds, const char* text) {
        QTest::newRow(text) << seconds << QString::fromLatin1(text);
    };
    row(59.9, "0m");
    row(3599.9, "59m");
    row(3659, "1h 0m");
    row(7325, "2h 2m");
    row(360'000, "100h 0m");
}

void ListeningStatsTest::format()
{
    QFETCH(double, seconds);
    QTEST(ListeningStats::formatTime(seconds), "text");
}

QTEST_GUILESS_MAIN(ListeningStatsTest)
#include "listening_stats_test.moc"
