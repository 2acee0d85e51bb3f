#pragma once

#include "ui/menu/PellarMenuItem.h"

#include <QObject>
#include <QRectF>

/// A row of the glass panel: what it says and where it lies, in points from the top-left corner of the list.
struct MenuPanelRow {
    Q_GADGET
    Q_PROPERTY(QString key MEMBER key CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString symbol READ symbol CONSTANT)
    Q_PROPERTY(QString shortcut READ shortcut CONSTANT)
    Q_PROPERTY(bool isOn READ isOn CONSTANT)
    Q_PROPERTY(bool isToggle READ isToggle CONSTANT)
    Q_PROPERTY(bool isHeader READ isHeader CONSTANT)
    Q_PROPERTY(bool isInfo READ isInfo CONSTANT)
    Q_PROPERTY(bool isSeparator READ isSeparator CONSTANT)
    Q_PROPERTY(bool isSubmenu READ isSubmenu CONSTANT)
    Q_PROPERTY(bool isExpanded MEMBER isExpanded CONSTANT)
    Q_PROPERTY(QRectF frame MEMBER frame CONSTANT)
    Q_PROPERTY(QRectF checkFrame MEMBER checkFrame CONSTANT)
    Q_PROPERTY(QRectF symbolFrame MEMBER symbolFrame CONSTANT)
    Q_PROPERTY(QRectF titleFrame MEMBER titleFrame CONSTANT)
    Q_PROPERTY(QRectF trailingFrame MEMBER trailingFrame CONSTANT)

public:
    PellarMenuItem item;
    QString key;       ///< "2" for the third row, "2.0" for the first below it
    QString parentKey; ///< empty for a row of the first level
    bool isExpanded = false;
    QRectF frame;
    QRectF checkFrame;    ///< within the row, as are the following
    QRectF symbolFrame;   ///< empty without a symbol
    QRectF titleFrame;    ///< what is wider is elided
    QRectF trailingFrame; ///< for the key equivalent or the mark of a submenu

    QString title() const { return item.title; }
    QString symbol() const { return item.icon.value_or(QString()); }
    QString shortcut() const { return item.keyEquivalent.toString(QKeySequence::NativeText); }
    bool isOn() const { return item.isOn; }
    bool isToggle() const { return item.kind == PellarMenuItem::Kind::toggle; }
    bool isHeader() const { return item.kind == PellarMenuItem::Kind::header; }
    bool isInfo() const { return item.kind == PellarMenuItem::Kind::info; }
    bool isSeparator() const { return item.kind == PellarMenuItem::Kind::separator; }
    bool isSubmenu() const { return item.kind == PellarMenuItem::Kind::submenu; }
};
