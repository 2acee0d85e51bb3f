#pragma once

#include "prefs/DailyRecord.h"

#include <utility>

class RunLoop;
class UserDefaults;

/// Listening time by calendar day and artist over the last ninety days. A day is that of the time zone set at
/// the time of listening.
class ListeningStats
{
public:
    /// Starts empty when what is stored cannot be read, and leaves that as it is until the first save.
    ListeningStats(UserDefaults& defaults, const RunLoop& clock);
    /// Saves what has been counted since the last save.
    ~ListeningStats();
    ListeningStats(const ListeningStats&) = delete;
    ListeningStats& operator=(const ListeningStats&) = delete;

    /// Counts a second of playback by the artist. Every thirtieth saves.
    void tick(const QString& artist);

    /// Seconds.
    double todayListeningTime() const;
    /// Seconds, today and the six days before it.
    double weekListeningTime() const;

    /// The artists listened to longest, at most `limit` of them, with their seconds.
    QList<std::pair<QString, double>> topArtists(int limit) const;

    /// How many days in a row, up to today or, as long as today has no music, up to yesterday.
    int currentStreak() const;

    /// "42m", from an hour on "2h 5m". Finite values only.
    static QString formatTime(double seconds);

private:
    QDate today() const;
    void save();

    UserDefaults& _defaults;
    const RunLoop& _clock;
    QList<DailyRecord> _records; ///< in the order in which the days were first seen
    int _tickCount = 0;          ///< since the last save
};
