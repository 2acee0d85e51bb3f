#include "ui/pill/PillLayout.h"

#include "audio/VisualizerBars.h"

#include <algorithm>
#include <utility>

namespace {

constexpr double rowPadding = 8;
constexpr double artCell = 18;
constexpr double artSide = 16;
constexpr double artShift = 1; // the cover is as far from the pill's edge as from its top
constexpr double visualizerCell = 18;
constexpr double visualizerWidth = 14;
constexpr double buttonCell = 24;
constexpr double buttonSide = 16; // a button's zone, grown by its margin, fills its cell
constexpr double titleGap = 2;    // behind the margin in the last button's cell
constexpr double titleHeight = 14;
constexpr double progressHeight = 3;
constexpr double progressInset = 13;
constexpr double progressBottom = 2;
constexpr double progressReach = 1; // above the line
constexpr double largestCornerRadius = 10;
constexpr double zoneMargin = 4;

} // namespace

PillLayout PillLayout::make(QSizeF size, const PillElements& elements)
{
    const double rowHeight = size.height() - progressHeight - progressBottom;
    double taken = buttonCell;
    for (const auto& [isShown, cell] : {std::pair(elements.albumArt, artCell),
                                        {elements.visualizer, visualizerCell},
                                        {elements.previousButton, buttonCell},
                                        {elements.nextButton, buttonCell}}) {
        taken += isShown ? cell : 0;
    }
    const double spare = std::max(0.0, size.width() - 2 * rowPadding - taken);

    double x = rowPadding + (elements.title ? 0 : spare / 2);
    const auto place = [&](bool isShown, double cellWidth, QSizeF content) {
        if (!isShown) {
            return QRectF();
        }
        QRectF frame(QPointF(), content);
        frame.moveCenter({x + cellWidth / 2, rowHeight / 2});
        x += cellWidth;
        return frame;
    };
    PillLayout layout;
    layout.cornerRadius = std::min(largestCornerRadius, size.height() / 2);
    layout.albumArt = place(elements.albumArt, artCell, {artSide, artSide}).translated(-artShift, 0);
    layout.visualizer =
        place(elements.visualizer, visualizerCell, {visualizerWidth, VisualizerBars::totalHeight});
    layout.previousButton = place(elements.previousButton, buttonCell, {buttonSide, buttonSide});
    layout.playButton = place(true, buttonCell, {buttonSide, buttonSide});
    layout.nextButton = place(elements.nextButton, buttonCell, {buttonSide, buttonSide});
    if (elements.title) {
        layout.title =
            QRectF(x + titleGap, (rowHeight - titleHeight) / 2, std::max(0.0, spare - titleGap), titleHeight);
    }
    layout.progress = QRectF(progressInset, size.height() - progressHeight - progressBottom,
                             std::max(0.0, size.width() - 2 * progressInset), progressHeight);
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
