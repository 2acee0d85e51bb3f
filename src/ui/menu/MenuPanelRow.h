#pragma once

#include "ui/menu/PellarMenuItem.h"

#include <QQmlEngine>
#include <QRectF>

/// A row of the glass menu: what it says and where its parts lie, in points from the row's top left corner.
struct MenuPanelRow {
    Q_GADGET
    QML_VALUE_TYPE(menuPanelRow)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString symbol READ symbol CONSTANT)
    Q_PROPERTY(QString shortcut READ shortcut CONSTANT)
    Q_PROPERTY(bool isOn READ isOn CONSTANT)
    Q_PROPERTY(bool isToggle READ isToggle CONSTANT)
    Q_PROPERTY(bool isHeader READ isHeader CONSTANT)
    Q_PROPERTY(bool isInfo READ isInfo CONSTANT)
    Q_PROPERTY(bool isSeparator READ isSeparator CONSTANT)
    Q_PROPERTY(bool isSubmenu READ isSubmenu CONSTANT)
    Q_PROPERTY(bool isSelectable READ isSelectable CONSTANT)
    Q_PROPERTY(bool isExpanded MEMBER isExpanded CONSTANT)
    Q_PROPERTY(double height MEMBER height CONSTANT)
    Q_PROPERTY(double spaceBelow MEMBER spaceBelow CONSTANT)
    Q_PROPERTY(QRectF markFrame MEMBER markFrame CONSTANT)
    Q_PROPERTY(QRectF titleFrame MEMBER titleFrame CONSTANT)
    Q_PROPERTY(QRectF trailingFrame MEMBER trailingFrame CONSTANT)

public:
    PellarMenuItem item; ///< without the rows of a submenu
    QString path;        ///< tells the row from all others, also when the menu is filled anew
    QString parentPath;  ///< empty for a row of the first level
    bool isExpanded = false;
    double height = 0;
    double spaceBelow = 0; ///< to the next row
    QRectF markFrame;      ///< for the row's symbol, or else for its check mark
    QRectF titleFrame;     ///< what is wider is elided
    QRectF trailingFrame;  ///< for the key equivalent, the mark of a submenu, or the check mark of a row
                           ///< that has a symbol, too; empty without

    QString title() const { return item.title; }
    QString symbol() const { return item.icon.value_or(QString()); }
    QString shortcut() const { return item.keyEquivalent.toString(QKeySequence::NativeText); }
    bool isOn() const { return item.isOn; }
    bool isToggle() const { return item.kind == PellarMenuItem::Kind::toggle; }
    bool isHeader() const { return item.kind == PellarMenuItem::Kind::header; }
    bool isInfo() const { return item.kind == PellarMenuItem::Kind::info; }
    bool isSeparator() const { return item.kind == PellarMenuItem::Kind::separator; }
    bool isSubmenu() const { return item.kind == PellarMenuItem::Kind::submenu; }
    bool isSelectable() const { return item.isSelectable(); }
};
