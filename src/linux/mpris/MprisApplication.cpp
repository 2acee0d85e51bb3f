#include "linux/mpris/MprisApplication.h"

#include "linux/mpris/MprisPlayer.h"
#include "linux/mpris/PlayerRoster.h"
#include "linux/script/ScriptError.h"

#include <cmath>

namespace {

/// The track of one moment: it stays as it was when the script took hold of it.
class TrackObject final : public ScriptObject
{
public:
    TrackObject(MprisTrack track, PlayerRole role) : _track(std::move(track)), _role(role) {}

    const MprisTrack& track() const { return _track; }

    ScriptValue property(const QString& name) override
    {
        if (name == QStringLiteral("name")) {
            return _track.title;
        }
        if (name == QStringLiteral("artist")) {
            return _track.artist;
        }
        if (name == QStringLiteral("album")) {
            return _track.album;
        }
        if (name == QStringLiteral("duration")) {
            return duration();
        }
        if (name == QStringLiteral("database id") && _role == PlayerRole::music) {
            return _track.id;
        }
        if (name == QStringLiteral("artwork url") && _role == PlayerRole::spotify) {
            return _track.artworkUrl;
        }
        // MPRIS has no ratings: "loved" and "disliked" are not there, either.
        return ScriptObject::property(name);
    }

private:
    /// Music counts in seconds, Spotify in whole milliseconds.
    ScriptValue duration() const
    {
        const double seconds = _track.length.value_or(0);
        if (_role == PlayerRole::music) {
            return seconds;
        }
        return static_cast<qlonglong>(std::llround(seconds * 1000));
    }

    MprisTrack _track;
    PlayerRole _role;
};

/// The player's track list.
class PlaylistObject final : public ScriptObject
{
public:
    explicit PlaylistObject(QList<MprisTrack> tracks) : _tracks(std::move(tracks)) {}

    std::vector<std::shared_ptr<ScriptObject>> elements(const QString& className) override
    {
        if (className != QStringLiteral("track")) {
            return ScriptObject::elements(className);
        }
        std::vector<std::shared_ptr<ScriptObject>> tracks;
        for (const MprisTrack& track : _tracks) {
            tracks.push_back(std::make_shared<TrackObject>(track, PlayerRole::music));
        }
        return tracks;
    }

private:
    QList<MprisTrack> _tracks;
};

double number(const ScriptValue& value)
{
    if (const auto* const real = std::get_if<double>(&value.data)) {
        return *real;
    }
    if (const auto* const integer = std::get_if<qlonglong>(&value.data)) {
        return static_cast<double>(*integer);
    }
    throw ScriptError{ScriptError::cannotConvert, QStringLiteral("A number was expected.")};
}

const TrackObject* listedTrack(const ScriptValue& value)
{
    const auto* const object = std::get_if<std::shared_ptr<ScriptObject>>(&value.data);
    return object != nullptr ? dynamic_cast<const TrackObject*>(object->get()) : nullptr;
}

QString stateName(MprisPlayer::Status status)
{
    switch (status) {
    case MprisPlayer::Status::playing:
        return QStringLiteral("playing");
    case MprisPlayer::Status::paused:
        return QStringLiteral("paused");
    case MprisPlayer::Status::stopped:
        break;
    }
    return QStringLiteral("stopped");
}

} // namespace

MprisApplication::MprisApplication(PlayerRoster& roster, PlayerRole role) : _roster(roster), _role(role) {}

ScriptValue MprisApplication::property(const QString& name)
{
    MprisPlayer& player = this->player();
    if (name == QStringLiteral("player state")) {
        return ScriptConstant{stateName(player.state().status)};
    }
    if (name == QStringLiteral("player position")) {
        // Answers with the estimate; the player's own reply corrects it for the next time.
        player.synchronise();
        return player.position();
    }
    if (name == QStringLiteral("current track") && !player.state().track.isBlank()) {
        return std::shared_ptr<ScriptObject>(std::make_shared<TrackObject>(player.state().track, _role));
    }
    const bool hasPlaylist = _role == PlayerRole::music && !player.trackList().tracks().isEmpty();
    if (name == QStringLiteral("current playlist") && hasPlaylist) {
        return std::shared_ptr<ScriptObject>(std::make_shared<PlaylistObject>(player.trackList().tracks()));
    }
    return ScriptObject::property(name);
}

void MprisApplication::setProperty(const QString& name, const ScriptValue& value)
{
    MprisPlayer& player = this->player();
    if (name != QStringLiteral("player position")) {
        ScriptObject::setProperty(name, value);
        return;
    }
    player.setPosition(number(value));
}

std::vector<std::shared_ptr<ScriptObject>> MprisApplication::elements(const QString& className)
{
    player();
    if (className != QStringLiteral("track")) {
        return ScriptObject::elements(className);
    }
    return {};
}

ScriptValue MprisApplication::perform(const QString& command, const ScriptValue& direct,
                                      const QMap<QString, ScriptValue>& parameters)
{
    using Command = void (MprisPlayer::*)();
    static const QMap<QString, Command> commands = {
        {QStringLiteral("playpause"), &MprisPlayer::playPause},
        {QStringLiteral("play"), &MprisPlayer::play},
        {QStringLiteral("pause"), &MprisPlayer::pause},
        {QStringLiteral("next track"), &MprisPlayer::next},
        {QStringLiteral("previous track"), &MprisPlayer::previous},
    };
    MprisPlayer& player = this->player();
    if (const TrackObject* const track = listedTrack(direct);
        track != nullptr && command == QStringLiteral("play")) {
        player.trackList().goTo(track->track());
        return {};
    }
    const Command known = commands.value(command);
    const bool hasObject = !std::holds_alternative<std::monostate>(direct.data);
    if (known == nullptr || hasObject) {
        return ScriptObject::perform(command, direct, parameters);
    }
    (player.*known)();
    return {};
}

MprisPlayer& MprisApplication::player() const
{
    MprisPlayer* const player = _roster.player(_role);
    if (player == nullptr) {
        throw ScriptError{ScriptError::notRunning, QStringLiteral("The player is not running.")};
    }
    if (player->isRefused()) {
        player->synchronise(); // it may be permitted by now
        throw ScriptError{ScriptError::notPermitted, QStringLiteral("The player may not be automated.")};
    }
    if (!player->isReady()) {
        player->synchronise();
    }
    return *player;
}
