import QtQuick

/// A part of the pill, in the place that its layout gives it; not there at all without a width.
Item {
    required property rect frame

    x: frame.x
    y: frame.y
    width: frame.width
    height: frame.height
    visible: width > 0
}
