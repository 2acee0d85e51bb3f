#pragma once

#include "prefs/Preference.h"

#include <QObject>

/// What the menu-bar pill shows.
class PillVisibilityManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool showAlbumArt READ showAlbumArt WRITE showAlbumArt BINDABLE showAlbumArt)
    Q_PROPERTY(bool showVisualizer READ showVisualizer WRITE showVisualizer BINDABLE showVisualizer)
    Q_PROPERTY(bool showTitle READ showTitle WRITE showTitle BINDABLE showTitle)
    Q_PROPERTY(bool showPrevButton READ showPrevButton WRITE showPrevButton BINDABLE showPrevButton)
    Q_PROPERTY(bool showNextButton READ showNextButton WRITE showNextButton BINDABLE showNextButton)

    UserDefaults& _defaults; // before the preferences, which take it

public:
    explicit PillVisibilityManager(UserDefaults& defaults) : _defaults(defaults) {}
    static PillVisibilityManager& shared();

    Preference<bool> showAlbumArt{_defaults, QStringLiteral("pellar.pill.showAlbumArt"), true};
    Preference<bool> showVisualizer{_defaults, QStringLiteral("pellar.pill.showVisualizer"), true};
    Preference<bool> showTitle{_defaults, QStringLiteral("pellar.pill.showTitle"), true};
    Preference<bool> showPrevButton{_defaults, QStringLiteral("pellar.pill.showPrevButton"), true};
    Preference<bool> showNextButton{_defaults, QStringLiteral("pellar.pill.showNextButton"), true};

    /// Width of the pill with what it shows, in points.
    double preferredPillWidth() const;
};
