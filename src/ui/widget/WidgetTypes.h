#pragma once

#include "prefs/WidgetManager.h"

#include <QtQml/qqmlregistration.h>

/// The view says whether a press may move the widget, and turns it off.
struct WidgetManagerType {
    Q_GADGET
    QML_FOREIGN(WidgetManager)
    QML_NAMED_ELEMENT(WidgetManager)
    QML_UNCREATABLE("made by the program")
};
