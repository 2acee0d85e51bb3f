#include "ui/menu/MenuPanelLayout.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

using Kind = PellarMenuItem::Kind;
using Items = std::vector<PellarMenuItem>;

constexpr double panelPadding = 6;
constexpr double rowPadding = 8; // between a row's edges and what it shows
constexpr double rowHeight = 26;
constexpr double infoHeight = 22;
constexpr double separatorHeight = 11;
constexpr double indentWidth = 14; // of the titles below a submenu
constexpr double groupPadding = 4; // below the rows of an open submenu
constexpr double checkWidth = 12;
constexpr double symbolWidth = 15;
constexpr double columnGap = 6;
constexpr double trailingGap = 20;
constexpr double chevronWidth = 10;
constexpr double smallestWidth = 220;
constexpr double largestWidth = 330;

double heightOf(const PellarMenuItem& item)
{
    switch (item.kind) {
    case Kind::separator:
        return separatorHeight;
    case Kind::info:
        return infoHeight;
    default:
        return rowHeight;
    }
}

double trailingWidth(const PellarMenuItem& item, const QFont& font)
{
    if (item.kind == Kind::submenu) {
        return chevronWidth;
    }
    return item.keyEquivalent.isEmpty() ? 0
                                        : std::ceil(QFontMetricsF(font).horizontalAdvance(
                                              item.keyEquivalent.toString(QKeySequence::NativeText)));
}

/// Where titles without a symbol begin, from the left edge of their row; the column of check marks is left
/// of it.
double titleLeft(int level)
{
    return rowPadding + checkWidth + columnGap + level * indentWidth;
}

double widestRow(const Items& items, int level, const QFont& font)
{
    QFont bold = font;
    bold.setBold(true);
    double widest = 0;
    for (const PellarMenuItem& item : items) {
        const double trailing = trailingWidth(item, font);
        const double width =
            titleLeft(level) + (item.icon ? symbolWidth + columnGap : 0) +
            QFontMetricsF(item.kind == Kind::header ? bold : font).horizontalAdvance(item.title) +
            (trailing > 0 ? trailingGap + trailing : 0) + rowPadding;
        widest = std::max({widest, std::ceil(width) + 1, widestRow(item.items, level + 1, font)});
    }
    return widest;
}

/// Puts rows below those that are there.
class Stack
{
public:
    Stack(MenuPanelLayout& layout, QString expandedKey, const QFont& font, double width)
        : _layout(layout)
        , _expandedKey(std::move(expandedKey))
        , _font(font)
        , _width(width)
    {
    }

    void add(const Items& items, int level, const QString& parentKey)
    {
        for (size_t i = 0; i < items.size(); ++i) {
            const QString number = QString::number(i);
            const QString key = parentKey.isEmpty() ? number : QStringLiteral("%1.%2").arg(parentKey, number);
            const bool isExpanded = items[i].kind == Kind::submenu && key == _expandedKey;
            MenuPanelRow row = place(items[i], titleLeft(level));
            row.key = key;
            row.parentKey = parentKey;
            row.isExpanded = isExpanded;
            row.item.items.clear();
            _layout.rows.append(row);
            if (isExpanded) {
                add(items[i].items, level + 1, key);
                _y += groupPadding;
                _layout.expandedFrame = QRectF(row.frame.topLeft(), QPointF(row.frame.right(), _y));
            }
        }
    }

    double bottom() const { return _y; }

private:
    MenuPanelRow place(const PellarMenuItem& item, double left)
    {
        MenuPanelRow row;
        row.item = item;
        const double height = heightOf(item);
        row.frame = QRectF(panelPadding, _y, _width, height);
        _y += height;
        const auto box = [height](double x, double width) {
            return QRectF(x, std::round((height - width) / 2), width, width);
        };
        row.checkFrame = box(left - columnGap - checkWidth, checkWidth);
        double right = _width - rowPadding;
        if (const double trailing = trailingWidth(item, _font); trailing > 0) {
            // A square for the chevron, which is turned when its rows are open.
            row.trailingFrame = item.kind == Kind::submenu ? box(right - trailing, trailing)
                                                           : QRectF(right - trailing, 0, trailing, height);
            right -= trailing + trailingGap;
        }
        if (item.icon) {
            row.symbolFrame = box(left, symbolWidth);
            left += symbolWidth + columnGap;
        }
        row.titleFrame = QRectF(left, 0, std::max(0.0, right - left), height);
        return row;
    }

    MenuPanelLayout& _layout;
    QString _expandedKey;
    QFont _font;
    double _width;
    double _y = panelPadding;
};

} // namespace

MenuPanelLayout MenuPanelLayout::make(const Items& items, const QString& expandedKey, const QFont& font)
{
    const double width = std::clamp(widestRow(items, 0, font), smallestWidth - 2 * panelPadding,
                                    largestWidth - 2 * panelPadding);
    MenuPanelLayout layout;
    Stack stack(layout, expandedKey, font, width);
    stack.add(items, 0, QString());
    layout.size = QSizeF(width + 2 * panelPadding, stack.bottom() + panelPadding);
    return layout;
}

const MenuPanelRow* MenuPanelLayout::rowAt(QPointF point) const
{
    const auto row = std::find_if(rows.begin(), rows.end(), [point](const MenuPanelRow& candidate) {
        return candidate.item.isSelectable() && candidate.frame.contains(point);
    });
    return row == rows.end() ? nullptr : &*row;
}

const MenuPanelRow* MenuPanelLayout::rowWithKey(const QString& key) const
{
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&key](const MenuPanelRow& candidate) { return candidate.key == key; });
    return row == rows.end() ? nullptr : &*row;
}

const MenuPanelRow* MenuPanelLayout::neighbour(const QString& key, int step) const
{
    const MenuPanelRow* const current = rowWithKey(key);
    const qsizetype count = rows.size();
    const qsizetype start = current != nullptr ? current - rows.data() : (step > 0 ? -1 : count);
    for (qsizetype way = 1; way <= count; ++way) {
        const MenuPanelRow& row = rows[((start + step * way) % count + count) % count];
        if (row.item.isSelectable()) {
            return &row;
        }
    }
    return nullptr;
}
