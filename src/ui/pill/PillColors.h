#pragma once

#include <QColor>
#include <QObject>
#include <QQmlEngine>

#include <optional>

/// The pill's colours on a light or a dark desktop.
struct PillColors {
    Q_GADGET
    QML_VALUE_TYPE(pillColors)
    Q_PROPERTY(QColor background MEMBER background CONSTANT)
    Q_PROPERTY(QColor border MEMBER border CONSTANT)
    Q_PROPERTY(QColor text MEMBER text CONSTANT)
    Q_PROPERTY(QColor dimmedText MEMBER dimmedText CONSTANT)
    Q_PROPERTY(QColor bars MEMBER bars CONSTANT)
    Q_PROPERTY(QColor plate MEMBER plate CONSTANT)
    Q_PROPERTY(QColor highlight MEMBER highlight CONSTANT)
    Q_PROPERTY(QColor pressed MEMBER pressed CONSTANT)
    Q_PROPERTY(QColor track MEMBER track CONSTANT)
    Q_PROPERTY(QColor fill MEMBER fill CONSTANT)

public:
    QColor background;
    QColor border;
    QColor text;
    QColor dimmedText; ///< for what is there but has nothing to say
    QColor bars;       ///< of the visualizer
    QColor plate;      ///< where a cover would be
    QColor highlight;  ///< behind the button under the pointer
    QColor pressed;    ///< behind a button that is held down
    QColor track;      ///< the part of the progress line still to come
    QColor fill;       ///< the part that has been played

    friend bool operator==(const PillColors&, const PillColors&) = default;

    /// With a tint, highlight and fill are of that colour; where it could not be told from the pill, of the
    /// nearest one that can. Without, everything is neutral.
    static PillColors forDesktop(bool isDark, const std::optional<QColor>& tint = std::nullopt);
};
