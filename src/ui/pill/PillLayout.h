#pragma once

#include <QObject>
#include <QPointF>
#include <QQmlEngine>
#include <QRectF>
#include <QString>

#include <optional>

/// Which parts of the pill are shown.
struct PillElements {
    bool albumArt = true;
    bool visualizer = true;
    bool previousButton = true;
    bool nextButton = true;
    bool title = true;

    friend bool operator==(const PillElements&, const PillElements&) = default;
};

/// Where everything in the pill lies, in points from its top-left corner. Parts that are not shown are empty.
struct PillLayout {
    Q_GADGET
    QML_VALUE_TYPE(pillLayout)
    Q_PROPERTY(QSizeF size MEMBER size CONSTANT)
    Q_PROPERTY(QRectF albumArt MEMBER albumArt CONSTANT)
    Q_PROPERTY(QRectF visualizer MEMBER visualizer CONSTANT)
    Q_PROPERTY(QRectF previousButton MEMBER previousButton CONSTANT)
    Q_PROPERTY(QRectF playButton MEMBER playButton CONSTANT)
    Q_PROPERTY(QRectF nextButton MEMBER nextButton CONSTANT)
    Q_PROPERTY(QRectF title MEMBER title CONSTANT)
    Q_PROPERTY(QRectF progress MEMBER progress CONSTANT)
    Q_PROPERTY(double cornerRadius MEMBER cornerRadius CONSTANT)

public:
    QSizeF size; ///< of the pill
    QRectF albumArt;
    QRectF visualizer;
    QRectF previousButton;
    QRectF playButton;
    QRectF nextButton;
    QRectF title;
    QRectF progress;
    double cornerRadius = 0;

    friend bool operator==(const PillLayout&, const PillLayout&) = default;

    /// Lays the row out from left to right; the title takes what the others leave. What is seen begins and
    /// ends at the same distance from the pill's ends, and so does the progress line.
    static PillLayout make(QSizeF size, const PillElements& elements);

    /// The control at a point, each grown by 4 points on every side: "art", "prev", "play" or "next"; the
    /// first in this order where two overlap.
    std::optional<QString> zoneAt(QPointF point) const;

    /// Whether a press at a point is one on the progress line: it is thin, so all that lies below it and a
    /// little above counts, too.
    bool isOnProgress(QPointF point) const;

    /// How far along the progress line a point is: 0 to 1, also beyond its ends.
    double progressFraction(QPointF point) const;
};
