#include "linux/mpris/MprisPlayer.h"

#include "base/RunLoop.h"
#include "linux/dbus/DBusValue.h"
#include "linux/dbus/WhenAnswered.h"
#include "linux/mpris/MprisNames.h"
#include "linux/mpris/PlayerChange.h"

#include <algorithm>
#include <cmath>

namespace {

const QString metadataName = QStringLiteral("Metadata");
const QString statusName = QStringLiteral("PlaybackStatus");
const QString positionName = QStringLiteral("Position");

constexpr int timeLimitMilliseconds = 2000;
constexpr double microsecondsASecond = 1e6;
// A timer may fire a little early.
constexpr double catchingUp = 1.1 * PositionClock::catchingUp;
constexpr double announcedJump = 0.5; // seconds off the reckoning that make a Seeked signal worth telling

constexpr double longestRest = 0.3; // seconds that a burst of signals is waited for

bool isTimeOut(const QDBusError& error)
{
    return error.type() == QDBusError::NoReply || error.type() == QDBusError::Timeout ||
           error.type() == QDBusError::TimedOut;
}

} // namespace

MprisPlayer::MprisPlayer(const QDBusConnection& bus, QString uniqueName, RunLoop& runLoop, QObject* parent)
    : QObject(parent)
    , _uniqueName(std::move(uniqueName))
    , _runLoop(runLoop)
    , _root(_uniqueName, Mpris::objectPath, bus)
    , _player(_uniqueName, Mpris::objectPath, bus)
    , _properties(_uniqueName, Mpris::objectPath, bus)
    , _trackList(bus, _uniqueName, runLoop)
    , _questions(runLoop, this)
{
    for (QDBusAbstractInterface* const proxy :
         std::initializer_list<QDBusAbstractInterface*>{&_root, &_player, &_properties}) {
        proxy->setTimeout(timeLimitMilliseconds);
    }
    connect(&_questions, &QuestionPacer::due, this, &MprisPlayer::ask);
    _questions.ask();
}

double MprisPlayer::position() const
{
    return _clock.at(_runLoop.uptime());
}

double MprisPlayer::place() const
{
    return _clock.place(_runLoop.uptime());
}

Uptime MprisPlayer::lastPlayed() const
{
    return isPlaying() ? _runLoop.uptime() : _lastPlayed;
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
    const bool isAbsolute = _latest.track.hasProperId();
    command(isAbsolute ? "SetPosition" : "Seek",
            isAbsolute ? _player.SetPosition(QDBusObjectPath(_latest.track.id), microseconds(target))
                       : _player.Seek(microseconds(target - position())));
    _clock.jump(target, _runLoop.uptime());
    _questions.askLater(catchingUp);
    tellMove();
}

void MprisPlayer::raise()
{
    command("Raise", _root.Raise());
}

void MprisPlayer::showedLife()
{
    heard();
    if (!_isReady || _isRefused) {
        _questions.stopRetrying();
        _questions.ask();
    }
}

void MprisPlayer::propertiesChanged(const QVariantMap& changed, const QStringList& invalidated)
{
    showedLife();
    for (const QString& name : {metadataName, statusName}) {
        if (changed.contains(name)) {
            _announced[name] = _runLoop.uptime();
        } else if (invalidated.contains(name)) {
            _announced.remove(name);
        }
    }
    const State before = _latest;
    apply(changed, true);
    // The position is needed after a stop or a pause, and to tell whether another cover means another track.
    const bool isPositionWanted =
        _latest.status != before.status ||
        (!before.track.artworkUrl.isEmpty() && _latest.track.artworkUrl != before.track.artworkUrl);
    if (!invalidated.isEmpty() || isPositionWanted) {
        _questions.ask();
    }
}

void MprisPlayer::seeked(qlonglong microseconds)
{
    showedLife();
    const double seconds = static_cast<double>(microseconds) / microsecondsASecond;
    const bool isNews = std::abs(seconds - position()) > announcedJump;
    _clock.jump(seconds, _runLoop.uptime());
    _questions.askLater(catchingUp);
    if (isNews && _isReady) {
        Q_EMIT outdated();
    }
    tellMove();
}

/// Asks for all properties: players also correct the length of a track without announcing it.
void MprisPlayer::ask()
{
    listen(_properties.GetAll(Mpris::playerInterface), [this](const QDBusPendingReply<QVariantMap>& answer) {
        _questions.answered();
        take(answer);
        _questions.askIfWanted();
    });
}

void MprisPlayer::take(const QDBusPendingReply<QVariantMap>& answer)
{
    const bool wasRefused = _isRefused;
    _isRefused = answer.isError() && answer.error().type() == QDBusError::AccessDenied;
    if (!answer.isValid()) {
        if (!_isReady || _isRefused) {
            _questions.retry();
        }
        return;
    }
    _questions.stopRetrying();
    // What the player has announced holds for a while: answers from before it may still arrive.
    QVariantMap properties = answer.value();
    for (const auto& [name, time] : _announced.asKeyValueRange()) {
        if (_isReady && _runLoop.uptime() - time < PositionClock::catchingUp) {
            properties.remove(name);
        }
    }
    apply(properties, false);
    if (!_isReady || wasRefused) {
        settle();
        _isReady = true;
        _trackList.learn();
        Q_EMIT becameReady();
    }
}

void MprisPlayer::apply(const QVariantMap& properties, bool isAnnounced)
{
    const Uptime now = _runLoop.uptime();
    const State before = _latest;
    if (properties.contains(metadataName)) {
        applyMetadata(properties[metadataName]);
    }
    if (properties.contains(statusName)) {
        applyStatus(properties[statusName].toString());
    }
    const double rateBefore = rate();
    _clock.setRate(properties.value(QStringLiteral("Rate")).toDouble(), now);
    if (isAnnounced && _latest.status == before.status && rate() != rateBefore) {
        _questions.ask();
    }
    const bool isOtherTrack = _isReady && PlayerChange{before, _latest}.isOtherTrack();
    if (isOtherTrack) {
        _clock.restart(now);
        _questions.ask(); // it may be announced before it begins
    }
    bool isNumber = false;
    const double seconds = properties.value(positionName).toDouble(&isNumber) / microsecondsASecond;
    isNumber = isNumber && std::isfinite(seconds);
    if (!isNumber && !isAnnounced) {
        _clock.observeNothing();
    } else if (isNumber && isOtherTrack && isAnnounced) {
        _clock.jump(seconds, now);
    } else if (isNumber && _clock.observe(seconds, now) && _isReady) {
        Q_EMIT outdated();
    }
    if (_isReady && before.track != _latest.track) {
        _questions.askLater(catchingUp); // a length may be corrected, and where it is is certain by then
    }
    scheduleSettling();
    tellMove();
    if (_clock.isInDoubt()) {
        _questions.askInDoubt();
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
    _latest.status = known[text];
    updateClock();
}

void MprisPlayer::applyMetadata(const QVariant& metadata)
{
    const auto dictionary = DBusValue::dictionary(metadata);
    if (!dictionary) {
        complain(QStringLiteral("metadata of the type %1").arg(QLatin1String(metadata.typeName())));
        return;
    }
    _latest.track = MprisTrack::fromMetadata(*dictionary);
    _clock.setLength(_latest.track.length);
}

/// Logs a complaint, unless it is the same as the last.
void MprisPlayer::complain(const QString& complaint)
{
    if (complaint != std::exchange(_complaint, complaint)) {
        qCWarning(mprisLog, "%ls has %ls", qUtf16Printable(suffixes.join(u' ')), qUtf16Printable(complaint));
    }
}

void MprisPlayer::command(const char* name, const QDBusPendingReply<>& call)
{
    listen(call, [name](const QDBusPendingReply<>& reply) {
        if (reply.isError()) {
            qCInfo(mprisLog, "%s was refused: %ls", name, qUtf16Printable(reply.error().message()));
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
        _questions.ask();
    }
}

/// A player that has stopped answering has most likely stopped sounding, too.
void MprisPlayer::updateClock()
{
    _clock.setRunning(_latest.status == Status::playing && !_isSilent, _runLoop.uptime());
    tellMove();
}

/// What belongs to a track that is not shown yet waits for that.
void MprisPlayer::tellMove()
{
    const Uptime now = _runLoop.uptime();
    if (_isReady && _latest == _published && !_clock.agrees(_toldClock, now)) {
        _toldClock = _clock;
        Q_EMIT moved();
    }
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
    const double rest =
        std::min(PlayerChange{_published, _latest}.rest(), longestRest - (now - _settlingSince));
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
        tellMove();
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
    if (_isReady && PlayerChange{before, _published}.isNews()) {
        Q_EMIT changed();
    }
    if (_isReady && PlayerChange{before, _published}.isMoreThanNews()) {
        Q_EMIT outdated();
    }
    tellMove();
}
