#pragma once

#include <QAccessibleObject>

class MenuRow;

/// The accessible interface of a row of the glass menu. QML's attached `Accessible` has no states for rows
/// that expand and collapse.
class MenuRowAccessible final : public QAccessibleObject, public QAccessibleActionInterface
{
public:
    explicit MenuRowAccessible(MenuRow& row);

    QWindow* window() const override;
    QRect rect() const override;
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    QString text(QAccessible::Text text) const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString& name) const override;

private:
    MenuRow& row() const;
};
