#include "linux/script/ScriptObject.h"

#include "linux/script/ScriptError.h"

ScriptValue ScriptObject::property(const QString& name)
{
    throw ScriptError{ScriptError::noSuchObject, QStringLiteral("Can’t get %1.").arg(name)};
}

void ScriptObject::setProperty(const QString& name, const ScriptValue&)
{
    throw ScriptError{ScriptError::notSettable, QStringLiteral("Can’t set %1.").arg(name)};
}

std::vector<std::shared_ptr<ScriptObject>> ScriptObject::elements(const QString& className)
{
    throw ScriptError{ScriptError::noSuchObject, QStringLiteral("Can’t get every %1.").arg(className)};
}

ScriptValue ScriptObject::perform(const QString& command, const ScriptValue&,
                                  const QMap<QString, ScriptValue>&)
{
    throw ScriptError{ScriptError::notUnderstood, QStringLiteral("“%1” is not understood.").arg(command)};
}
