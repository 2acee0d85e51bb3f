#pragma once

#include <QObject>
#include <QQmlEngine>
#include <QRectF>

/// Which parts of the widget are shown.
struct WidgetElements {
    bool artwork = true;
    bool title = true;
    bool artist = true;
    bool progress = true;
    bool transport = true;
    bool lyric = false;

    friend bool operator==(const WidgetElements&, const WidgetElements&) = default;
};

/// Where everything in the widget lies, in points from its top-left corner: in rows from top to bottom. Parts
/// that are not shown are empty.
struct WidgetLayout {
    Q_GADGET
    QML_VALUE_TYPE(widgetLayout)
    Q_PROPERTY(QRectF artwork MEMBER artwork CONSTANT)
    Q_PROPERTY(QRectF title MEMBER title CONSTANT)
    Q_PROPERTY(QRectF artist MEMBER artist CONSTANT)
    Q_PROPERTY(QRectF progress MEMBER progress CONSTANT)
    Q_PROPERTY(QRectF transport MEMBER transport CONSTANT)
    Q_PROPERTY(QRectF lyric MEMBER lyric CONSTANT)
    Q_PROPERTY(int titleSize MEMBER titleSize CONSTANT)
    Q_PROPERTY(int artistSize MEMBER artistSize CONSTANT)

public:
    static constexpr QSizeF smallest{240, 60};
    static constexpr QSizeF largest{520, 320};

    QRectF artwork;
    QRectF title;
    QRectF artist;
    QRectF progress;
    QRectF transport;
    QRectF lyric;
    int titleSize = 0;  ///< of the font, in pixels
    int artistSize = 0; ///< the same

    friend bool operator==(const WidgetLayout&, const WidgetLayout&) = default;

    /// Room that is left goes to the cover and the texts beside it. Where there is too little the lyric goes
    /// first, then the progress, then the buttons.
    static WidgetLayout make(QSizeF size, WidgetElements elements);

    /// The height at which everything has just room, within the limits.
    static double fittingHeight(const WidgetElements& elements);
};
