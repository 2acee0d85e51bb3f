#pragma once

#include "prefs/MenuVisibilityManager.h"
#include "prefs/PillVisibilityManager.h"
#include "prefs/WidgetManager.h"

#include <QQmlEngine>

// The managers whose switches the settings window shows as they are.

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
