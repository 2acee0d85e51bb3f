#pragma once

#include "base/Uptime.h"
#include "linux/mpris/MprisTrack.h"
#include "linux/mpris/MprisTrackList.h"
#include "linux/mpris/PositionClock.h"

#include <MprisPlayerProxy.h>
#include <MprisRootProxy.h>
#include <PropertiesProxy.h>
#include <QObject>
#include <QStringList>

#include <optional>

class RunLoop;

/// A mirror of one MPRIS player, kept current by its signals. Nothing here waits for the player: questions
/// and commands are sent and answered when the player answers, each with a time limit.
class MprisPlayer : public QObject
{
    Q_OBJECT

public:
    enum class Status { stopped, paused, playing };

    /// What the player shows once a burst of its signals has settled.
    struct State {
        Status status = Status::stopped;
        MprisTrack track;

        friend bool operator==(const State&, const State&) = default;
    };

    /// `uniqueName` is the player's own name on the bus (":1.42").
    MprisPlayer(const QDBusConnection& bus, QString uniqueName, RunLoop& runLoop, QObject* parent);

    QString uniqueName() const { return _uniqueName; }

    /// Its well-known names without "org.mpris.MediaPlayer2.".
    QStringList suffixes;

    /// Once the bus has told it.
    std::optional<qint64> processId;

    const State& state() const { return _published; }
    bool isPlaying() const { return _published.status == Status::playing; }

    /// Seconds from the start of the track.
    double position() const;

    /// When it was last seen playing: now, while it plays; the distant past, if it never did.
    Uptime lastPlayed() const;

    /// When it began to play, if it plays.
    Uptime playingSince() const { return _playingSince; }

    /// Whether it has told its state at all.
    bool isReady() const { return _isReady; }

    /// Whether the bus forbids us to talk to it.
    bool isRefused() const { return _isRefused; }

    /// Asks where the player is; once more, if that question is still open. The answer corrects the
    /// reckoning.
    void synchronise();

    void playPause() { command("PlayPause", _player.PlayPause()); }
    void play() { command("Play", _player.Play()); }
    void pause() { command("Pause", _player.Pause()); }
    void next() { command("Next", _player.Next()); }
    void previous() { command("Previous", _player.Previous()); }

    /// Goes to a place in the current track, in seconds; kept inside the track.
    void setPosition(double seconds);

    /// Brings the player's window to the front, if it has one.
    void raise();

    /// The tracks that it is to play, in its order.
    MprisTrackList& trackList() { return _trackList; }

    /// What the bus brings: the signals PropertiesChanged and Seeked of this player.
    void propertiesChanged(const QVariantMap& changed, const QStringList& invalidated);
    void seeked(qlonglong microseconds);

Q_SIGNALS:
    void becameReady();

    /// The settled state has changed.
    void changed();

    /// The position has moved by more than playing explains.
    void jumped();

private:
    void fetchAll();
    void fetchPosition();
    void apply(const QVariantMap& properties);
    void applyStatus(const QString& text);
    void applyMetadata(const QVariant& metadata);
    void command(const char* name, const QDBusPendingReply<>& call);
    template<typename... Values, typename Answer>
    void listen(const QDBusPendingReply<Values...>& call, Answer answer);
    void heard();
    void updateClock();
    void scheduleSettling();
    void settle();

    QString _uniqueName;
    RunLoop& _runLoop;
    MprisRootProxy _root;
    MprisPlayerProxy _player;
    PropertiesProxy _properties;
    MprisTrackList _trackList;
    State _latest;
    State _published;
    PositionClock _clock;
    Uptime _lastPlayed = Uptime::distantPast();
    Uptime _playingSince = Uptime::distantPast();
    Uptime _lastHeard = Uptime::distantPast();
    bool _isReady = false;
    bool _isRefused = false;
    bool _isSilent = false;
    bool _isFetchingAll = false;
    bool _isFetchingPosition = false;
    bool _isPositionWanted = false;
    bool _isSettling = false;
    Uptime _settlingSince;
    int _settlingRound = 0;
};
