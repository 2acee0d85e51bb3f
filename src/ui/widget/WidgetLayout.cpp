#include "ui/widget/WidgetLayout.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double margin = 12;
constexpr double rowGap = 6;
constexpr double coverHeight = 48;
constexpr double lineHeight = 20; // of a title or an artist alone
constexpr double bothHeight = 40; // of title and artist
constexpr double leastMain = 34;  // of the row of cover, title and artist
constexpr double progressHeight = 28;
constexpr double transportHeight = 28;
constexpr double lyricHeight = 36; // of two rows
constexpr double textGap = 12;     // between the cover and the texts
constexpr double closeRoom = 16;   // right of the texts, for the button in the corner

bool hasText(const WidgetElements& elements)
{
    return elements.title || elements.artist;
}

bool hasMain(const WidgetElements& elements)
{
    return elements.artwork || hasText(elements);
}

double mainHeight(const WidgetElements& elements)
{
    if (elements.artwork) {
        return coverHeight;
    }
    return elements.title && elements.artist ? bothHeight : hasText(elements) ? lineHeight : 0;
}

/// Of the rows that keep their height, each with a gap.
double fixedHeight(const WidgetElements& elements)
{
    return (elements.progress ? progressHeight + rowGap : 0) +
           (elements.transport ? transportHeight + rowGap : 0) + (elements.lyric ? lyricHeight + rowGap : 0);
}

double contentHeight(const WidgetElements& elements, double main)
{
    return main + fixedHeight(elements) - (hasMain(elements) || fixedHeight(elements) == 0 ? 0 : rowGap);
}

/// Without the rows that there is no room for.
WidgetElements fitting(WidgetElements elements, double room)
{
    const double least = std::min(leastMain, mainHeight(elements));
    for (bool* const row : {&elements.lyric, &elements.progress, &elements.transport}) {
        if (contentHeight(elements, least) > room) {
            *row = false;
        }
    }
    return elements;
}

void layOutMain(WidgetLayout& layout, const WidgetElements& elements, const QRectF& row)
{
    QRectF texts = row;
    if (elements.artwork) {
        const double side =
            hasText(elements) ? std::min(row.height(), row.width() / 2) : std::min(row.height(), row.width());
        layout.artwork = QRectF(row.left(), row.top(), side, side);
        layout.artwork.moveTop(std::round(row.top() + (row.height() - side) / 2));
        if (!hasText(elements)) {
            layout.artwork.moveLeft(std::round(row.left() + (row.width() - side) / 2));
        }
        texts.setLeft(row.left() + side + textGap);
    }
    texts.setRight(row.right() - closeRoom);
    layout.titleSize = static_cast<int>(std::clamp(row.height() * 0.22, 14.0, 24.0));
    layout.artistSize = static_cast<int>(std::clamp(row.height() * 0.17, 12.0, 17.0));
    const double title = elements.title ? std::ceil(layout.titleSize * 1.45) : 0;
    const double artist = elements.artist ? std::ceil(layout.artistSize * 1.5) : 0;
    const double top = std::round(texts.top() + (texts.height() - title - artist) / 2);
    layout.title = QRectF(texts.left(), top, texts.width(), title);
    layout.artist = QRectF(texts.left(), top + title, texts.width(), artist);
}

} // namespace

WidgetLayout WidgetLayout::make(QSizeF size, WidgetElements elements)
{
    const double room = size.height() - 2 * margin;
    elements = fitting(elements, room);
    const double width = size.width() - 2 * margin;
    WidgetLayout layout;
    double y = margin;
    if (hasMain(elements)) {
        const double height = std::max(0.0, room - fixedHeight(elements));
        layOutMain(layout, elements, QRectF(margin, y, width, height));
        y += height + rowGap;
    } else {
        y += std::max(0.0, std::round((room - contentHeight(elements, 0)) / 2));
    }
    const auto place = [&](QRectF& frame, bool isShown, double height) {
        if (isShown) {
            frame = QRectF(margin, y, width, height);
            y += height + rowGap;
        }
    };
    place(layout.progress, elements.progress, progressHeight);
    place(layout.transport, elements.transport, transportHeight);
    place(layout.lyric, elements.lyric, lyricHeight);
    return layout;
}

double WidgetLayout::fittingHeight(const WidgetElements& elements)
{
    const double height = contentHeight(elements, mainHeight(elements)) + 2 * margin;
    return std::clamp(height, smallest.height(), largest.height());
}
