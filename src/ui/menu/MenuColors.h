#pragma once

#include <QColor>
#include <QObject>
#include <QQmlEngine>

/// The menus' colours on a light or a dark desktop.
struct MenuColors {
    Q_GADGET
    QML_VALUE_TYPE(menuColors)
    Q_PROPERTY(QColor background MEMBER background CONSTANT)
    Q_PROPERTY(QColor text MEMBER text CONSTANT)
    Q_PROPERTY(QColor dimmedText MEMBER dimmedText CONSTANT)
    Q_PROPERTY(QColor separator MEMBER separator CONSTANT)
    Q_PROPERTY(QColor hovered MEMBER hovered CONSTANT)
    Q_PROPERTY(QColor pressed MEMBER pressed CONSTANT)
    Q_PROPERTY(QColor expanded MEMBER expanded CONSTANT)

public:
    QColor background; ///< opaque, of the classic style
    QColor text;
    QColor dimmedText;
    QColor separator;
    QColor hovered;
    QColor pressed;
    QColor expanded; ///< behind an open submenu and its rows

    static MenuColors forDesktop(bool isDark);
};
