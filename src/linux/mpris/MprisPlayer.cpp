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
constexpr double answerAge = 1;      // seconds for which an answer is good enough
constexpr double questionRest = 0.1; // seconds between two questions
// A timer may fire a little early.
constexpr double catchingUp = 1.1 * PositionClock::catchingUp;
constexpr double announcedJump = 0.5; // seconds off the reckoning that make a Seeked signal worth telling

// How long a burst of signals is given to come to rest, in seconds.
constexpr double noRest = 0; // what tells all of a track at once is followed by nothing
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

/// Players that tell of a track bit by bit leave out at first what comes later.
bool isOther(const QString& before, const QString& after)
{
    return before != after && !before.isEmpty();
}

bool isOtherTrack(const MprisTrack& before, const MprisTrack& after)
{
    return before.title != after.title || isOther(before.id, after.id) ||
           isOther(before.artist, after.artist) || isOther(before.album, after.album);
}

/// Whether a notification is due. A cover or a length that comes late is none of it: to tell of a paused
/// player that it is paused would take the display from what plays.
bool isNews(const MprisPlayer::State& before, const MprisPlayer::State& after)
{
    return before.status != after.status || before.track.id != after.track.id ||
           before.track.title != after.track.title || before.track.artist != after.track.artist ||
           before.track.album != after.track.album;
}

/// Whether a notification does not tell it all: it never ends the state, and a track that bears the name of
/// the one before is the same to it.
bool isMoreThanNews(const MprisPlayer::State& before, const MprisPlayer::State& after)
{
    const bool isOver = after.status == MprisPlayer::Status::stopped || after.track.isBlank();
    return isOver || (before.track.title == after.track.title && before.track.artist == after.track.artist &&
                      before.track != after.track);
}

double restOf(const MprisPlayer::State& before, const MprisPlayer::State& after)
{
    using Status = MprisPlayer::Status;
    const bool isBetweenTracks =
        before.status == Status::playing && (after.status == Status::stopped || after.track.isBlank());
    if (isBetweenTracks || (after.status == Status::playing && after.track.isBlank())) {
        return betweenTracksRest;
    }
    const bool isNewId = before.track.id != after.track.id;
    const bool isNewTitle = before.track.title != after.track.title;
    if ((isNewId || isNewTitle) && !after.track.isComplete()) {
        return incompleteTrackRest;
    }
    return isNewId && isNewTitle ? noRest : ordinaryRest;
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
    ask();
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
    const double age = _runLoop.uptime() - _answered;
    if (age > answerAge) {
        ask();
    } else {
        askLater(answerAge - age);
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
    askLater(catchingUp);
}

void MprisPlayer::raise()
{
    command("Raise", _root.Raise());
}

void MprisPlayer::showedLife()
{
    heard();
    if (!_isReady || _isRefused) {
        _backoff.reset();
        ask();
    }
}

void MprisPlayer::propertiesChanged(const QVariantMap& changed, const QStringList& invalidated)
{
    showedLife();
    for (const QString& name : changed.keys()) {
        _announced[name] = _runLoop.uptime();
    }
    for (const QString& name : invalidated) {
        _announced.remove(name);
    }
    apply(changed);
    if (!invalidated.isEmpty()) {
        ask();
    }
}

void MprisPlayer::seeked(qlonglong microseconds)
{
    showedLife();
    const double seconds = static_cast<double>(microseconds) / microsecondsASecond;
    const bool isNews = std::abs(seconds - position()) > announcedJump;
    _clock.jump(seconds, _runLoop.uptime());
    askLater(catchingUp);
    if (isNews && _isReady) {
        Q_EMIT outdated();
    }
}

/// Everything at once: players correct the length of a track, too, without a word.
void MprisPlayer::ask()
{
    const Uptime now = _runLoop.uptime();
    if (_isAsking) {
        _isAskWanted = true;
        return;
    }
    if (now - _asked < questionRest) {
        if (!std::exchange(_isResting, true)) {
            _runLoop.after(questionRest, this, [this] {
                _isResting = false;
                ask();
            });
        }
        return;
    }
    _isAsking = true;
    _isAskWanted = false;
    _asked = now;
    listen(_properties.GetAll(playerInterface), [this](const QDBusPendingReply<QVariantMap>& answer) {
        _isAsking = false;
        _answered = _runLoop.uptime();
        take(answer);
        if (_isAskWanted) {
            ask();
        }
    });
}

/// At the latest of the times for which it was called: an answer before that may come too early.
void MprisPlayer::askLater(double seconds)
{
    const Uptime due = _runLoop.uptime() + seconds;
    if (due <= _askDue) {
        return;
    }
    _askDue = due;
    _runLoop.after(seconds, this, [this, due] {
        if (due == _askDue) {
            _askDue = Uptime::distantPast();
            ask();
        }
    });
}

/// A player may take its name before it can answer, or be permitted later.
void MprisPlayer::askAgain()
{
    if (const auto delay = _backoff.next()) {
        _runLoop.after(*delay, this, [this, round = ++_retryRound] {
            if (round == _retryRound) {
                ask();
            }
        });
    }
}

void MprisPlayer::take(const QDBusPendingReply<QVariantMap>& answer)
{
    const bool wasRefused = _isRefused;
    _isRefused = answer.isError() && answer.error().type() == QDBusError::AccessDenied;
    if (!answer.isValid()) {
        if (!_isReady || _isRefused) {
            askAgain();
        }
        return;
    }
    _backoff.reset();
    ++_retryRound;
    // What the player has announced holds for a while: its answers may still be from before.
    QVariantMap properties = answer.value();
    for (const auto& [name, time] : _announced.asKeyValueRange()) {
        if (_isReady && _runLoop.uptime() - time < PositionClock::catchingUp) {
            properties.remove(name);
        }
    }
    apply(properties);
    if (!_isReady || wasRefused) {
        settle();
        _isReady = true;
        _trackList.learn();
        Q_EMIT becameReady();
    }
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
    applyPosition(properties.value(QStringLiteral("Position"))); // a new track has started the clock anew
    scheduleSettling();
}

void MprisPlayer::applyPosition(const QVariant& microseconds)
{
    bool isNumber = false;
    const double seconds = microseconds.toDouble(&isNumber) / microsecondsASecond;
    if (isNumber && _clock.observe(seconds, _runLoop.uptime()) && _isReady) {
        Q_EMIT outdated();
    }
}

void MprisPlayer::applyStatus(const QString& text)
{
    static const QMap<QString, Status> known = {{QStringLiteral("Playing"), Status::playing},
                                                {QStringLiteral("Paused"), Status::paused},
                                                {QStringLiteral("Stopped"), Status::stopped}};
    if (!known.contains(text)) {
        complain(QStringLiteral("the unknown playback status \"%1\"").arg(text));
        return;
    }
    const Status status = known[text];
    if (status == _latest.status) {
        return;
    }
    _latest.status = status;
    updateClock();
    ask();
}

void MprisPlayer::applyMetadata(const QVariant& metadata)
{
    const auto dictionary = DBusValue::dictionary(metadata);
    if (!dictionary) {
        complain(QStringLiteral("metadata of the type %1").arg(QLatin1String(metadata.typeName())));
        return;
    }
    const MprisTrack track = MprisTrack::fromMetadata(*dictionary);
    const MprisTrack before = std::exchange(_latest.track, track);
    _clock.setLength(track.length);
    if (!_isReady || before == track) {
        return;
    }
    if (isOtherTrack(before, track)) {
        _clock.restart(_runLoop.uptime());
    } else if (isOther(before.artworkUrl, track.artworkUrl)) {
        ask(); // the position tells whether this is another track
    }
    askLater(catchingUp);
}

/// Once, however often it comes.
void MprisPlayer::complain(const QString& complaint)
{
    if (complaint != std::exchange(_complaint, complaint)) {
        qCWarning(log, "%ls has %ls", qUtf16Printable(suffixes.join(u' ')), qUtf16Printable(complaint));
    }
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
    if (_isSilent) {
        _isSilent = false;
        updateClock();
        ask();
    }
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
    const State before = std::exchange(_published, _latest);
    if (isPlaying() && !wasPlaying) {
        _playingSince = now;
    } else if (wasPlaying && !isPlaying()) {
        _lastPlayed = now;
    }
    if (_isReady && isNews(before, _published)) {
        Q_EMIT changed();
    }
    if (_isReady && isMoreThanNews(before, _published)) {
        Q_EMIT outdated();
    }
}
