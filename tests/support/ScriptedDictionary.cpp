#include "support/ScriptedDictionary.h"

#include "linux/script/ScriptError.h"

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
    for (const ScriptValue& item : std::get<ScriptList>(value.data)) {
        parts.append(described(item));
    }
    return parts.join(QStringLiteral(" + "));
}

std::shared_ptr<ScriptedObject> process(const char* name, qlonglong unixId, const char* bundleId)
{
    auto process = std::make_shared<ScriptedObject>();
    process->properties = {{QStringLiteral("name"), QString::fromLatin1(name)},
                           {QStringLiteral("unix id"), unixId}};
    if (bundleId != nullptr) {
        process->properties.insert(QStringLiteral("bundle identifier"), QString::fromLatin1(bundleId));
    }
    process->commands = {QStringLiteral("keystroke")};
    return process;
}

} // namespace

ScriptValue ScriptedObject::property(const QString& name)
{
    return properties.contains(name) ? properties.value(name) : ScriptObject::property(name);
}

void ScriptedObject::setProperty(const QString& name, const ScriptValue& value)
{
    if (!settable.contains(name)) {
        ScriptObject::setProperty(name, value);
    }
    properties.insert(name, value);
}

std::vector<std::shared_ptr<ScriptObject>> ScriptedObject::elements(const QString& className)
{
    if (refusal != 0) {
        throw ScriptError{refusal, QStringLiteral("refused")};
    }
    ++reads;
    return members.contains(className) ? members.value(className) : ScriptObject::elements(className);
}

ScriptValue ScriptedObject::perform(const QString& command, const ScriptValue& direct,
                                    const QMap<QString, ScriptValue>& parameters)
{
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
    told.append(line);
    return {};
}

ScriptedPlayer::ScriptedPlayer()
{
    settable = {QStringLiteral("player position")};
    commands = QStringLiteral("play,pause,playpause,next track,previous track").split(u',');
    setTracks({});
}

void ScriptedPlayer::setTracks(const QList<Track>& tracks)
{
    _tracks.clear();
    for (const Track& track : tracks) {
        const auto number = static_cast<qlonglong>(_tracks.size());
        auto object = std::make_shared<ScriptedObject>();
        object->properties = {
            {QStringLiteral("name"), track.title},
            {QStringLiteral("artist"), track.artist},
            {QStringLiteral("album"), QStringLiteral("Hours")},
            {QStringLiteral("duration"), track.duration},
            {QStringLiteral("loved"), false},
            {QStringLiteral("disliked"), false},
            {QStringLiteral("database id"), 1000 + number},
            {QStringLiteral("artwork url"), QStringLiteral("https://art.invalid/%1").arg(number)},
        };
        object->settable = {QStringLiteral("loved"), QStringLiteral("disliked")};
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
    properties.insert(QStringLiteral("player position"), 0.0);
    properties.insert(QStringLiteral("player state"),
                      ScriptConstant{index > 0 ? QStringLiteral("playing") : QStringLiteral("stopped")});
    properties.remove(QStringLiteral("current track"));
    if (index > 0) {
        const std::shared_ptr<ScriptObject> track = _tracks.at(static_cast<size_t>(index - 1));
        properties.insert(QStringLiteral("current track"), track);
    }
}

ScriptedDictionary::ScriptedDictionary()
    : music(std::make_shared<ScriptedPlayer>())
    , spotify(std::make_shared<ScriptedPlayer>())
    , systemEvents(std::make_shared<ScriptedObject>())
    , spotifyProcess(process("Spotify", 210, "com.spotify.client"))
    , browserProcess(process("Firefox", 4711, "org.mozilla.firefox"))
{
    systemEvents->members.insert(QStringLiteral("process"),
                                 {process("shell", 1, nullptr), spotifyProcess, browserProcess});
}

std::shared_ptr<ScriptObject> ScriptedDictionary::application(const QString& name) const
{
    const QMap<QString, std::shared_ptr<ScriptObject>> running = {
        {QStringLiteral("music"), music},
        {QStringLiteral("spotify"), spotify},
        {QStringLiteral("system events"), systemEvents},
    };
    return running.value(name);
}
