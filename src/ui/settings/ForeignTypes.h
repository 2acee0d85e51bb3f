#pragma once

#include "accounts/AppleMusicAuthManager.h"
#include "accounts/SpotifyAuthManager.h"
#include "platform/Keychain.h"
#include "prefs/AnalyticsManager.h"
#include "prefs/LaunchAtLogin.h"
#include "prefs/MenuVisibilityManager.h"
#include "prefs/PillVisibilityManager.h"
#include "prefs/WidgetManager.h"
#include "updates/UpdaterManager.h"

#include <QQmlEngine>

// The managers that the windows show as they are.

struct PillVisibilityType {
    Q_GADGET
    QML_FOREIGN(PillVisibilityManager)
    QML_NAMED_ELEMENT(PillVisibilityManager)
    QML_UNCREATABLE("made by the program")
};

struct MenuVisibilityType {
    Q_GADGET
    QML_FOREIGN(MenuVisibilityManager)
    QML_NAMED_ELEMENT(MenuVisibilityManager)
    QML_UNCREATABLE("made by the program")
};

struct WidgetType {
    Q_GADGET
    QML_FOREIGN(WidgetManager)
    QML_NAMED_ELEMENT(WidgetManager)
    QML_UNCREATABLE("made by the program")
};

struct LaunchAtLoginType {
    Q_GADGET
    QML_FOREIGN(LaunchAtLogin)
    QML_NAMED_ELEMENT(LaunchAtLogin)
    QML_UNCREATABLE("made by the program")
};

struct AnalyticsType {
    Q_GADGET
    QML_FOREIGN(AnalyticsManager)
    QML_NAMED_ELEMENT(AnalyticsManager)
    QML_UNCREATABLE("made by the program")
};

struct UpdaterType {
    Q_GADGET
    QML_FOREIGN(UpdaterManager)
    QML_NAMED_ELEMENT(UpdaterManager)
    QML_UNCREATABLE("made by the program")
};

struct SpotifyAuthType {
    Q_GADGET
    QML_FOREIGN(SpotifyAuthManager)
    QML_NAMED_ELEMENT(SpotifyAuthManager)
    QML_UNCREATABLE("made by the program")
};

struct AppleMusicAuthType {
    Q_GADGET
    QML_FOREIGN(AppleMusicAuthManager)
    QML_NAMED_ELEMENT(AppleMusicAuthManager)
    QML_UNCREATABLE("made by the program")
};

struct KeychainType {
    Q_GADGET
    QML_FOREIGN(Keychain)
    QML_NAMED_ELEMENT(Keychain)
    QML_UNCREATABLE("made by the program")
};
