#include "ui/menu/ClassicMenuStyle.h"

#include "ui/controls/Symbol.h"

#include <QPainter>
#include <QStyleOptionMenuItem>

#include <algorithm>

namespace {

constexpr int endPadding = 5; // above the first row and below the last
constexpr int rowPadding = 2; // above and below a title, besides the desktop's
constexpr int inset = 4;      // of the highlight, from the menu's sides

void drawSeparator(QPainter& painter, const QStyleOption& option)
{
    constexpr double opacity = 0.13;
    QColor line = option.palette.color(QPalette::Active, QPalette::Text);
    line.setAlphaF(opacity);
    painter.fillRect(
        QRect(option.rect.left() + 2 * inset, option.rect.center().y(), option.rect.width() - 4 * inset, 1),
        line);
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
    const auto* const row = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element != CE_MenuItem || row == nullptr) {
        QProxyStyle::drawControl(element, option, painter, widget);
    } else if (row->menuItemType == QStyleOptionMenuItem::Separator) {
        drawSeparator(*painter, *option);
    } else if (row->state.testFlag(State_Selected) && row->state.testFlag(State_Enabled)) {
        constexpr int radius = 5;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(row->palette.highlight());
        painter->drawRoundedRect(row->rect.adjusted(inset, 0, -inset, 0), radius, radius);
        painter->restore();
        const QStyleOptionMenuItem shown = highlighted(*row, *painter);
        QProxyStyle::drawControl(element, &shown, painter, widget);
    } else {
        QProxyStyle::drawControl(element, option, painter, widget);
    }
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
            const int side = std::min(option->rect.width(), option->rect.height());
            painter->save();
            painter->setRenderHint(QPainter::Antialiasing);
            painter->translate(option->rect.topLeft());
            painter->fillPath(symbolOutline(QStringLiteral("checkmark"), side),
                              option->palette.color(QPalette::Text));
            painter->restore();
        }
        return;
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
    const QSize whole = QProxyStyle::sizeFromContents(type, option, size, widget);
    return type == CT_MenuItem ? whole + QSize(2 * inset, 2 * rowPadding) : whole;
}
