#pragma once

#include <QColor>
#include <QObject>

/// The glass panel's colours on a light or a dark desktop.
struct MenuColors {
    Q_GADGET
    Q_PROPERTY(QColor top MEMBER top CONSTANT)
    Q_PROPERTY(QColor bottom MEMBER bottom CONSTANT)
    Q_PROPERTY(QColor border MEMBER border CONSTANT)
    Q_PROPERTY(QColor sheen MEMBER sheen CONSTANT)
    Q_PROPERTY(QColor text MEMBER text CONSTANT)
    Q_PROPERTY(QColor dimmedText MEMBER dimmedText CONSTANT)
    Q_PROPERTY(QColor separator MEMBER separator CONSTANT)
    Q_PROPERTY(QColor hovered MEMBER hovered CONSTANT)
    Q_PROPERTY(QColor pressed MEMBER pressed CONSTANT)
    Q_PROPERTY(QColor expanded MEMBER expanded CONSTANT)

public:
    QColor top; ///< of the glass, which is lit from above
    QColor bottom;
    QColor border;
    QColor sheen; ///< the line of light within the border
    QColor text;
    QColor dimmedText;
    QColor separator;
    QColor hovered;
    QColor pressed;
    QColor expanded; ///< behind the row of an open submenu

    /// Glass lets a little of what is below it through. Where windows are not blended it is opaque.
    static MenuColors forDesktop(bool isDark, bool isBlended);
};
