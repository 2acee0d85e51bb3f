#pragma once

#include <QPointF>

/// How a panel opens or closes: a cubic timing curve from (0, 0) to (1, 1), and how long that takes. A
/// control point above 1 makes the curve overshoot.
struct PanelMotion {
    QPointF first;
    QPointF second;
    double seconds = 0;

    /// How far the motion has come when a share of the time, 0 to 1, has passed.
    double at(double progress) const;
};
