#pragma once

#include "prefs/MenuVisibilityManager.h"
#include "prefs/PillVisibilityManager.h"
#include "prefs/WidgetManager.h"
#include "ui/settings/ChoiceSetting.h"
#include "ui/settings/SettingsTab.h"

#include <QColor>
#include <QObject>
#include <QQmlEngine>

class AudioBridge;
class MenuStyleManager;
class ThemeManager;

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
    Q_PROPERTY(QString version READ version CONSTANT)

public:
    /// What the model builds on. Everything outlives it.
    struct Dependencies {
        PillVisibilityManager& pill;
        MenuVisibilityManager& menu;
        MenuStyleManager& menuStyle;
        WidgetManager& widget;
        ThemeManager& theme;
        AudioBridge& audio;
        std::function<void()> setUpPermissions; ///< runs the onboarding again
    };

    explicit SettingsModel(const Dependencies& dependencies);

    /// The number of the open tab in the order of `SettingsTab`.
    int tab() const { return _tab; }
    void setTab(int tab) { _tab = tab; }
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

    /// As "0.1.0".
    QString version() const;
    Q_INVOKABLE void setUpPermissions() { _of.setUpPermissions(); }

Q_SIGNALS:
    void tabChanged();
    void isCaptureEnabledChanged();

private:
    Dependencies _of;
    ChoiceSetting _theme;
    ChoiceSetting _menuStyle;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(SettingsModel, int, _tab, 0, &SettingsModel::tabChanged)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsModel, bool, _isCaptureEnabled,
                               &SettingsModel::isCaptureEnabledChanged)
};
