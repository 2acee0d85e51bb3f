#pragma once

#include "ui/controls/GlassColors.h"
#include "ui/settings/WindowColors.h"

#include <QObject>
#include <QProperty>
#include <QQmlEngine>

class Appearance;

/// How the program's windows look; it follows the desktop. There is one for each engine.
class Look : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(WindowColors colors READ colors NOTIFY colorsChanged)
    Q_PROPERTY(GlassColors glass READ glass NOTIFY colorsChanged)

public:
    /// To be called before anything of an engine looks. The appearance outlives the engine.
    static void follow(QQmlEngine& engine, Appearance& appearance);
    static Look* create(QQmlEngine* engine, QJSEngine* scripts);

    WindowColors colors() const { return _colors; }
    /// Of what opens above a window; opaque.
    GlassColors glass() const { return _glass; }

Q_SIGNALS:
    void colorsChanged();

private:
    explicit Look(const Appearance& appearance);

    Q_OBJECT_BINDABLE_PROPERTY(Look, WindowColors, _colors, &Look::colorsChanged)
    Q_OBJECT_BINDABLE_PROPERTY(Look, GlassColors, _glass, &Look::colorsChanged)
};
