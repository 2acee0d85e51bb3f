#pragma once

#include "linux/script/ScriptValue.h"

#include <QMap>

#include <vector>

/// An object that scripts can name: an application, a track, a process. Names are lower case with one space
/// between words. The default of every operation is to know nothing and throw the ScriptError that says so.
class ScriptObject
{
public:
    ScriptObject() = default;
    virtual ~ScriptObject() = default;
    ScriptObject(const ScriptObject&) = delete;
    ScriptObject& operator=(const ScriptObject&) = delete;

    virtual ScriptValue property(const QString& name);
    virtual void setProperty(const QString& name, const ScriptValue& value);

    /// The objects of a class that this one holds, by the class's singular name: "track", "process".
    virtual std::vector<std::shared_ptr<ScriptObject>> elements(const QString& className);

    /// Obeys a command such as "playpause" or "keystroke". `direct` is what stands behind the command word,
    /// `parameters` what stands behind its labels ("using").
    virtual ScriptValue perform(const QString& command, const ScriptValue& direct,
                                const QMap<QString, ScriptValue>& parameters);
};
