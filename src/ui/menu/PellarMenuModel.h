#pragma once

#include "ui/menu/MenuColors.h"
#include "ui/menu/MenuPanelLayout.h"

#include <QObject>
#include <QProperty>
#include <QQmlEngine>
#include <QVariantList>

/// The glass panel's list: its rows, which of them is hovered, pressed and expanded, and how far it is
/// scrolled. Points are in points from the top-left corner of the visible part.
class PellarMenuModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QVariantList rows READ rows NOTIFY layoutChanged)
    Q_PROPERTY(QRectF expandedFrame READ expandedFrame NOTIFY layoutChanged)
    Q_PROPERTY(QString hoveredKey READ hoveredKey NOTIFY hoveredKeyChanged)
    Q_PROPERTY(QString pressedKey READ pressedKey NOTIFY pressedKeyChanged)
    Q_PROPERTY(double scroll READ scroll NOTIFY scrollChanged)
    Q_PROPERTY(double scrollShare READ scrollShare NOTIFY scrollChanged)
    Q_PROPERTY(double visibleShare READ visibleShare NOTIFY scrollChanged)
    Q_PROPERTY(MenuColors colors READ colors NOTIFY appearanceChanged)
    Q_PROPERTY(double shadowExtent READ shadowExtent NOTIFY appearanceChanged)
    Q_PROPERTY(double cornerRadius READ cornerRadius CONSTANT)
    Q_PROPERTY(QFont font READ font CONSTANT)

public:
    explicit PellarMenuModel(std::vector<PellarMenuItem> items);

    /// Replaces all rows. A submenu that is open stays so if it is still there.
    void setItems(std::vector<PellarMenuItem> items);

    const MenuPanelLayout& layout() const { return _layout; }
    QVariantList rows() const;
    QRectF expandedFrame() const { return _layout.expandedFrame; }
    /// Keys of rows; empty for none.
    QString hoveredKey() const { return _hoveredKey; }
    QString pressedKey() const { return _pressedKey; }
    QString expandedKey() const { return _expandedKey; }

    /// How far the list is moved up, in points.
    double scroll() const { return _scroll; }
    /// How far that is of all the way, and how much of the list can be seen: 0 to 1.
    double scrollShare() const;
    double visibleShare() const;

    MenuColors colors() const { return _colors; }
    double shadowExtent() const { return _shadowExtent; }
    double cornerRadius() const { return 14; }
    QFont font() const { return _font; }

    /// The shadow reaches this far beyond the panel, in points; 0 for none.
    void setAppearance(const MenuColors& colors, double shadowExtent);
    /// The height of the visible part, in points.
    void setVisibleHeight(double height);

    void hover(QPointF point);
    void leave();
    void press(QPointF point);
    /// Chooses the row that was pressed if the pointer is still on it.
    void release(QPointF point);
    /// Downward for more than 0.
    void scrollBy(double points);

    /// Whether the key means something to the list: arrows, Home, End, Return, or a row's key equivalent.
    bool pressKey(QKeyCombination combination);

    /// Does what a click on the row would do. Nothing for an unknown key.
    Q_INVOKABLE void choose(const QString& key);

Q_SIGNALS:
    void layoutChanged();
    void hoveredKeyChanged();
    void pressedKeyChanged();
    void scrollChanged();
    void appearanceChanged();

    /// A command or a toggle has been chosen.
    void chosen(const PellarMenuItem& item);

private:
    QString keyAt(QPointF point) const;
    void updateLayout();
    void expand(const QString& key);
    void step(const QString& from, int direction);
    void openHovered();
    void closeHovered();
    bool pressKeyEquivalent(QKeyCombination combination);
    void reveal(const QRectF& part);
    void scrollTo(double scroll);

    std::vector<PellarMenuItem> _items;
    QFont _font;
    MenuPanelLayout _layout;
    QString _expandedKey;
    double _visibleHeight = 0;
    MenuColors _colors;
    double _shadowExtent = 0;
    Q_OBJECT_BINDABLE_PROPERTY(PellarMenuModel, QString, _hoveredKey, &PellarMenuModel::hoveredKeyChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PellarMenuModel, QString, _pressedKey, &PellarMenuModel::pressedKeyChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PellarMenuModel, double, _scroll, 0, &PellarMenuModel::scrollChanged)
};
