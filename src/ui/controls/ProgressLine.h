#pragma once

#include "ui/controls/PixelItem.h"

#include <QColor>
#include <QProperty>

/// A thin line that is filled up to a place, where it can have a knob. It is drawn anew only when the place
/// has moved by a pixel.
class ProgressLine : public PixelItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double fraction READ fraction WRITE setFraction NOTIFY fractionChanged)
    Q_PROPERTY(double thickness READ thickness WRITE setThickness NOTIFY thicknessChanged)
    Q_PROPERTY(bool hasKnob READ hasKnob WRITE setHasKnob NOTIFY hasKnobChanged)
    Q_PROPERTY(QColor track READ track WRITE setTrack NOTIFY trackChanged)
    Q_PROPERTY(QColor fill READ fill WRITE setFill NOTIFY fillChanged)

public:
    explicit ProgressLine(QQuickItem* parent = nullptr);

    /// How far the line is filled: 0 to 1.
    double fraction() const { return _fraction; }
    void setFraction(double fraction) { _fraction = fraction; }
    /// Height of the line, in points; it lies in the middle of the item, whose height is the knob's.
    double thickness() const { return _thickness; }
    void setThickness(double thickness) { _thickness = thickness; }
    bool hasKnob() const { return _hasKnob; }
    void setHasKnob(bool hasKnob) { _hasKnob = hasKnob; }
    QColor track() const { return _track; }
    void setTrack(const QColor& color) { _track = color; }
    QColor fill() const { return _fill; }
    void setFill(const QColor& color) { _fill = color; }

Q_SIGNALS:
    void fractionChanged();
    void thicknessChanged();
    void hasKnobChanged();
    void trackChanged();
    void fillChanged();

protected:
    void paint(QPainter& painter, QSize size, double scale) override;

private:
    void followFraction();

    int _drawnFill = 0; ///< pixels
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ProgressLine, double, _fraction, 0, &ProgressLine::fractionChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ProgressLine, double, _thickness, 0, &ProgressLine::thicknessChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ProgressLine, bool, _hasKnob, false, &ProgressLine::hasKnobChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ProgressLine, QColor, _track, &ProgressLine::trackChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ProgressLine, QColor, _fill, &ProgressLine::fillChanged)
};
