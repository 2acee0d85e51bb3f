#pragma once

#include "ui/panel/PanelMotion.h"

#include <QList>
#include <QRectF>
#include <QString>

/// What one panel has different from another.
struct PanelStyle {
    /// Where the open panel lies, in points, y downward: given the pill, the size of what is in the panel,
    /// and the part of the screen that is free. Without room the height is 0.
    using Placement = QRectF (*)(const QRectF& pill, QSizeF contents, const QRectF& screen);

    static constexpr double pillGap = 6;      ///< between the pill and the panels below it
    static constexpr double screenMargin = 8; ///< kept free at the screen's edges

    QString title; ///< of the window
    double cornerRadius = 0;
    Placement placement = nullptr;
    PanelMotion opening;
    PanelMotion closing;
    QList<Qt::Key> closingKeys = {Qt::Key_Escape};
};
