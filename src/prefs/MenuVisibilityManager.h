#pragma once

#include <QObject>
#include <QProperty>

class UserDefaults;

/// Which optional sections the context menu shows.
class MenuVisibilityManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool showUpNext READ showUpNext WRITE setShowUpNext NOTIFY showUpNextChanged BINDABLE
                   bindableShowUpNext)
    Q_PROPERTY(bool showReactions READ showReactions WRITE setShowReactions NOTIFY showReactionsChanged
                   BINDABLE bindableShowReactions)
    Q_PROPERTY(bool showPowerMode READ showPowerMode WRITE setShowPowerMode NOTIFY showPowerModeChanged
                   BINDABLE bindableShowPowerMode)
    Q_PROPERTY(bool showAudioSources READ showAudioSources WRITE setShowAudioSources NOTIFY
                   showAudioSourcesChanged BINDABLE bindableShowAudioSources)
    Q_PROPERTY(bool showListeningStats READ showListeningStats WRITE setShowListeningStats NOTIFY
                   showListeningStatsChanged BINDABLE bindableShowListeningStats)
    Q_PROPERTY(bool showRecentlyPlayed READ showRecentlyPlayed WRITE setShowRecentlyPlayed NOTIFY
                   showRecentlyPlayedChanged BINDABLE bindableShowRecentlyPlayed)

public:
    explicit MenuVisibilityManager(UserDefaults& defaults);
    static MenuVisibilityManager& shared();

    bool showUpNext() const { return _showUpNext; }
    void setShowUpNext(bool show);
    QBindable<bool> bindableShowUpNext() const { return &_showUpNext; }

    bool showReactions() const { return _showReactions; }
    void setShowReactions(bool show);
    QBindable<bool> bindableShowReactions() const { return &_showReactions; }

    bool showPowerMode() const { return _showPowerMode; }
    void setShowPowerMode(bool show);
    QBindable<bool> bindableShowPowerMode() const { return &_showPowerMode; }

    bool showAudioSources() const { return _showAudioSources; }
    void setShowAudioSources(bool show);
    QBindable<bool> bindableShowAudioSources() const { return &_showAudioSources; }

    bool showListeningStats() const { return _showListeningStats; }
    void setShowListeningStats(bool show);
    QBindable<bool> bindableShowListeningStats() const { return &_showListeningStats; }

    bool showRecentlyPlayed() const { return _showRecentlyPlayed; }
    void setShowRecentlyPlayed(bool show);
    QBindable<bool> bindableShowRecentlyPlayed() const { return &_showRecentlyPlayed; }

Q_SIGNALS:
    void showUpNextChanged();
    void showReactionsChanged();
    void showPowerModeChanged();
    void showAudioSourcesChanged();
    void showListeningStatsChanged();
    void showRecentlyPlayedChanged();

private:
    UserDefaults& _defaults;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(MenuVisibilityManager, bool, _showUpNext, true,
                                         &MenuVisibilityManager::showUpNextChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(MenuVisibilityManager, bool, _showReactions, true,
                                         &MenuVisibilityManager::showReactionsChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(MenuVisibilityManager, bool, _showPowerMode, true,
                                         &MenuVisibilityManager::showPowerModeChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(MenuVisibilityManager, bool, _showAudioSources, true,
                                         &MenuVisibilityManager::showAudioSourcesChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(MenuVisibilityManager, bool, _showListeningStats, true,
                                         &MenuVisibilityManager::showListeningStatsChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(MenuVisibilityManager, bool, _showRecentlyPlayed, true,
                                         &MenuVisibilityManager::showRecentlyPlayedChanged)
};
