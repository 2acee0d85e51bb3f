#pragma once

#include "prefs/Preference.h"

#include <QObject>

/// Whether the floating widget exists, and what it shows.
class WidgetManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isEnabled READ isEnabled WRITE isEnabled BINDABLE isEnabled)
    Q_PROPERTY(bool showArtwork READ showArtwork WRITE showArtwork BINDABLE showArtwork)
    Q_PROPERTY(bool showTitle READ showTitle WRITE showTitle BINDABLE showTitle)
    Q_PROPERTY(bool showArtist READ showArtist WRITE showArtist BINDABLE showArtist)
    Q_PROPERTY(bool showProgress READ showProgress WRITE showProgress BINDABLE showProgress)
    Q_PROPERTY(bool showTransport READ showTransport WRITE showTransport BINDABLE showTransport)
    Q_PROPERTY(bool showLyric READ showLyric WRITE showLyric BINDABLE showLyric)
    Q_PROPERTY(bool alwaysOnTop READ alwaysOnTop WRITE alwaysOnTop BINDABLE alwaysOnTop)

    UserDefaults& _defaults; // before the preferences, which take it

public:
    explicit WidgetManager(UserDefaults& defaults) : _defaults(defaults) {}
    static WidgetManager& shared();

    Preference<bool> isEnabled{_defaults, QStringLiteral("pellar.widget.enabled"), false};
    Preference<bool> showArtwork{_defaults, QStringLiteral("pellar.widget.showArtwork"), true};
    Preference<bool> showTitle{_defaults, QStringLiteral("pellar.widget.showTitle"), true};
    Preference<bool> showArtist{_defaults, QStringLiteral("pellar.widget.showArtist"), true};
    Preference<bool> showProgress{_defaults, QStringLiteral("pellar.widget.showProgress"), true};
    Preference<bool> showTransport{_defaults, QStringLiteral("pellar.widget.showTransport"), true};
    Preference<bool> showLyric{_defaults, QStringLiteral("pellar.widget.showLyric"), false};
    Preference<bool> alwaysOnTop{_defaults, QStringLiteral("pellar.widget.alwaysOnTop"), true};

    /// Whether a press on the widget may move it: not while the pointer is over one of its buttons.
    QProperty<bool> allowWindowDrag{true};

    /// What the widget's own close button does.
    Q_INVOKABLE void disable() { isEnabled = false; }

    /// The widget goes back to where a first one opens, and nothing is kept of where it was.
    Q_INVOKABLE void resetPosition();

Q_SIGNALS:
    void positionReset();
};
