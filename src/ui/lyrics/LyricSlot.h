#pragma once

#include <QObject>
#include <QQmlEngine>

/// One line of lyrics in a view.
namespace LyricSlot {

Q_NAMESPACE
QML_ELEMENT

enum class State { Past, Active, Future };
Q_ENUM_NS(State)

} // namespace LyricSlot
