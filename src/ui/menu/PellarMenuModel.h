#pragma once

#include "ui/menu/MenuColors.h"
#include "ui/menu/MenuPanelLayout.h"

#include <QAbstractListModel>
#include <QPersistentModelIndex>
#include <QQmlEngine>

/// The rows of the glass menu as a list, those of the open submenu in line below theirs, and which of them is
/// the current one, by the pointer or by the keyboard.
class PellarMenuModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(int currentRow READ currentRow WRITE setCurrentRow NOTIFY currentRowChanged)
    Q_PROPERTY(QSizeF size READ size NOTIFY sizeChanged)
    Q_PROPERTY(QRectF expandedFrame READ expandedFrame NOTIFY sizeChanged)
    Q_PROPERTY(double padding READ padding CONSTANT)
    Q_PROPERTY(QFont font READ font CONSTANT)
    Q_PROPERTY(MenuColors colors READ colors NOTIFY colorsChanged)

public:
    explicit PellarMenuModel(std::vector<PellarMenuItem> items);

    /// Replaces the rows. A submenu that is open, and the current row, stay so if they are still there.
    void setItems(std::vector<PellarMenuItem> items);
    void setColors(const MenuColors& colors);

    /// The role `row` is a MenuPanelRow; what is displayed is its title.
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    const QList<MenuPanelRow>& rows() const { return _rows; }

    /// -1 for none.
    int currentRow() const { return _current.row(); }
    /// A row that cannot be chosen becomes none.
    void setCurrentRow(int row);

    QSizeF size() const { return _layout.size; }
    QRectF expandedFrame() const { return _layout.expandedFrame; }
    double padding() const { return MenuPanelLayout::padding; }
    QFont font() const { return _font; }
    MenuColors colors() const { return _colors; }

    /// Goes on to the next row that can be chosen, 1 downward or -1 upward, over the ends of the list.
    Q_INVOKABLE void step(int direction);
    /// Goes to the first row, 1, or the last, -1.
    Q_INVOKABLE void goToEnd(int direction);
    /// Opens the current submenu and goes into it.
    Q_INVOKABLE void enter();
    /// Closes the submenu that the current row is, or is in.
    Q_INVOKABLE void leave();
    /// Opens or closes a submenu, or does the row's command. Nothing for a row that cannot be chosen.
    Q_INVOKABLE void choose(int row);
    /// Chooses the row with this key equivalent. Whether there is one.
    Q_INVOKABLE bool chooseByKey(int key, Qt::KeyboardModifiers modifiers);

Q_SIGNALS:
    void currentRowChanged();
    void sizeChanged();
    void colorsChanged();

    /// These rows are to be brought into view.
    void revealed(int first, int last);

    /// A command or a toggle has been chosen.
    void chosen(const PellarMenuItem& item);

private:
    void goTo(int row);
    void update();
    void insert(qsizetype place, const MenuPanelRow& row);
    void remove(qsizetype place);
    void move(qsizetype from, qsizetype to);
    int rowOf(const QString& path) const;
    void expand(const QString& path);

    std::vector<PellarMenuItem> _items;
    QFont _font;
    QString _expandedPath; ///< empty when no submenu is open
    MenuPanelLayout _layout;
    QList<MenuPanelRow> _rows; ///< as the views know them
    QPersistentModelIndex _current;
    MenuColors _colors;
};
