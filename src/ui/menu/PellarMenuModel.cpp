#include "ui/menu/PellarMenuModel.h"

#include <QGuiApplication>

#include <algorithm>

namespace {

QFont titleFont()
{
    constexpr int pixels = 13;
    QFont font = QGuiApplication::font();
    font.setPixelSize(pixels);
    return font;
}

} // namespace

PellarMenuModel::PellarMenuModel(std::vector<PellarMenuItem> items)
    : _items(std::move(items))
    , _font(titleFont())
    , _layout(MenuPanelLayout::make(_items, QString(), _font))
    , _visibleHeight(_layout.size.height())
    , _colors(MenuColors::forDesktop(false, false))
{
}

void PellarMenuModel::setItems(std::vector<PellarMenuItem> items)
{
    const MenuPanelRow* const expanded = _layout.rowWithKey(_expandedKey);
    const QString title = expanded != nullptr ? expanded->title() : QString();
    _items = std::move(items);
    const auto found = std::find_if(_items.begin(), _items.end(), [&title](const PellarMenuItem& item) {
        return item.kind == PellarMenuItem::Kind::submenu && item.title == title;
    });
    _expandedKey = found != _items.end() ? QString::number(found - _items.begin()) : QString();
    leave();
    updateLayout();
}

QVariantList PellarMenuModel::rows() const
{
    QVariantList list;
    for (const MenuPanelRow& row : _layout.rows) {
        list.append(QVariant::fromValue(row));
    }
    return list;
}

double PellarMenuModel::scrollShare() const
{
    const double way = _layout.size.height() - _visibleHeight;
    return way > 0 ? _scroll / way : 0;
}

double PellarMenuModel::visibleShare() const
{
    return std::min(1.0, _visibleHeight / _layout.size.height());
}

void PellarMenuModel::setAppearance(const MenuColors& colors, double shadowExtent)
{
    _colors = colors;
    _shadowExtent = shadowExtent;
    Q_EMIT appearanceChanged();
}

void PellarMenuModel::setVisibleHeight(double height)
{
    _visibleHeight = height;
    scrollTo(_scroll);
    Q_EMIT scrollChanged();
}

void PellarMenuModel::hover(QPointF point)
{
    _hoveredKey = keyAt(point);
    if (_pressedKey.value() != _hoveredKey.value()) {
        _pressedKey = QString();
    }
}

void PellarMenuModel::leave()
{
    _hoveredKey = QString();
    _pressedKey = QString();
}

void PellarMenuModel::press(QPointF point)
{
    _hoveredKey = keyAt(point);
    _pressedKey = _hoveredKey.value();
}

void PellarMenuModel::release(QPointF point)
{
    const QString pressed = _pressedKey;
    _pressedKey = QString();
    if (!pressed.isEmpty() && keyAt(point) == pressed) {
        choose(pressed);
        _hoveredKey = keyAt(point);
    }
}

void PellarMenuModel::scrollBy(double points)
{
    scrollTo(_scroll + points);
}

void PellarMenuModel::choose(const QString& key)
{
    const MenuPanelRow* const row = _layout.rowWithKey(key);
    if (row == nullptr || !row->item.isSelectable()) {
        return;
    }
    if (row->isSubmenu()) {
        expand(row->isExpanded ? row->parentKey : key);
    } else {
        Q_EMIT chosen(PellarMenuItem(row->item)); // the list may change before it is done with
    }
}

bool PellarMenuModel::pressKey(QKeyCombination combination)
{
    if (combination.keyboardModifiers().setFlag(Qt::KeypadModifier, false) == Qt::NoModifier) {
        switch (combination.key()) {
        case Qt::Key_Down:
            step(_hoveredKey, 1);
            return true;
        case Qt::Key_Up:
            step(_hoveredKey, -1);
            return true;
        case Qt::Key_Home:
            step(QString(), 1);
            return true;
        case Qt::Key_End:
            step(QString(), -1);
            return true;
        case Qt::Key_Right:
            openHovered();
            return true;
        case Qt::Key_Left:
            closeHovered();
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            choose(_hoveredKey);
            return true;
        default:
            break;
        }
    }
    return pressKeyEquivalent(combination);
}

QString PellarMenuModel::keyAt(QPointF point) const
{
    const bool isVisible = point.y() >= 0 && point.y() < _visibleHeight;
    const MenuPanelRow* const row = isVisible ? _layout.rowAt(point + QPointF(0, _scroll)) : nullptr;
    return row != nullptr ? row->key : QString();
}

void PellarMenuModel::updateLayout()
{
    _layout = MenuPanelLayout::make(_items, _expandedKey, _font);
    Q_EMIT layoutChanged();
    scrollTo(_scroll);
    Q_EMIT scrollChanged();
}

void PellarMenuModel::expand(const QString& key)
{
    _expandedKey = key;
    updateLayout();
    if (!_layout.expandedFrame.isEmpty()) {
        reveal(_layout.expandedFrame);
    }
}

void PellarMenuModel::step(const QString& from, int direction)
{
    const MenuPanelRow* const row = _layout.neighbour(from, direction);
    if (row == nullptr) {
        return;
    }
    _hoveredKey = row->key;
    reveal(row->frame);
}

void PellarMenuModel::openHovered()
{
    const MenuPanelRow* const row = _layout.rowWithKey(_hoveredKey);
    if (row == nullptr || !row->isSubmenu()) {
        return;
    }
    const QString key = row->key;
    if (!row->isExpanded) {
        expand(key);
    }
    const MenuPanelRow* const first = _layout.neighbour(key, 1);
    if (first != nullptr && first->parentKey == key) {
        step(key, 1);
    }
}

void PellarMenuModel::closeHovered()
{
    const MenuPanelRow* const row = _layout.rowWithKey(_hoveredKey);
    if (row == nullptr || _expandedKey.isEmpty()) {
        return;
    }
    const QString closed = row->isExpanded ? row->key : row->parentKey;
    if (!closed.isEmpty()) {
        expand(QString());
        _hoveredKey = closed;
    }
}

bool PellarMenuModel::pressKeyEquivalent(QKeyCombination combination)
{
    const auto row = std::find_if(_layout.rows.cbegin(), _layout.rows.cend(),
                                  [combination](const MenuPanelRow& candidate) {
                                      return candidate.item.keyEquivalent == QKeySequence(combination);
                                  });
    if (row == _layout.rows.cend()) {
        return false;
    }
    choose(row->key);
    return true;
}

/// Scrolls until a part of the list can be seen with a little room around it, or as much of it as fits.
void PellarMenuModel::reveal(const QRectF& part)
{
    const double room = _layout.rows.first().frame.top();
    scrollTo(std::min(part.top() - room, std::max<double>(_scroll, part.bottom() + room - _visibleHeight)));
}

void PellarMenuModel::scrollTo(double scroll)
{
    _scroll = std::clamp(scroll, 0.0, std::max(0.0, _layout.size.height() - _visibleHeight));
}
