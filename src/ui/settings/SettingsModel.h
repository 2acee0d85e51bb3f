#pragma once

#include "ui/settings/ChoiceSetting.h"
#include "ui/settings/ForeignTypes.h"
#include "ui/settings/SettingsTab.h"
#include "ui/settings/ShortcutSetting.h"

#include <QColor>
#include <QObject>
#include <QQmlEngine>

#include <memory>
#include <vector>

class AudioBridge;
class MenuStyleManager;
class ThemeManager;
class Workspace;
struct ServiceAddresses;

/// What the settings window shows and sets. It keeps nothing but the open tab: every row is bound to its
/// manager.
class SettingsModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(int tab READ tab WRITE setTab NOTIFY tabChanged)
    Q_PROPERTY(QStringList tabNames READ tabNames CONSTANT)
    Q_PROPERTY(PillVisibilityManager* pill READ pill CONSTANT)
    Q_PROPERTY(MenuVisibilityManager* menu READ menu CONSTANT)
    Q_PROPERTY(WidgetManager* widget READ widget CONSTANT)
    Q_PROPERTY(ChoiceSetting* theme READ theme CONSTANT)
    Q_PROPERTY(QList<QColor> themeTints READ themeTints CONSTANT)
    Q_PROPERTY(ChoiceSetting* menuStyle READ menuStyle CONSTANT)
    Q_PROPERTY(bool isCaptureEnabled READ isCaptureEnabled NOTIFY isCaptureEnabledChanged)
    Q_PROPERTY(LaunchAtLogin* launch READ launch CONSTANT)
    Q_PROPERTY(AnalyticsManager* analytics READ analytics CONSTANT)
    Q_PROPERTY(bool hasUsagePing READ hasUsagePing CONSTANT)
    Q_PROPERTY(QVariantList shortcuts READ shortcuts CONSTANT)
    Q_PROPERTY(SpotifyAuthManager* spotify READ spotify CONSTANT)
    Q_PROPERTY(AppleMusicAuthManager* appleMusic READ appleMusic CONSTANT)
    Q_PROPERTY(Keychain* keychain READ keychain CONSTANT)
    Q_PROPERTY(UpdaterManager* updater READ updater CONSTANT)
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QString webSite READ webSite CONSTANT)
    Q_PROPERTY(QString support READ support CONSTANT)

public:
    /// What the model builds on. Everything outlives it.
    struct Dependencies {
        PillVisibilityManager& pill;
        MenuVisibilityManager& menu;
        MenuStyleManager& menuStyle;
        WidgetManager& widget;
        ThemeManager& theme;
        AudioBridge& audio;
        LaunchAtLogin& launch;
        AnalyticsManager& analytics;
        ShortcutRecorder::Dependencies shortcuts;
        std::function<UpdaterManager&()> updater;
        Keychain& keychain;
        Workspace& workspace;
        const ServiceAddresses& addresses;
        // Asked for when their tab opens: they look into the keyring.
        std::function<SpotifyAuthManager&()> spotify;
        std::function<AppleMusicAuthManager&()> appleMusic;
        std::function<void()> setUpPermissions; ///< runs the onboarding again
    };

    explicit SettingsModel(Dependencies dependencies);

    /// The number of the open tab in the order of `SettingsTab`. Opening one ends the recording of a chord.
    int tab() const { return _tab; }
    void setTab(int tab);
    QStringList tabNames() const;

    PillVisibilityManager* pill() const { return &_of.pill; }
    MenuVisibilityManager* menu() const { return &_of.menu; }
    WidgetManager* widget() const { return &_of.widget; }
    ChoiceSetting* theme() { return &_theme; }
    /// In the order of the themes, transparent where a theme has no colour of its own.
    QList<QColor> themeTints() const;
    ChoiceSetting* menuStyle() { return &_menuStyle; }

    bool isCaptureEnabled() const { return _isCaptureEnabled; }
    Q_INVOKABLE void setCaptureEnabled(bool enabled);

    LaunchAtLogin* launch() const { return &_of.launch; }
    AnalyticsManager* analytics() const { return &_of.analytics; }
    /// Whether there is an address that usage data would be sent to.
    bool hasUsagePing() const;

    /// In the order of the actions.
    QVariantList shortcuts() const;
    Q_INVOKABLE void resetShortcuts();

    SpotifyAuthManager* spotify() const { return &_of.spotify(); }
    AppleMusicAuthManager* appleMusic() const { return &_of.appleMusic(); }
    Keychain* keychain() const { return &_of.keychain; }

    UpdaterManager* updater() const { return &_of.updater(); }
    /// As "0.1.0 (412)".
    QString version() const;
    /// The maker's addresses; empty where this build has none.
    QString webSite() const;
    QString support() const;
    Q_INVOKABLE void open(const QString& address);
    Q_INVOKABLE void setUpPermissions() const { _of.setUpPermissions(); }

Q_SIGNALS:
    void tabChanged();
    void isCaptureEnabledChanged();

private:
    Dependencies _of;
    ChoiceSetting _theme;
    ChoiceSetting _menuStyle;
    ShortcutRecorder _recorder;
    std::vector<std::unique_ptr<ShortcutSetting>> _shortcuts;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(SettingsModel, int, _tab, 0, &SettingsModel::tabChanged)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsModel, bool, _isCaptureEnabled,
                               &SettingsModel::isCaptureEnabledChanged)
};
