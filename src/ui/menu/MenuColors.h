#pragma once

#include "ui/controls/GlassColors.h"

/// The menus' colours on a light or a dark desktop.
struct MenuColors {
    Q_GADGET
    Q_PROPERTY(GlassColors glass MEMBER glass CONSTANT)
    Q_PROPERTY(QColor text MEMBER text CONSTANT)
    Q_PROPERTY(QColor dimmedText MEMBER dimmedText CONSTANT)
    Q_PROPERTY(QColor separator MEMBER separator CONSTANT)
    Q_PROPERTY(QColor hovered MEMBER hovered CONSTANT)
    Q_PROPERTY(QColor pressed MEMBER pressed CONSTANT)
    Q_PROPERTY(QColor expanded MEMBER expanded CONSTANT)

public:
    GlassColors glass;
    QColor background; ///< of the classic style
    QColor text;
    QColor dimmedText;
    QColor separator;
    QColor hovered;
    QColor pressed;
    QColor expanded; ///< behind an open submenu and its rows

    /// `isBlended`: whether what is below the window shines through it.
    static MenuColors forDesktop(bool isDark, bool isBlended);
};
