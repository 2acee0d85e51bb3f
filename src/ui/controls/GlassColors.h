#pragma once

#include <QColor>
#include <QObject>
#include <QQmlEngine>

/// What a pane of glass looks like on a light or a dark desktop.
struct GlassColors {
    Q_GADGET
    QML_VALUE_TYPE(glassColors)

public:
    QColor top; ///< of the glass, which is lit from above
    QColor bottom;
    QColor border;
    QColor sheen; ///< the line of light within the border

    friend bool operator==(const GlassColors&, const GlassColors&) = default;

    /// Glass lets a little of what is below it through. Where windows are not blended it is opaque.
    static GlassColors forDesktop(bool isDark, bool isBlended);
};
