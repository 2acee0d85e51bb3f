#include "ui/menu/PellarMenuModel.h"

#include "ui/menu/MenuFont.h"

#include <QSet>

#include <algorithm>
#include <utility>

namespace {

constexpr int rowRole = Qt::UserRole;

QFont titleFont()
{
    constexpr int pixels = 13;
    QFont font = menuFont();
    font.setPixelSize(pixels);
    return font;
}

} // namespace

PellarMenuModel::PellarMenuModel(std::vector<PellarMenuItem> items)
    : _items(std::move(items))
    , _font(titleFont())
    , _layout(MenuPanelLayout::make(_items, QString(), _font))
    , _rows(_layout.rows)
    , _colors(MenuColors::forDesktop(false))
{
}

void PellarMenuModel::setItems(std::vector<PellarMenuItem> items)
{
    _items = std::move(items);
    update();
}

void PellarMenuModel::setColors(const MenuColors& colors)
{
    _colors = colors;
    Q_EMIT colorsChanged();
}

int PellarMenuModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(_rows.size());
}

QVariant PellarMenuModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != rowRole && role != Qt::DisplayRole)) {
        return {};
    }
    const MenuPanelRow& row = _rows[index.row()];
    return role == rowRole ? QVariant::fromValue(row) : row.title();
}

QHash<int, QByteArray> PellarMenuModel::roleNames() const
{
    return {{rowRole, QByteArrayLiteral("row")}};
}

void PellarMenuModel::setCurrentRow(int row)
{
    const bool isRow = row >= 0 && row < _rows.size() && _rows[row].isSelectable();
    const QPersistentModelIndex current(isRow ? index(row) : QModelIndex());
    if (current != _current) {
        _current = current;
        Q_EMIT currentRowChanged();
    }
}

void PellarMenuModel::step(int direction)
{
    goTo(neighbour(_rows, currentRow(), direction));
}

void PellarMenuModel::goToEnd(int direction)
{
    goTo(neighbour(_rows, -1, direction));
}

void PellarMenuModel::enter()
{
    const MenuPanelRow row = _rows.value(currentRow());
    if (!row.isSubmenu()) {
        return;
    }
    if (!row.isExpanded) {
        expand(row.path);
    }
    const int first = neighbour(_rows, currentRow(), 1);
    if (_rows[first].parentPath == row.path) {
        step(1);
    }
}

void PellarMenuModel::leave()
{
    const MenuPanelRow row = _rows.value(currentRow());
    const QString closed = row.isExpanded ? row.path : row.parentPath;
    if (closed.isEmpty()) {
        return;
    }
    expand(QString());
    goTo(rowOf(closed));
}

void PellarMenuModel::choose(int row)
{
    const MenuPanelRow chosenRow = _rows.value(row); // the list may change before it is done with
    if (!chosenRow.isSelectable()) {
        return;
    }
    if (chosenRow.isSubmenu()) {
        expand(chosenRow.isExpanded ? QString() : chosenRow.path);
    } else {
        Q_EMIT chosen(chosenRow.item);
    }
}

bool PellarMenuModel::chooseByKey(int key, Qt::KeyboardModifiers modifiers)
{
    const QKeyCombination pressed(modifiers, static_cast<Qt::Key>(key));
    const auto row = std::find_if(_rows.cbegin(), _rows.cend(), [pressed](const MenuPanelRow& candidate) {
        return candidate.item.isChosenBy(pressed);
    });
    if (row == _rows.cend()) {
        return false;
    }
    choose(static_cast<int>(row - _rows.cbegin()));
    return true;
}

/// What cannot be chosen before the first row and behind the last is shown with them.
void PellarMenuModel::goTo(int row)
{
    setCurrentRow(row);
    const int first = neighbour(_rows, -1, 1);
    const int last = neighbour(_rows, -1, -1);
    Q_EMIT revealed(row == first ? 0 : row, row == last ? rowCount() - 1 : row);
}

/// Rows that stay are not taken out and put in again: views keep what they know about them.
void PellarMenuModel::update()
{
    const int current = currentRow();
    _layout = MenuPanelLayout::make(_items, _expandedPath, _font);
    QSet<QString> paths;
    for (const MenuPanelRow& row : std::as_const(_layout.rows)) {
        paths.insert(row.path);
    }
    for (qsizetype i = _rows.size() - 1; i >= 0; --i) {
        if (!paths.contains(_rows[i].path)) {
            remove(i);
        }
    }
    for (qsizetype i = 0; i < _layout.rows.size(); ++i) {
        const MenuPanelRow& row = _layout.rows[i];
        const int old = rowOf(row.path);
        if (old < 0) {
            insert(i, row);
        } else if (old != i) {
            move(old, i);
        }
        _rows[i] = row;
    }
    Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    Q_EMIT sizeChanged();
    if (currentRow() != current) {
        Q_EMIT currentRowChanged();
    }
}

void PellarMenuModel::insert(qsizetype place, const MenuPanelRow& row)
{
    const auto number = static_cast<int>(place);
    beginInsertRows({}, number, number);
    _rows.insert(place, row);
    endInsertRows();
}

void PellarMenuModel::remove(qsizetype place)
{
    const auto number = static_cast<int>(place);
    beginRemoveRows({}, number, number);
    _rows.removeAt(place);
    endRemoveRows();
}

void PellarMenuModel::move(qsizetype from, qsizetype to)
{
    beginMoveRows({}, static_cast<int>(from), static_cast<int>(from), {}, static_cast<int>(to));
    _rows.move(from, to);
    endMoveRows();
}

int PellarMenuModel::rowOf(const QString& path) const
{
    const auto row = std::find_if(_rows.cbegin(), _rows.cend(),
                                  [&path](const MenuPanelRow& candidate) { return candidate.path == path; });
    return row == _rows.cend() ? -1 : static_cast<int>(row - _rows.cbegin());
}

void PellarMenuModel::expand(const QString& path)
{
    _expandedPath = path;
    update();
    const int first = rowOf(path);
    if (first >= 0) {
        const auto isInner = [&path](const MenuPanelRow& row) { return row.parentPath == path; };
        const auto inner = std::count_if(_rows.cbegin(), _rows.cend(), isInner);
        Q_EMIT revealed(first, first + static_cast<int>(inner));
    }
}
