#pragma once

#include "support/Command.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QWindow>

#include <optional>

/// The windows of the program under test, when that runs in the test's own process.
namespace Windows {

/// The one of a title that is on the screen; null when there is none.
inline QWindow* named(const QString& title)
{
    const auto windows = QGuiApplication::topLevelWindows();
    for (QWindow* const window : windows) {
        if (window->title() == title && window->isVisible()) {
            return window;
        }
    }
    return nullptr;
}

/// What a screen reader finds under a name below an object; null when it finds nothing.
inline QAccessibleInterface* find(QAccessibleInterface* object, const QString& name)
{
    if (object == nullptr || object->text(QAccessible::Name) == name) {
        return object;
    }
    for (int i = 0; i < object->childCount(); ++i) {
        if (QAccessibleInterface* const found = find(object->child(i), name)) {
            return found;
        }
    }
    return nullptr;
}

/// Moves the real pointer somewhere on the screen and clicks.
inline void click(QPoint point, int button = 1)
{
    run(QStringLiteral("xdotool mousemove %1 %2 click %3").arg(point.x()).arg(point.y()).arg(button));
}

/// Presses the left button in one place and releases it in another, by ways that a hand would go.
inline void drag(QPoint from, QPoint to)
{
    const QPoint way = to - from;
    run(QStringLiteral("xdotool mousemove %1 %2 mousedown 1").arg(from.x()).arg(from.y()));
    for (int step = 1; step <= 4; ++step) {
        const QPoint point = from + way * step / 4;
        run(QStringLiteral("xdotool mousemove --sync %1 %2").arg(point.x()).arg(point.y()));
    }
    run(QStringLiteral("xdotool mouseup 1"));
}

} // namespace Windows
