#pragma once

#include "platform/linux/script/ScriptObject.h"

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
    QStringList obeyed;   ///< a line for each: `keystroke s using command down`
    int refusal = 0;      ///< the error number that everything fails with, unless 0
    int reads = 0;        ///< how often a list of elements was asked for

private:
    void refuse() const;
};

/// A player with one playlist.
class ScriptedPlayer final : public ScriptedObject
{
public:
    struct Track {
        QString title;
        QString artist;
        QString album;
        ScriptValue duration;
    };

    ScriptedPlayer();

    void setTracks(const QList<Track>& tracks);

    /// The track at an index from 1 plays; 0 stops.
    void playTrack(int index);
    ScriptedObject& track(int index) const { return *_tracks.at(static_cast<size_t>(index - 1)); }
    int current() const { return _current; }
    QString state() const;

    ScriptValue perform(const QString& command, const ScriptValue& direct,
                        const QMap<QString, ScriptValue>& parameters) override;

private:
    void setState(const QString& name);

    std::vector<std::shared_ptr<ScriptedObject>> _tracks;
    int _current = 0;
};

/// The three applications that the program talks to. A null one does not run.
struct ScriptedDictionary {
    ScriptedDictionary();

    std::shared_ptr<ScriptObject> application(const QString& name) const;

    std::shared_ptr<ScriptedPlayer> music;
    std::shared_ptr<ScriptedPlayer> spotify;
    std::shared_ptr<ScriptedObject> systemEvents;

    /// Processes of System Events.
    std::shared_ptr<ScriptedObject> shell;          ///< no bundle identifier
    std::shared_ptr<ScriptedObject> spotifyProcess; ///< unix id 210
    std::shared_ptr<ScriptedObject> browserProcess; ///< unix id 4711
};
