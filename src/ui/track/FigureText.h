#pragma once

#include "ui/controls/PixelItem.h"

#include <QColor>
#include <QFont>
#include <QProperty>

/// A short text of figures, each as wide as the widest, so that nothing moves as they change. As wide as its
/// text; in a wider field it lies at the left.
class FigureText : public PixelItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY changed)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY changed)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed)

public:
    explicit FigureText(QQuickItem* parent = nullptr);

    QString text() const { return _text; }
    void setText(const QString& text) { _text = text; }
    QFont font() const { return _font; }
    void setFont(const QFont& font) { _font = font; }
    QColor color() const { return _color; }
    void setColor(const QColor& color) { _color = color; }

Q_SIGNALS:
    void changed();

protected:
    void paint(QPainter& painter, QSize size, double scale) override;

private:
    double widthOf(QChar character) const;
    double textWidth() const;

    Q_OBJECT_BINDABLE_PROPERTY(FigureText, QString, _text, &FigureText::changed)
    Q_OBJECT_BINDABLE_PROPERTY(FigureText, QFont, _font, &FigureText::changed)
    Q_OBJECT_BINDABLE_PROPERTY(FigureText, QColor, _color, &FigureText::changed)
};
