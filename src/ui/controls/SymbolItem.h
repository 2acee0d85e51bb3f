#pragma once

#include "ui/controls/PixelItem.h"

#include <QColor>
#include <QProperty>

/// A one-colour symbol, filled into the item's square.
class SymbolItem : public PixelItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)

public:
    explicit SymbolItem(QQuickItem* parent = nullptr);

    QString name() const { return _name; }
    void setName(const QString& name) { _name = name; }
    QColor color() const { return _color; }
    void setColor(const QColor& color) { _color = color; }

Q_SIGNALS:
    void nameChanged();
    void colorChanged();

protected:
    void paint(QPainter& painter, QSize size, double scale) override;

private:
    Q_OBJECT_BINDABLE_PROPERTY(SymbolItem, QString, _name, &SymbolItem::nameChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(SymbolItem, QColor, _color, Qt::white, &SymbolItem::colorChanged)
};
