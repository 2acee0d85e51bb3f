#pragma once

#include "linux/script/ScriptObject.h"

#include <QMap>
#include <QStringList>

/// An object that scripts can name, made of what a test puts into it.
class ScriptedObject : public ScriptObject
{
public:
    ScriptValue property(const QString& name) override;
    void setProperty(const QString& name, const ScriptValue& value) override;
    std::vector<std::shared_ptr<ScriptObject>> elements(const QString& className) override;
    ScriptValue perform(const QString& command, const ScriptValue& direct,
                        const QMap<QString, ScriptValue>& parameters) override;

    QMap<QString, ScriptValue> properties;
    QStringList settable; ///< the properties that may be set
    QMap<QString, std::vector<std::shared_ptr<ScriptObject>>> members;
    QStringList commands; ///< the ones that it understands
    QStringList told;     ///< a line for each command: `keystroke s using command down`
    int refusal = 0;      ///< the error number that a question for elements fails with, unless 0
    int reads = 0;        ///< how often a list of elements was asked for
};

/// A player with one playlist. It takes commands down without obeying them.
class ScriptedPlayer final : public ScriptedObject
{
public:
    struct Track {
        QString title;
        QString artist;
        ScriptValue duration;
    };

    ScriptedPlayer();

    /// The album of all is "Hours", their database ids and artwork addresses count from 0.
    void setTracks(const QList<Track>& tracks);

    /// The track at an index from 1 plays; 0 stops.
    void playTrack(int index);
    ScriptedObject& track(int index) const { return *_tracks.at(static_cast<size_t>(index - 1)); }

private:
    std::vector<std::shared_ptr<ScriptedObject>> _tracks;
};

/// The three applications that the program talks to. A null one does not run.
struct ScriptedDictionary {
    ScriptedDictionary();

    std::shared_ptr<ScriptObject> application(const QString& name) const;

    std::shared_ptr<ScriptedPlayer> music;
    std::shared_ptr<ScriptedPlayer> spotify;
    std::shared_ptr<ScriptedObject> systemEvents; ///< its first process has no bundle identifier

    std::shared_ptr<ScriptedObject> spotifyProcess; ///< unix id 210
    std::shared_ptr<ScriptedObject> browserProcess; ///< unix id 4711
};
