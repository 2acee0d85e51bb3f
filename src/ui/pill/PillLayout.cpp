#include "ui/pill/PillLayout.h"

#include "audio/VisualizerBars.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double margin = 8; // of what is seen, from the pill's ends
constexpr double artCell = 18;
constexpr double artSide = 16;
constexpr double visualizerCell = 18;
constexpr double visualizerWidth = 14;
constexpr double visualizerShift = 2; // to the middle between the cover and the next symbol
constexpr double barsInset = 0.75;    // of the outermost bars, within the visualizer
constexpr double buttonCell = 24;
constexpr double buttonSide = 16; // a button's zone, grown by its margin, fills its cell
constexpr double skipInset = 2;   // of the symbols, within their buttons
constexpr double playInset = 3.5;
constexpr double titleGap = 2; // behind the margin in the last button's cell
constexpr double titleHeight = 14;
constexpr double progressHeight = 3;
constexpr double progressBottom = 2;
constexpr double progressReach = 1; // above the line
constexpr double shortestProgress = 24;
constexpr double largestCornerRadius = 10;
constexpr double zoneMargin = 4;

} // namespace

PillLayout PillLayout::make(QSizeF size, const PillElements& elements)
{
    const double rowHeight = size.height() - progressHeight - progressBottom;
    PillLayout layout;
    layout.size = size;
    layout.cornerRadius = std::min(largestCornerRadius, size.height() / 2);
    double x = 0;
    double seenFrom = size.width();
    double seenTo = 0;
    const auto place = [&](QRectF& frame, bool isShown, double cell, QSizeF content, double inset,
                           double offset = 0) {
        if (isShown) {
            frame = QRectF(QPointF(), content);
            frame.moveCenter({x + cell / 2 + offset, rowHeight / 2});
            seenFrom = std::min(seenFrom, frame.left() + inset);
            seenTo = frame.right() - inset;
            x += cell;
        }
    };
    const QSizeF button(buttonSide, buttonSide);
    const QSizeF visualizer(visualizerWidth, VisualizerBars::totalHeight);
    place(layout.albumArt, elements.albumArt, artCell, {artSide, artSide}, 0);
    place(layout.visualizer, elements.visualizer, visualizerCell, visualizer, barsInset, visualizerShift);
    place(layout.previousButton, elements.previousButton, buttonCell, button, skipInset);
    place(layout.playButton, true, buttonCell, button, playInset);
    place(layout.nextButton, elements.nextButton, buttonCell, button, skipInset);

    const double seenWidth = seenTo - seenFrom;
    const double end = elements.title ? margin : std::max(0.0, (size.width() - seenWidth) / 2);
    const double shift = std::round(end - seenFrom);
    for (QRectF* const frame : {&layout.albumArt, &layout.visualizer, &layout.previousButton,
                                &layout.playButton, &layout.nextButton}) {
        frame->translate(frame->isEmpty() ? 0 : shift, 0);
    }
    if (elements.title) {
        const double left = x + shift + titleGap;
        layout.title = QRectF(left, (rowHeight - titleHeight) / 2,
                              std::max(0.0, size.width() - margin - left), titleHeight);
    }
    const double line =
        std::clamp(size.width() - 2 * end, std::min(shortestProgress, size.width()), size.width());
    layout.progress = QRectF((size.width() - line) / 2, rowHeight, line, progressHeight);
    return layout;
}

std::optional<QString> PillLayout::zoneAt(QPointF point) const
{
    const std::pair<QString, QRectF> zones[] = {
        {QStringLiteral("art"), albumArt},
        {QStringLiteral("prev"), previousButton},
        {QStringLiteral("play"), playButton},
        {QStringLiteral("next"), nextButton},
    };
    for (const auto& [name, frame] : zones) {
        if (!frame.isEmpty() &&
            frame.adjusted(-zoneMargin, -zoneMargin, zoneMargin, zoneMargin).contains(point)) {
            return name;
        }
    }
    return std::nullopt;
}

bool PillLayout::isOnProgress(QPointF point) const
{
    return progress.adjusted(-progressReach, -progressReach, progressReach, progressBottom).contains(point);
}

double PillLayout::progressFraction(QPointF point) const
{
    return progress.width() > 0 ? std::clamp((point.x() - progress.left()) / progress.width(), 0.0, 1.0) : 0;
}
