#pragma once

#include <QProxyStyle>

/// The desktop's own style for menus, but for what is hard to see in it: rows that can be checked have a
/// check mark or nothing, without a box; separators show on a dark ground; the highlight is round like the
/// pill, and there is room above the first row and below the last.
class ClassicMenuStyle : public QProxyStyle
{
    Q_OBJECT

public:
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
};
