#pragma once

#include "ui/controls/MovingItem.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QProperty>

/// One line of text. What does not fit its field fades out at the edge and, while active, scrolls through the
/// field; text that is written from right to left lies at the right and scrolls to the right.
class MarqueeText : public MovingItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(bool isActive READ isActive WRITE setActive NOTIFY isActiveChanged)
    Q_PROPERTY(bool isShrunkToFit READ isShrunkToFit WRITE setShrunkToFit NOTIFY isShrunkToFitChanged)
    Q_PROPERTY(int smallestSize READ smallestSize WRITE setSmallestSize NOTIFY isShrunkToFitChanged)
    Q_PROPERTY(bool isCentred READ isCentred WRITE setCentred NOTIFY isCentredChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY fontChanged)

public:
    explicit MarqueeText(QQuickItem* parent = nullptr);
    ~MarqueeText() override;

    QString text() const { return _text; }
    void setText(const QString& text) { _text = text; }
    bool isActive() const { return _isActive; }
    void setActive(bool isActive) { _isActive = isActive; }
    /// Whether text that is a little too long is set in a smaller size instead.
    bool isShrunkToFit() const { return _isShrunkToFit; }
    void setShrunkToFit(bool shrunk) { _isShrunkToFit = shrunk; }
    /// Down to this many pixels; what does not fit then keeps its size.
    int smallestSize() const { return _smallestSize; }
    void setSmallestSize(int size) { _smallestSize = size; }
    /// Whether text that leaves room in its field lies in the middle of that.
    bool isCentred() const { return _isCentred; }
    void setCentred(bool isCentred) { _isCentred = isCentred; }
    QColor color() const { return _color; }
    void setColor(const QColor& color) { _color = color; }
    QFont font() const { return _font; }
    void setFont(const QFont& font) { _font = font; }

Q_SIGNALS:
    void textChanged();
    void isActiveChanged();
    void isShrunkToFitChanged();
    void isCentredChanged();
    void colorChanged();
    void fontChanged();

protected:
    void draw(QImage& image, double scale) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    int frameRate() const override;
    void advance() override;
    void restart() override;

private:
    void relayout();
    bool isTooLong() const { return _textWidth > width(); }
    double offset() const;
    int pixelOffset(double scale) const;
    QImage drawnLabel(int height, double scale) const;

    QString _line; ///< the text as it is drawn
    QFont _lineFont;
    bool _isMirrored = false; ///< written from right to left
    double _textWidth = 0;
    Uptime _startTime;
    int _drawnOffset = 0; ///< pixels
    QImage _label;        ///< of the scale and the colour last painted; null when it has to be drawn anew
    Q_OBJECT_BINDABLE_PROPERTY(MarqueeText, QString, _text, &MarqueeText::textChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(MarqueeText, bool, _isActive, false, &MarqueeText::isActiveChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(MarqueeText, bool, _isShrunkToFit, false,
                                         &MarqueeText::isShrunkToFitChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(MarqueeText, bool, _isCentred, false, &MarqueeText::isCentredChanged)
    Q_OBJECT_BINDABLE_PROPERTY(MarqueeText, QColor, _color, &MarqueeText::colorChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(MarqueeText, int, _smallestSize, 9,
                                         &MarqueeText::isShrunkToFitChanged)
    Q_OBJECT_BINDABLE_PROPERTY(MarqueeText, QFont, _font, &MarqueeText::fontChanged)
};
