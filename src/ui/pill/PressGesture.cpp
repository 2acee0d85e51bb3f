#include "ui/pill/PressGesture.h"

#include <QLineF>

#include <utility>

void PressGesture::press(QPointF point, const std::optional<QString>& zone)
{
    *this = PressGesture();
    _isDown = true;
    _origin = point;
    _zone = zone;
}

void PressGesture::move(QPointF point)
{
    _hasMoved = _hasMoved || QLineF(_origin, point).length() > largestMovement;
}

bool PressGesture::completeHold(const std::optional<QString>& zone)
{
    _holdFired = _isDown && !_hasMoved && !_zone && !zone;
    return _holdFired;
}

std::optional<QString> PressGesture::release(const std::optional<QString>& zone)
{
    const PressGesture press = std::exchange(*this, PressGesture());
    return press._isDown && !press._holdFired && press._zone == zone ? zone : std::nullopt;
}

void PressGesture::cancel()
{
    *this = PressGesture();
}
