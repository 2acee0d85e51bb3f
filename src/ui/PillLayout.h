#pragma once

#include <QPointF>
#include <QRectF>
#include <QString>

#include <optional>

/// Which parts of the pill are shown.
struct PillElements {
    bool previousButton = true;
    bool nextButton = true;
    bool title = true;

    friend bool operator==(const PillElements&, const PillElements&) = default;
};

/// Where everything in the pill lies, in points from its top-left corner. Parts that are not shown are empty.
struct PillLayout {
    QRectF previousButton;
    QRectF playButton;
    QRectF nextButton;
    QRectF title;
    QRectF progress;
    double cornerRadius = 0;

    /// Lays the row out from left to right; the title takes what the buttons leave. Without it, what is left
    /// is shared by both ends.
    static PillLayout make(QSizeF size, const PillElements& elements);

    /// The control at a point, each grown by 4 points on every side: "prev", "play" or "next"; the first in
    /// this order where two overlap.
    std::optional<QString> zoneAt(QPointF point) const;
};
