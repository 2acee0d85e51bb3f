#include "prefs/ListeningStats.h"

#include "base/RunLoop.h"
#include "prefs/StoredList.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>
#include <set>

namespace {

const QString recordsKey = QStringLiteral("pellar_listening_stats");

constexpr int ticksASave = 30;
constexpr int daysKept = 90;
constexpr int daysAWeek = 7;

auto isOn(const QString& date)
{
    return [date](const DailyRecord& record) { return record.date == date; };
}

} // namespace

ListeningStats::ListeningStats(UserDefaults& defaults, const RunLoop& clock)
    : _defaults(defaults)
    , _clock(clock)
    , _records(readStored(defaults, recordsKey, QList<DailyRecord>()))
{
}

ListeningStats::~ListeningStats()
{
    if (_tickCount > 0) {
        save();
    }
}

void ListeningStats::tick(const QString& artist)
{
    const QString date = DailyRecord::text(today());
    auto record = std::find_if(_records.begin(), _records.end(), isOn(date));
    if (record == _records.end()) {
        record = _records.insert(record, {date, 0, {}});
    }
    record->totalSeconds += 1;
    record->artists[artist] += 1;
    if (++_tickCount >= ticksASave) {
        save();
    }
}

double ListeningStats::todayListeningTime() const
{
    const auto record = std::find_if(_records.begin(), _records.end(), isOn(DailyRecord::text(today())));
    return record == _records.end() ? 0 : record->totalSeconds;
}

double ListeningStats::weekListeningTime() const
{
    const QString cutoff = DailyRecord::text(today().addDays(1 - daysAWeek));
    double sum = 0;
    for (const DailyRecord& record : _records) {
        sum += record.date >= cutoff ? record.totalSeconds : 0;
    }
    return sum;
}

QList<std::pair<QString, double>> ListeningStats::topArtists(int limit) const
{
    QMap<QString, double> sums;
    for (const DailyRecord& record : _records) {
        for (auto artist = record.artists.begin(); artist != record.artists.end(); ++artist) {
            sums[artist.key()] += artist.value();
        }
    }
    QList<std::pair<QString, double>> top(sums.constKeyValueBegin(), sums.constKeyValueEnd());
    std::stable_sort(top.begin(), top.end(),
                     [](const auto& a, const auto& b) { return a.second > b.second; });
    return top.first(std::clamp<qsizetype>(limit, 0, top.size()));
}

int ListeningStats::currentStreak() const
{
    std::set<QDate> days;
    for (const DailyRecord& record : _records) {
        days.insert(QDate::fromString(record.date, Qt::ISODate));
    }
    if (days.empty() || *days.rbegin() < today().addDays(-1)) {
        return 0;
    }
    int streak = 0;
    for (auto day = days.rbegin(); day != days.rend() && day->addDays(streak) == *days.rbegin(); ++day) {
        ++streak;
    }
    return streak;
}

QString ListeningStats::formatTime(double seconds)
{
    Q_ASSERT(std::isfinite(seconds));
    constexpr qint64 minute = 60;
    constexpr qint64 hour = 3600;
    constexpr double most = 1e15;
    const auto whole = static_cast<qint64>(qBound(-most, seconds, most));
    const qint64 minutes = whole / minute % minute;
    return whole < hour ? QStringLiteral("%1m").arg(minutes)
                        : QStringLiteral("%1h %2m").arg(whole / hour).arg(minutes);
}

QDate ListeningStats::today() const
{
    constexpr double millisecondsASecond = 1000;
    const double milliseconds = std::floor(_clock.now().sinceUnixEpoch() * millisecondsASecond);
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(milliseconds)).date();
}

void ListeningStats::save()
{
    const QString cutoff = DailyRecord::text(today().addDays(1 - daysKept));
    _records.removeIf([&cutoff](const DailyRecord& record) { return record.date < cutoff; });
    _defaults.setObject(recordsKey, StoredForm<QList<DailyRecord>>::of(_records));
    _tickCount = 0;
}
