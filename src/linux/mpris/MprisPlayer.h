#pragma once

#include "base/Uptime.h"
#include "linux/mpris/MprisTrack.h"
#include "linux/mpris/MprisTrackList.h"
#include "linux/mpris/PositionClock.h"
#include "linux/mpris/QuestionPacer.h"

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

    /// The same, but below 0 while a track that was announced early has yet to begin.
    double place() const;

    /// Track seconds that pass in a second; 0 while it stands still.
    double rate() const { return _clock.rate(); }

    /// When it was last seen playing: now, while it plays; the distant past, if it never did.
    Uptime lastPlayed() const;

    /// When it began to play, if it plays.
    Uptime playingSince() const { return _playingSince; }

    /// Whether it has told its state at all.
    bool isReady() const { return _isReady; }

    /// Whether the bus forbids us to talk to it.
    bool isRefused() const { return _isRefused; }

    /// Asks the player for all that it tells, soon, if it has answered lately. The answer corrects the
    /// mirror.
    void synchronise() { _questions.askIfOld(); }

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

    /// It has shown up on the bus, by a name of its own or by a signal.
    void showedLife();

Q_SIGNALS:
    /// It has told its state for the first time, or for the first time since it refused to.
    void becameReady();

    /// The settled state has changed by something that is news: another track, or what becomes of it.
    void changed();

    /// There is more to read than changed() tells, if that was emitted at all: the position has moved by more
    /// than playing explains, the player has stopped, the cover has come.
    void outdated();

    /// It is elsewhere in the track of its state than was reckoned, or goes at another rate.
    void moved();

private:
    void ask();
    void take(const QDBusPendingReply<QVariantMap>& answer);
    void apply(const QVariantMap& properties, bool isAnnounced);
    void applyStatus(const QString& text);
    void applyMetadata(const QVariant& metadata);
    void command(const char* name, const QDBusPendingReply<>& call);
    template<typename... Values, typename Answer>
    void listen(const QDBusPendingReply<Values...>& call, Answer answer);
    void heard();
    void complain(const QString& complaint);
    void updateClock();
    void tellMove();
    void scheduleSettling();
    void settle();

    QString _uniqueName;
    RunLoop& _runLoop;
    MprisRootProxy _root;
    MprisPlayerProxy _player;
    PropertiesProxy _properties;
    MprisTrackList _trackList;
    QuestionPacer _questions;
    State _latest;
    State _published;
    PositionClock _clock;
    PositionClock _toldClock; ///< as it was when `moved` was emitted last
    Uptime _lastPlayed = Uptime::distantPast();
    Uptime _playingSince = Uptime::distantPast();
    Uptime _lastHeard = Uptime::distantPast();
    bool _isReady = false;
    bool _isRefused = false;
    bool _isSilent = false;
    QMap<QString, Uptime> _announced; ///< when the player told a property by itself
    QString _complaint;               ///< the last, which is not repeated
    bool _isSettling = false;
    Uptime _settlingSince;
    int _settlingRound = 0;
};
