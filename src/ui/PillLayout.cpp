#include "ui/PillLayout.h"

#include <algorithm>
#include <array>

namespace {

constexpr double rowPadding = 8;
constexpr double cellWidth = 24;
constexpr double buttonSize = 16; // a button's zone, grown by its margin, fills its cell
constexpr double titleGap = 6;
constexpr double progressHeight = 3;
constexpr double progressInset = 12;
constexpr double progressBottom = 2;
constexpr double largestCornerRadius = 9;
constexpr double zoneMargin = 4;

} // namespace

PillLayout PillLayout::make(QSizeF size, const PillElements& elements)
{
    const double rowHeight = size.height() - progressHeight - progressBottom;
    const int buttons = 1 + static_cast<int>(elements.previousButton) + static_cast<int>(elements.nextButton);
    const double spare = std::max(0.0, size.width() - 2 * rowPadding - buttons * cellWidth);

    double x = rowPadding + (elements.title ? 0 : spare / 2);
    const auto placeButton = [&](bool isShown) {
        if (!isShown) {
            return QRectF();
        }
        const QRectF cell(x, 0, cellWidth, rowHeight);
        x += cellWidth;
        QRectF button(0, 0, buttonSize, buttonSize);
        button.moveCenter(cell.center());
        return button;
    };
    PillLayout layout;
    layout.cornerRadius = std::min(largestCornerRadius, size.height() / 2);
    layout.previousButton = placeButton(elements.previousButton);
    layout.playButton = placeButton(true);
    layout.nextButton = placeButton(elements.nextButton);
    if (elements.title) {
        layout.title = QRectF(x + titleGap, 0, std::max(0.0, spare - titleGap), rowHeight);
    }
    layout.progress = QRectF(progressInset, size.height() - progressHeight - progressBottom,
                             std::max(0.0, size.width() - 2 * progressInset), progressHeight);
    return layout;
}

std::optional<QString> PillLayout::zoneAt(QPointF point) const
{
    const std::array<std::pair<QString, QRectF>, 3> zones = {{
        {QStringLiteral("prev"), previousButton},
        {QStringLiteral("play"), playButton},
        {QStringLiteral("next"), nextButton},
    }};
    for (const auto& [name, frame] : zones) {
        if (!frame.isEmpty() &&
            frame.adjusted(-zoneMargin, -zoneMargin, zoneMargin, zoneMargin).contains(point)) {
            return name;
        }
    }
    return std::nullopt;
}
