#include "linux/mpris/MprisPlayer.h"

#include "base/RunLoop.h"
#include "linux/dbus/DBusValue.h"
#include "linux/dbus/WhenAnswered.h"

#include <QLoggingCategory>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace {

Q_LOGGING_CATEGORY(log, "com.orvalen.pellar.mpris", QtWarningMsg)

const QString objectPath = QStringLiteral("/org/mpris/MediaPlayer2");
const QString playerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");

constexpr int timeLimitMilliseconds = 2000;
constexpr double microsecondsASecond = 1e6;
constexpr double announcedJump = 0.5; // seconds off the reckoning that make a Seeked signal worth telling

// How long a burst of signals is given to come to rest, in seconds.
constexpr double ordinaryRest = 0.01;
constexpr double incompleteTrackRest = 0.1; // artist and length often follow the title
constexpr double betweenTracksRest = 0.15;  // players say "Stopped", or show no title, between two tracks
constexpr double longestRest = 0.3;

bool isObjectPath(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("^(/[A-Za-z0-9_]+)+$"));
    return pattern.match(text).hasMatch();
}

bool isTimeOut(const QDBusError& error)
{
    return error.type() == QDBusError::NoReply || error.type() == QDBusError::Timeout ||
           error.type() == QDBusError::TimedOut;
}

double restOf(const MprisPlayer::State& before, const MprisPlayer::State& after)
{
    using Status = MprisPlayer::Status;
    const bool isBetweenTracks =
        before.status == Status::playing && (after.status == Status::stopped || after.track.isBlank());
    if (isBetweenTracks || (after.status == Status::playing && after.track.isBlank())) {
        return betweenTracksRest;
    }
    const bool isOtherTrack = before.track.id != after.track.id || before.track.title != after.track.title;
    return isOtherTrack && !after.track.isComplete() ? incompleteTrackRest : ordinaryRest;
}

} // namespace

MprisPlayer::MprisPlayer(const QDBusConnection& bus, QString uniqueName, RunLoop& runLoop, QObject* parent)
    : QObject(parent)
    , _uniqueName(std::move(uniqueName))
    , _runLoop(runLoop)
    , _root(_uniqueName, objectPath, bus)
    , _player(_uniqueName, objectPath, bus)
    , _properties(_uniqueName, objectPath, bus)
    , _trackList(bus, _uniqueName, runLoop)
{
    for (QDBusAbstractInterface* const proxy :
         std::initializer_list<QDBusAbstractInterface*>{&_root, &_player, &_properties}) {
        proxy->setTimeout(timeLimitMilliseconds);
    }
    fetchAll();
}

double MprisPlayer::position() const
{
    return _clock.at(_runLoop.uptime());
}

Uptime MprisPlayer::lastPlayed() const
{
    return isPlaying() ? _runLoop.uptime() : _lastPlayed;
}

void MprisPlayer::synchronise()
{
    if (_isReady) {
        fetchPosition();
    } else if (!_isFetchingAll) {
        fetchAll();
    }
}

void MprisPlayer::setPosition(double seconds)
{
    if (!std::isfinite(seconds)) {
        return;
    }
    const double target = std::clamp(seconds, 0.0, _latest.track.length.value_or(seconds < 0 ? 0 : seconds));
    const auto microseconds = [](double duration) {
        return static_cast<qlonglong>(std::llround(duration * microsecondsASecond));
    };
    // Without a proper track identifier the absolute call is void, so the distance is sent instead.
    if (isObjectPath(_latest.track.id)) {
        command("SetPosition", _player.SetPosition(QDBusObjectPath(_latest.track.id), microseconds(target)));
    } else {
        command("Seek", _player.Seek(microseconds(target - position())));
    }
    _clock.jump(target, _runLoop.uptime());
    fetchPosition();
}

void MprisPlayer::raise()
{
    command("Raise", _root.Raise());
}

void MprisPlayer::propertiesChanged(const QVariantMap& changed, const QStringList& invalidated)
{
    heard();
    apply(changed);
    if (!invalidated.isEmpty() && !_isFetchingAll) {
        fetchAll();
    }
}

void MprisPlayer::seeked(qlonglong microseconds)
{
    heard();
    const double seconds = static_cast<double>(microseconds) / microsecondsASecond;
    const bool isNews = std::abs(seconds - position()) > announcedJump;
    _clock.jump(seconds, _runLoop.uptime());
    if (isNews && _isReady) {
        Q_EMIT jumped();
    }
}

void MprisPlayer::fetchAll()
{
    _isFetchingAll = true;
    listen(_properties.GetAll(playerInterface), [this](const QDBusPendingReply<QVariantMap>& reply) {
        _isFetchingAll = false;
        _isRefused = reply.isError() && reply.error().type() == QDBusError::AccessDenied;
        if (!reply.isValid()) {
            return;
        }
        apply(reply.value());
        if (!_isReady) {
            settle();
            _isReady = true;
            Q_EMIT becameReady();
        }
    });
}

void MprisPlayer::fetchPosition()
{
    if (_isFetchingPosition) {
        _isPositionWanted = true; // what is on its way may be out of date
        return;
    }
    _isFetchingPosition = true;
    _isPositionWanted = false;
    listen(_properties.Get(playerInterface, QStringLiteral("Position")),
           [this](const QDBusPendingReply<QDBusVariant>& reply) {
               _isFetchingPosition = false;
               if (!reply.isValid()) {
                   return;
               }
               apply({{QStringLiteral("Position"), reply.value().variant()}});
               if (_isPositionWanted) {
                   fetchPosition();
               }
           });
}

void MprisPlayer::apply(const QVariantMap& properties)
{
    for (const auto& [name, value] : properties.asKeyValueRange()) {
        if (name == QStringLiteral("Metadata")) {
            applyMetadata(value);
        } else if (name == QStringLiteral("PlaybackStatus")) {
            applyStatus(value.toString());
        } else if (name == QStringLiteral("Rate")) {
            _clock.setRate(value.toDouble(), _runLoop.uptime());
        }
    }
    // Last: a new track in the same message starts the clock anew.
    bool isNumber = false;
    const double microseconds = properties.value(QStringLiteral("Position")).toDouble(&isNumber);
    if (isNumber && _clock.observe(microseconds / microsecondsASecond, _runLoop.uptime()) && _isReady) {
        Q_EMIT jumped();
    }
    scheduleSettling();
}

void MprisPlayer::applyStatus(const QString& text)
{
    static const QMap<QString, Status> known = {{QStringLiteral("Playing"), Status::playing},
                                                {QStringLiteral("Paused"), Status::paused},
                                                {QStringLiteral("Stopped"), Status::stopped}};
    if (!known.contains(text)) {
        qCWarning(log, "%ls has the unknown playback status \"%ls\"", qUtf16Printable(suffixes.join(u' ')),
                  qUtf16Printable(text));
        return;
    }
    const Status status = known[text];
    if (status == _latest.status) {
        return;
    }
    _latest.status = status;
    updateClock();
    fetchPosition();
}

void MprisPlayer::applyMetadata(const QVariant& metadata)
{
    const auto dictionary = DBusValue::dictionary(metadata);
    if (!dictionary) {
        qCWarning(log, "%ls has metadata of the type %s", qUtf16Printable(suffixes.join(u' ')),
                  metadata.typeName());
        return;
    }
    const MprisTrack track = MprisTrack::fromMetadata(*dictionary);
    const bool isOtherTrack = track.id != _latest.track.id || track.title != _latest.track.title;
    _latest.track = track;
    _clock.setLength(track.length);
    if (!isOtherTrack || !_isReady) {
        return;
    }
    _clock.restart(_runLoop.uptime());
    fetchPosition();
    // Some players still answer with the old track's position at first.
    _runLoop.after(1, this, [this] { fetchPosition(); });
}

void MprisPlayer::command(const char* name, const QDBusPendingReply<>& call)
{
    listen(call, [name](const QDBusPendingReply<>& reply) {
        if (reply.isError()) {
            qCInfo(log, "%s was refused: %ls", name, qUtf16Printable(reply.error().message()));
        }
    });
}

/// Takes the answer to a call, and takes note of whether the player answers at all.
template<typename... Values, typename Answer>
void MprisPlayer::listen(const QDBusPendingReply<Values...>& call, Answer answer)
{
    whenAnswered(call, this,
                 [this, sent = _runLoop.uptime(),
                  answer = std::move(answer)](const QDBusPendingReply<Values...>& reply) {
                     if (!isTimeOut(reply.error())) {
                         heard();
                     } else if (_lastHeard <= sent) {
                         _isSilent = true;
                         updateClock();
                     }
                     answer(reply);
                 });
}

void MprisPlayer::heard()
{
    _lastHeard = _runLoop.uptime();
    if (!_isSilent) {
        return;
    }
    _isSilent = false;
    updateClock();
    fetchPosition();
}

/// A player that has stopped answering has most likely stopped sounding, too.
void MprisPlayer::updateClock()
{
    _clock.setRunning(_latest.status == Status::playing && !_isSilent, _runLoop.uptime());
}

void MprisPlayer::scheduleSettling()
{
    if (!_isReady || _latest == _published) {
        return;
    }
    const Uptime now = _runLoop.uptime();
    if (!_isSettling) {
        _isSettling = true;
        _settlingSince = now;
    }
    const double rest = std::min(restOf(_published, _latest), longestRest - (now - _settlingSince));
    const int round = ++_settlingRound;
    _runLoop.after(std::max(0.0, rest), this, [this, round] {
        if (round == _settlingRound) {
            settle();
        }
    });
}

void MprisPlayer::settle()
{
    _isSettling = false;
    if (_latest == _published) {
        return;
    }
    const Uptime now = _runLoop.uptime();
    const bool wasPlaying = isPlaying();
    _published = _latest;
    if (isPlaying() && !wasPlaying) {
        _playingSince = now;
    } else if (wasPlaying && !isPlaying()) {
        _lastPlayed = now;
    }
    if (_isReady) {
        Q_EMIT changed();
    }
}
