#include "ui/menu/MenuPanelLayout.h"

#include <QFontMetricsF>
#include <QHash>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

using Kind = PellarMenuItem::Kind;
using Items = std::vector<PellarMenuItem>;

constexpr double rowPadding = 8; // between a row's edges and what it shows
constexpr double rowHeight = 26;
constexpr double infoHeight = 22;
constexpr double separatorHeight = 11;
constexpr double indentWidth = 14; // of the rows of a submenu
constexpr double groupPadding = 4; // below the rows of an open submenu
constexpr double markWidth = 14;
constexpr double checkWidth = 12;
constexpr double columnGap = 6;
constexpr double trailingGap = 20;
constexpr double chevronWidth = 10;
constexpr double smallestWidth = 220;
constexpr double largestWidth = 360;

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
    if (item.kind == Kind::toggle && item.icon) {
        return checkWidth;
    }
    return item.keyEquivalent.isEmpty() ? 0
                                        : std::ceil(QFontMetricsF(font).horizontalAdvance(
                                              item.keyEquivalent.toString(QKeySequence::NativeText)));
}

/// Symbols and check marks share the column left of the titles, so that all titles of a list are in line.
double titleLeft(int level)
{
    return rowPadding + markWidth + columnGap + level * indentWidth;
}

double widestRow(const Items& items, int level, const QFont& font)
{
    QFont bold = font;
    bold.setBold(true);
    double widest = 0;
    for (const PellarMenuItem& item : items) {
        const double trailing = trailingWidth(item, font);
        const double width =
            titleLeft(level) +
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
    Stack(MenuPanelLayout& layout, QString expandedPath, const QFont& font, double width)
        : _layout(layout)
        , _expandedPath(std::move(expandedPath))
        , _font(font)
        , _width(width)
    {
    }

    void add(const Items& items, int level, const QString& parentPath)
    {
        QHash<QString, int> seen; // rows that look alike are told apart by their order
        for (const PellarMenuItem& item : items) {
            const QString name =
                QStringLiteral("%1/%2 %3").arg(parentPath).arg(static_cast<int>(item.kind)).arg(item.title);
            const QString path = QStringLiteral("%1 %2").arg(name).arg(seen[name]++);
            const double top = _y;
            MenuPanelRow row = place(item, titleLeft(level));
            row.path = path;
            row.parentPath = parentPath;
            row.isExpanded = item.kind == Kind::submenu && path == _expandedPath;
            _layout.rows.append(row);
            if (row.isExpanded) {
                add(item.items, level + 1, path);
                _layout.rows.last().spaceBelow = groupPadding;
                _y += groupPadding;
                _layout.expandedFrame = QRectF(0, top, _width, _y - top);
            }
        }
    }

    double bottom() const { return _y; }

private:
    MenuPanelRow place(const PellarMenuItem& item, double left)
    {
        MenuPanelRow row;
        row.item = item;
        row.item.items.clear();
        row.height = heightOf(item);
        _y += row.height;
        const auto box = [height = row.height](double x, double width) {
            return QRectF(x, std::round((height - width) / 2), width, width);
        };
        const double mark = item.icon ? markWidth : checkWidth;
        row.markFrame = box(left - columnGap - (markWidth + mark) / 2, mark);
        double right = _width - rowPadding;
        if (const double trailing = trailingWidth(item, _font); trailing > 0) {
            // A square for what is drawn: the chevron is turned when its rows are open.
            row.trailingFrame = item.keyEquivalent.isEmpty()
                                    ? box(right - trailing, trailing)
                                    : QRectF(right - trailing, 0, trailing, row.height);
            right -= trailing + trailingGap;
        }
        row.titleFrame = QRectF(left, 0, std::max(0.0, right - left), row.height);
        return row;
    }

    MenuPanelLayout& _layout;
    QString _expandedPath;
    QFont _font;
    double _width;
    double _y = 0;
};

} // namespace

MenuPanelLayout MenuPanelLayout::make(const Items& items, const QString& expandedPath, const QFont& font)
{
    const double width =
        std::clamp(widestRow(items, 0, font), smallestWidth - 2 * padding, largestWidth - 2 * padding);
    MenuPanelLayout layout;
    Stack stack(layout, expandedPath, font, width);
    stack.add(items, 0, QString());
    layout.size = QSizeF(width, stack.bottom()) + QSizeF(2 * padding, 2 * padding);
    return layout;
}

int neighbour(const QList<MenuPanelRow>& rows, int from, int step)
{
    const auto count = static_cast<int>(rows.size());
    const int start = from < 0 && step < 0 ? count : from;
    for (int way = 1; way <= count; ++way) {
        const int row = ((start + step * way) % count + count) % count;
        if (rows[row].isSelectable()) {
            return row;
        }
    }
    return -1;
}
