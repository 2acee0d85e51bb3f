#include "ui/menu/ClassicMenuStyle.h"

#include "ui/controls/Symbol.h"

#include <QPainter>
#include <QStyleOptionMenuItem>

#include <algorithm>

namespace {

constexpr int endPadding = 5; // above the first row and below the last
constexpr int rowPadding = 2; // above and below a title, besides the desktop's
constexpr int separatorHeight = 9;
constexpr int inset = 4; // of the highlight, from the menu's sides

QColor faintInk(const QPalette& palette, double opacity)
{
    QColor ink = palette.color(QPalette::Active, QPalette::Text);
    ink.setAlphaF(static_cast<float>(opacity));
    return ink;
}

void drawSeparator(QPainter& painter, const QStyleOption& option)
{
    constexpr double opacity = 0.13;
    const QRect line(option.rect.left() + inset, option.rect.center().y(), option.rect.width() - 2 * inset,
                     1);
    painter.fillRect(line, faintInk(option.palette, opacity));
}

void drawHighlight(QPainter& painter, const QStyleOption& option)
{
    constexpr int radius = 5;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(option.palette.highlight());
    painter.drawRoundedRect(option.rect, radius, radius);
    painter.restore();
}

void drawCheckMark(QPainter& painter, const QStyleOption& option)
{
    const int side = std::min(option.rect.width(), option.rect.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(option.rect.topLeft());
    painter.fillPath(symbolOutline(QStringLiteral("checkmark"), side), option.palette.color(QPalette::Text));
    painter.restore();
}

/// The row as the desktop draws one that is not highlighted, in the colour of those that are.
QStyleOptionMenuItem highlighted(const QStyleOptionMenuItem& option, const QPainter& painter)
{
    QStyleOptionMenuItem row = option;
    row.state.setFlag(QStyle::State_Selected, false);
    const QColor ink = row.palette.color(QPalette::HighlightedText);
    for (const auto role : {QPalette::Text, QPalette::ButtonText, QPalette::WindowText}) {
        row.palette.setColor(role, ink);
    }
    const QSize size(row.maxIconWidth, row.maxIconWidth);
    row.icon = QIcon(option.icon.pixmap(size, painter.device()->devicePixelRatio(), QIcon::Selected));
    return row;
}

} // namespace

void ClassicMenuStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                                   const QWidget* widget) const
{
    const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element != CE_MenuItem || item == nullptr) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    QStyleOptionMenuItem row = *item;
    row.rect.adjust(inset, 0, -inset, 0);
    if (row.menuItemType == QStyleOptionMenuItem::Separator) {
        drawSeparator(*painter, row);
        return;
    }
    if (row.state.testFlag(State_Selected) && row.state.testFlag(State_Enabled)) {
        drawHighlight(*painter, row);
        row = highlighted(row, *painter);
    }
    QProxyStyle::drawControl(element, &row, painter, widget);
}

void ClassicMenuStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                     const QWidget* widget) const
{
    switch (element) {
    case PE_PanelButtonCommand: // around the symbol of a row that is on: the symbol shows it
        return;
    case PE_IndicatorCheckBox:
    case PE_IndicatorMenuCheckMark:
        if (option->state.testFlag(State_On)) {
            drawCheckMark(*painter, *option);
        }
        return;
    case PE_PanelMenu: {
        constexpr double opacity = 0.2; // of the border
        painter->fillRect(option->rect, option->palette.window());
        painter->setPen(faintInk(option->palette, opacity));
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        return;
    }
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

int ClassicMenuStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    return metric == PM_MenuVMargin ? endPadding : QProxyStyle::pixelMetric(metric, option, widget);
}

QSize ClassicMenuStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                         const QWidget* widget) const
{
    QSize whole = QProxyStyle::sizeFromContents(type, option, size, widget);
    const auto* const row = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (type == CT_MenuItem && row != nullptr) {
        const bool isSeparator = row->menuItemType == QStyleOptionMenuItem::Separator;
        whole += {4 * inset, 2 * rowPadding};
        whole.setHeight(isSeparator ? separatorHeight : whole.height());
    }
    return whole;
}
