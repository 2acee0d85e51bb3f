#include "ui/panel/PanelMotion.h"

#include <QEasingCurve>

double PanelMotion::at(double progress) const
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(first, second, {1, 1});
    return curve.valueForProgress(progress);
}
