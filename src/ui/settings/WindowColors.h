#pragma once

#include <QColor>
#include <QObject>
#include <QQmlEngine>

/// The colours of the program's windows on a light or a dark desktop.
struct WindowColors {
    Q_GADGET
    QML_VALUE_TYPE(windowColors)
    Q_PROPERTY(QColor background MEMBER background CONSTANT)
    Q_PROPERTY(QColor sidebar MEMBER sidebar CONSTANT)
    Q_PROPERTY(QColor card MEMBER card CONSTANT)
    Q_PROPERTY(QColor line MEMBER line CONSTANT)
    Q_PROPERTY(QColor text MEMBER text CONSTANT)
    Q_PROPERTY(QColor dimmedText MEMBER dimmedText CONSTANT)
    Q_PROPERTY(QColor accent MEMBER accent CONSTANT)
    Q_PROPERTY(QColor accentPressed MEMBER accentPressed CONSTANT)
    Q_PROPERTY(QColor accentText MEMBER accentText CONSTANT)
    Q_PROPERTY(QColor focus MEMBER focus CONSTANT)
    Q_PROPERTY(QColor face MEMBER face CONSTANT)
    Q_PROPERTY(QColor faceBorder MEMBER faceBorder CONSTANT)
    Q_PROPERTY(QColor hovered MEMBER hovered CONSTANT)
    Q_PROPERTY(QColor pressed MEMBER pressed CONSTANT)
    Q_PROPERTY(QColor well MEMBER well CONSTANT)
    Q_PROPERTY(QColor track MEMBER track CONSTANT)
    Q_PROPERTY(QColor good MEMBER good CONSTANT)
    Q_PROPERTY(QColor warning MEMBER warning CONSTANT)

public:
    QColor background;
    QColor sidebar;
    QColor card;
    QColor line; ///< around a card and between its rows
    QColor text;
    QColor dimmedText; ///< of explanations
    QColor accent;     ///< of what is on or is the thing to press
    QColor accentPressed;
    QColor accentText; ///< on the accent
    QColor focus;      ///< of the ring around what has the keyboard
    QColor face;       ///< of buttons
    QColor faceBorder;
    QColor hovered; ///< over what is under the pointer
    QColor pressed;
    QColor well;  ///< behind the cases of a segmented choice
    QColor track; ///< of a switch that is off
    QColor good;  ///< of what is granted
    QColor warning;

    friend bool operator==(const WindowColors&, const WindowColors&) = default;

    static WindowColors forDesktop(bool isDark);
};
