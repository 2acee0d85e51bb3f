#pragma once

#include "prefs/Preference.h"

#include <QObject>

/// Which optional sections the context menu shows.
class MenuVisibilityManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool showUpNext READ showUpNext WRITE showUpNext BINDABLE showUpNext)
    Q_PROPERTY(bool showReactions READ showReactions WRITE showReactions BINDABLE showReactions)
    Q_PROPERTY(bool showPowerMode READ showPowerMode WRITE showPowerMode BINDABLE showPowerMode)
    Q_PROPERTY(bool showAudioSources READ showAudioSources WRITE showAudioSources BINDABLE showAudioSources)
    Q_PROPERTY(
        bool showListeningStats READ showListeningStats WRITE showListeningStats BINDABLE showListeningStats)
    Q_PROPERTY(
        bool showRecentlyPlayed READ showRecentlyPlayed WRITE showRecentlyPlayed BINDABLE showRecentlyPlayed)

    UserDefaults& _defaults; // before the preferences, which take it

public:
    explicit MenuVisibilityManager(UserDefaults& defaults) : _defaults(defaults) {}
    static MenuVisibilityManager& shared();

    Preference<bool> showUpNext{_defaults, QStringLiteral("pellar.menu.show.upNext"), true};
    Preference<bool> showReactions{_defaults, QStringLiteral("pellar.menu.show.reactions"), true};
    Preference<bool> showPowerMode{_defaults, QStringLiteral("pellar.menu.show.powerMode"), true};
    Preference<bool> showAudioSources{_defaults, QStringLiteral("pellar.menu.show.audioSources"), true};
    Preference<bool> showListeningStats{_defaults, QStringLiteral("pellar.menu.show.stats"), true};
    Preference<bool> showRecentlyPlayed{_defaults, QStringLiteral("pellar.menu.show.recent"), true};
};
