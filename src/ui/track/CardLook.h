#pragma once

#include "ui/track/CardColors.h"

#include <QImage>

/// What a card looks like that shows a track: its cover as seen through frosted glass, and the colours of
/// what stands on it.
struct CardLook {
    QImage backdrop; ///< small, to be stretched over the card; opaque
    CardColors colors;

    friend bool operator==(const CardLook&, const CardLook&) = default;

    /// The glass is as clear as it can be with all text on it having enough contrast. Without a cover, which
    /// is null then, it is of the tint, or without one neutral. Takes some milliseconds; safe on any thread.
    static CardLook make(const QImage& cover, bool isDark, const std::optional<QColor>& tint);
};
