#include "support/ScriptedDictionary.h"

#include "platform/linux/script/ScriptError.h"

namespace {

QString described(const ScriptValue& value)
{
    if (const auto* const text = std::get_if<QString>(&value.data)) {
        return *text;
    }
    if (const auto* const constant = std::get_if<ScriptConstant>(&value.data)) {
        return constant->name;
    }
    if (const auto* const object = std::get_if<std::shared_ptr<ScriptObject>>(&value.data)) {
        return described((*object)->property(QStringLiteral("name")));
    }
    QStringList parts;
    if (const auto* const list = std::get_if<ScriptList>(&value.data)) {
        for (const ScriptValue& item : *list) {
            parts.append(described(item));
        }
    }
    return parts.join(QStringLiteral(" + "));
}

std::shared_ptr<ScriptedObject> process(const QString& name, qlonglong unixId, const QString& bundleId)
{
    auto process = std::make_shared<ScriptedObject>();
    process->properties = {{QStringLiteral("name"), name}, {QStringLiteral("unix id"), unixId}};
    if (!bundleId.isEmpty()) {
        process->properties.insert(QStringLiteral("bundle identifier"), bundleId);
    }
    process->commands = {QStringLiteral("keystroke")};
    return process;
}

} // namespace

void ScriptedObject::refuse() const
{
    if (refusal != 0) {
        throw ScriptError{refusal, QStringLiteral("refused")};
    }
}

ScriptValue ScriptedObject::property(const QString& name)
{
    refuse();
    const auto found = properties.constFind(name);
    return found != properties.cend() ? *found : ScriptObject::property(name);
}

void ScriptedObject::setProperty(const QString& name, const ScriptValue& value)
{
    refuse();
    if (!settable.contains(name)) {
        ScriptObject::setProperty(name, value);
    }
    properties.insert(name, value);
}

std::vector<std::shared_ptr<ScriptObject>> ScriptedObject::elements(const QString& className)
{
    refuse();
    ++reads;
    const auto found = members.constFind(className);
    return found != members.cend() ? *found : ScriptObject::elements(className);
}

ScriptValue ScriptedObject::perform(const QString& command, const ScriptValue& direct,
                                    const QMap<QString, ScriptValue>& parameters)
{
    refuse();
    if (!commands.contains(command)) {
        return ScriptObject::perform(command, direct, parameters);
    }
    QString line = command;
    if (!std::holds_alternative<std::monostate>(direct.data)) {
        line += u' ' + described(direct);
    }
    for (auto each = parameters.cbegin(); each != parameters.cend(); ++each) {
        line += u' ' + each.key() + u' ' + described(each.value());
    }
    obeyed.append(line);
    return {};
}

ScriptedPlayer::ScriptedPlayer()
{
    settable = {QStringLiteral("player position")};
    commands = {QStringLiteral("play"), QStringLiteral("pause"), QStringLiteral("playpause"),
                QStringLiteral("next track"), QStringLiteral("previous track")};
    setTracks({});
}

void ScriptedPlayer::setTracks(const QList<Track>& tracks)
{
    _tracks.clear();
    for (const Track& track : tracks) {
        auto object = std::make_shared<ScriptedObject>();
        object->properties = {
            {QStringLiteral("name"), track.title},  {QStringLiteral("artist"), track.artist},
            {QStringLiteral("album"), track.album}, {QStringLiteral("duration"), track.duration},
            {QStringLiteral("loved"), false},       {QStringLiteral("disliked"), false},
        };
        object->settable = {QStringLiteral("loved"), QStringLiteral("disliked")};
        object->properties.insert(QStringLiteral("database id"), qlonglong(1000 + _tracks.size()));
        object->properties.insert(QStringLiteral("artwork url"),
                                  QStringLiteral("https://art.invalid/%1").arg(_tracks.size()));
        _tracks.push_back(object);
    }
    members.insert(QStringLiteral("track"), {_tracks.begin(), _tracks.end()});
    auto playlist = std::make_shared<ScriptedObject>();
    playlist->members = members;
    properties.insert(QStringLiteral("current playlist"), std::shared_ptr<ScriptObject>(playlist));
    playTrack(0);
}

void ScriptedPlayer::playTrack(int index)
{
    _current = index;
    properties.insert(QStringLiteral("player position"), 0.0);
    if (index == 0) {
        properties.remove(QStringLiteral("current track"));
        setState(QStringLiteral("stopped"));
        return;
    }
    const std::shared_ptr<ScriptObject> track = _tracks.at(static_cast<size_t>(index - 1));
    properties.insert(QStringLiteral("current track"), track);
    setState(QStringLiteral("playing"));
}

QString ScriptedPlayer::state() const
{
    return std::get<ScriptConstant>(properties.value(QStringLiteral("player state")).data).name;
}

void ScriptedPlayer::setState(const QString& name)
{
    properties.insert(QStringLiteral("player state"), ScriptConstant{name});
}

ScriptValue ScriptedPlayer::perform(const QString& command, const ScriptValue& direct,
                                    const QMap<QString, ScriptValue>& parameters)
{
    ScriptedObject::perform(command, direct, parameters);
    const bool isPlaying = state() == QStringLiteral("playing");
    if (const auto* const object = std::get_if<std::shared_ptr<ScriptObject>>(&direct.data)) {
        const auto found = std::find(_tracks.begin(), _tracks.end(), *object);
        playTrack(static_cast<int>(found - _tracks.begin()) + 1);
    } else if (command == QStringLiteral("next track")) {
        playTrack(_current + 1);
    } else if (command == QStringLiteral("previous track")) {
        playTrack(_current - 1);
    } else if (command == QStringLiteral("pause") || isPlaying) {
        setState(QStringLiteral("paused"));
    } else {
        setState(QStringLiteral("playing"));
    }
    return {};
}

ScriptedDictionary::ScriptedDictionary()
    : music(std::make_shared<ScriptedPlayer>())
    , spotify(std::make_shared<ScriptedPlayer>())
    , systemEvents(std::make_shared<ScriptedObject>())
    , shell(process(QStringLiteral("shell"), 1, {}))
    , spotifyProcess(process(QStringLiteral("Spotify"), 210, QStringLiteral("com.spotify.client")))
    , browserProcess(process(QStringLiteral("Firefox"), 4711, QStringLiteral("org.mozilla.firefox")))
{
    systemEvents->members.insert(QStringLiteral("process"), {shell, spotifyProcess, browserProcess});
}

std::shared_ptr<ScriptObject> ScriptedDictionary::application(const QString& name) const
{
    if (name == QStringLiteral("music")) {
        return music;
    }
    if (name == QStringLiteral("spotify")) {
        return spotify;
    }
    return name == QStringLiteral("system events") ? systemEvents : nullptr;
}
