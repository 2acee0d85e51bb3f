#pragma once

#include "base/RunLoop.h"
#include "base/SerialQueue.h"
#include "engine/EngineNeighbours.h"
#include "engine/Player.h"
#include "engine/PlayerStatus.h"
#include "engine/TrackClock.h"
#include "engine/TrackReaction.h"
#include "prefs/ListeningStats.h"
#include "prefs/UpNextTrack.h"

#include <QImage>
#include <QObject>
#include <QProperty>

#include <functional>
#include <memory>
#include <optional>
#ifndef Q_MOC_RUN // moc 6.4 cannot read this header
#include <stop_token>
#endif

class AudioBridge;
class AudioSourceManager;
class PowerModeManager;
class RecentlyPlayedManager;
class ThemeManager;
class UserDefaults;
struct Platform;

/// The one object that knows what is playing: it follows the players, decides which of them is shown, carries
/// out commands, and publishes the state that every view reads. All of it on the main thread.
class NowPlayingService : public QObject
{
    Q_OBJECT

public:
    using Player = ::Player;
    using UpNextTrack = ::UpNextTrack;

    /// What the engine builds on. Everything outlives it.
    struct Dependencies {
        Platform& platform;
        UserDefaults& defaults;
        AudioSourceManager& sources;
        AudioBridge& audio;
        PowerModeManager& power;
        ThemeManager& theme;
        RecentlyPlayedManager& recentlyPlayed;
    };

    /// Starts following at once: subscribes, asks the players once and starts the one-second tick.
    explicit NowPlayingService(const Dependencies& dependencies, EngineNeighbours neighbours = {},
                               QObject* parent = nullptr);
    ~NowPlayingService() override;

    /// "Not Playing" without a source, "System Audio" while the computer's sound is the source.
    QString title() const { return _title; }
    QString artist() const { return _artist; }
    QString album() const { return _album; }
    /// The cover that was found last. Null when there is none.
    QImage artwork() const { return _artwork; }
    /// The cover of this track, for all that shows it; while it is looked up, two seconds at most, still the
    /// one before. Null when there is none.
    QImage shownArtwork() const { return _shownArtwork; }
    /// Seconds; 0 when unknown.
    double duration() const { return _duration; }
    /// Seconds from the start of the track, moved on once a second.
    double elapsed() const { return _elapsed; }
    /// Where the track is at any time; changes only when it goes on otherwise than was reckoned.
    TrackClock clock() const { return _clock; }
    /// Where the track is now, in seconds from its start.
    double position() const;
    /// Has the player on show asked where it is, for those to whom a tenth of a second matters.
    void checkPosition();
    bool isPlaying() const { return _isPlaying; }
    /// Seconds left; none when no timer runs.
    std::optional<double> sleepTimerRemaining() const { return _sleepTimerRemaining; }
    /// The source whose data the fields show.
    Player activePlayer() const { return _activePlayer; }
    /// The listening times; the current track is counted every second.
    const ListeningStats& stats() const { return _stats; }

    /// Decides anew which source is shown, and reads its state.
    void refresh();

    void togglePlayPause();
    void nextTrack();
    void previousTrack();

    /// Goes to a place in the track, in seconds.
    void seekTo(double seconds);

    bool supportsLoveAction() const;
    bool supportsDislikeAction() const;
    void loveCurrentTrack();
    void dislikeCurrentTrack();

    /// Asks the player at every call.
    TrackReaction currentTrackReaction();

    /// What plays next: of Music at most `limit` tracks of its list, of Spotify the queue as last heard.
    QList<UpNextTrack> upNextTracks(int limit = 8);

    /// Has Music play a track of its list, by the number that it is listed with.
    void playUpNextTrack(qint64 playlistIndex);

    /// Runs a statement of the script language on Music, if commands go there.
    void runScriptIfMusic(const QString& statement);

    /// Pauses `minutes` (1 or more) from now. Replaces a timer that runs.
    void setSleepTimer(int minutes);
    void cancelSleepTimer();

    /// Puts a link that finds the track on the clipboard; without a player, title and artist as plain text.
    void copySongLink();

    /// Raises the window of the player that commands are sent to.
    void openInApp();

    /// Time left in the track as "-3:07"; empty when the duration is unknown.
    QString timeRemainingText() const;

    /// Whether the program may automate an application. While that does not run, the last answer holds.
    bool hasAccess(const QString& toBundleId);

    /// Has the system ask for the permission to automate an application, by its name; opens the privacy
    /// settings if it was refused before.
    void requestAccess(const QString& targetAppName);
    void openAutomationSettings();

    /// Asks the search service ("https://host") for the cover of a song, preferably on this album, and loads
    /// it. Blocks for some seconds, less when told to stop. Null when there is none.
    static QImage lookupiTunesArtwork(const QString& service, const QString& title, const QString& artist,
                                      const QString& album, const std::stop_token& stop = {});

Q_SIGNALS:
    void titleChanged();
    void artistChanged();
    void albumChanged();
    void artworkChanged();
    void shownArtworkChanged();
    void durationChanged();
    void elapsedChanged();
    void clockChanged();
    void isPlayingChanged();
    void sleepTimerRemainingChanged();
    void activePlayerChanged();

private:
    enum class Direction { next, previous };
    using ArtworkLoad = std::function<QImage(const std::stop_token&)>;

    /// What is published together.
    struct Showing {
        QString title;
        QString artist = {};
        QString album = {};
        double duration = 0; ///< seconds
        double elapsed = 0;  ///< seconds
        bool isPlaying = false;
        Player activePlayer = Player::none;
    };

    /// What a cover belongs to.
    struct ArtworkOwner {
        Player player = Player::none;
        QString title;
        QString artist;
        QString album;
        QString address; ///< of the cover, as the player tells it; empty when it does not

        friend bool operator==(const ArtworkOwner&, const ArtworkOwner&) = default;
    };

    // NowPlayingService.cpp
    void subscribe();
    void tick();
    Showing showing() const;
    void publish(const Showing& next, std::optional<double> place = std::nullopt);
    TrackClock reckoned(const Showing& next, double place) const;
    void followPlace(double place);
    std::optional<QString> runScript(const QString& source);
    bool isRunning(Player player) const;
    bool isEnabledSource(Player player) const;
    bool isEnabledAndRunning(Player player) const;
    void clearState();
    void showSystemAudioState(bool isPlaying);
    void refreshLater(double seconds = 0);

    // Refresh.cpp
    bool pollPlayer(Player player, bool playingOnly);
    void adopt(Player player, const PlayerStatus& status);
    bool followActivePlayer(bool musicRunning, bool spotifyRunning);
    bool followPlayers(bool musicRunning, bool spotifyRunning, bool playingOnly);
    static QString trackKey(const QString& title, const QString& artist);
    void beginTrack(const QString& key, Player source);

    // NotifiedState.cpp
    void handlePlayerNotification(Player player, const QVariantMap& userInfo);

    // Artwork.cpp
    void clearArtwork();
    void followArtworkOwner(const QString& address);
    void updateShownArtwork();
    void fetchAppleMusicArtwork();
    void fetchSpotifyArtwork(const QString& url);
    void fetchArtwork(const QString& source, ArtworkLoad load, std::function<bool()> isWanted);

    // SystemAudioMode.cpp
    bool followSystemAudio();
    void enterSystemAudioMode();
    void applySystemAudioActivity(const QList<float>& bands);
    void countSystemAudioFrame(bool isLoudFrame);
    bool isLoud(const QList<float>& bands) const;
    double sincePlayerPause() const;

    // PlaybackCommands.cpp
    Player commandTarget() const;
    void skip(Direction direction);
    void sendMediaKey(MediaKeys::Key key);
    void scheduleHijackSilencer();
    void tickSleepTimer();

    Platform& _platform;
    UserDefaults& _defaults;
    AudioSourceManager& _sources;
    AudioBridge& _audio;
    PowerModeManager& _power;
    ThemeManager& _theme;
    RecentlyPlayedManager& _recentlyPlayed;
    EngineNeighbours _neighbours;

    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(NowPlayingService, QString, _title, QStringLiteral("Not Playing"),
                                         &NowPlayingService::titleChanged)
    Q_OBJECT_BINDABLE_PROPERTY(NowPlayingService, QString, _artist, &NowPlayingService::artistChanged)
    Q_OBJECT_BINDABLE_PROPERTY(NowPlayingService, QString, _album, &NowPlayingService::albumChanged)
    Q_OBJECT_BINDABLE_PROPERTY(NowPlayingService, QImage, _artwork, &NowPlayingService::artworkChanged)
    Q_OBJECT_BINDABLE_PROPERTY(NowPlayingService, QImage, _shownArtwork,
                               &NowPlayingService::shownArtworkChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(NowPlayingService, double, _duration, 0,
                                         &NowPlayingService::durationChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(NowPlayingService, double, _elapsed, 0,
                                         &NowPlayingService::elapsedChanged)
    Q_OBJECT_BINDABLE_PROPERTY(NowPlayingService, TrackClock, _clock, &NowPlayingService::clockChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(NowPlayingService, bool, _isPlaying, false,
                                         &NowPlayingService::isPlayingChanged)
    Q_OBJECT_BINDABLE_PROPERTY(NowPlayingService, std::optional<double>, _sleepTimerRemaining,
                               &NowPlayingService::sleepTimerRemainingChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(NowPlayingService, Player, _activePlayer, Player::none,
                                         &NowPlayingService::activePlayerChanged)

    ListeningStats _stats;
    std::unique_ptr<RunLoop::Timer> _sleepTimer;
    std::unique_ptr<RunLoop::Timer> _timer;
    qint64 _tickCount = 0;
    QString _lastTrackKey;           ///< identity of the last track adopted from a player
    QString _currentArtworkSource;   ///< identity of the artwork on show; empty when none was fetched
    QString _wantedArtworkSource;    ///< identity of the one that the track on show should have
    QString _requestedArtworkSource; ///< the same of the one asked for last, until it has come or failed
    ArtworkOwner _artworkOwner;      ///< what the artwork was found for
    ArtworkOwner _trackOnShow;
    bool _isArtworkAwaited = false; ///< the cover of the track before may stay
    int _artworkRound = 0;
    int _systemAudioSilenceTicks = 0;
    int _systemAudioActivityTicks = 0;
    bool _systemAudioUserPaused = false;
    Uptime _systemAudioStickUntil = Uptime::distantPast();
    Uptime _systemAudioEngagedUntil = Uptime::distantPast();
    Uptime _lastSourcePauseTime = Uptime::distantPast();
    std::stop_source _artworkStop;
    SerialQueue _artworkQueue{QStringLiteral("com.orvalen.pellar.artwork")};
};
