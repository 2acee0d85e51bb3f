#pragma once

#include <QPointF>
#include <QString>

#include <optional>

/// One press of the left button on the pill's row: a tap on a control, or a long press beside them. Whichever
/// of the two comes first wins; a hold swallows the tap that ends it.
class PressGesture
{
public:
    static constexpr double holdDuration = 0.4;   ///< seconds
    static constexpr double largestMovement = 10; ///< points, in a hold

    /// `zone` is the control below the pointer, none beside them; so in the other operations.
    void press(QPointF point, const std::optional<QString>& zone);
    void move(QPointF point);

    /// The button has been down for the duration of a hold. True when that makes it a long press.
    bool completeHold(const std::optional<QString>& zone);

    /// The control that the press was a tap on: where it went down and came up.
    std::optional<QString> release(const std::optional<QString>& zone);

    /// The press is no longer ours.
    void cancel();

    /// The control on which the button went down and has not come up.
    std::optional<QString> pressedZone() const { return _zone; }

private:
    bool _isDown = false;
    bool _hasMoved = false;
    bool _holdFired = false;
    QPointF _origin;
    std::optional<QString> _zone;
};
