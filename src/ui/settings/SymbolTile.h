#pragma once

#include "ui/controls/PixelItem.h"

#include <QColor>
#include <QProperty>

/// A white symbol on a tile of a colour.
class SymbolTile : public PixelItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString symbol READ symbol WRITE setSymbol NOTIFY changed)
    Q_PROPERTY(QColor tint READ tint WRITE setTint NOTIFY changed)

public:
    explicit SymbolTile(QQuickItem* parent = nullptr);

    QString symbol() const { return _symbol; }
    void setSymbol(const QString& symbol) { _symbol = symbol; }
    QColor tint() const { return _tint; }
    void setTint(const QColor& tint) { _tint = tint; }

Q_SIGNALS:
    void changed();

protected:
    void paint(QPainter& painter, QSize size, double scale) override;

private:
    Q_OBJECT_BINDABLE_PROPERTY(SymbolTile, QString, _symbol, &SymbolTile::changed)
    Q_OBJECT_BINDABLE_PROPERTY(SymbolTile, QColor, _tint, &SymbolTile::changed)
};
