#pragma once

#include <QQuickView>

#include <functional>
#include <memory>

class QMenu;

/// The view that hosts the pill. It decides which mouse events are the pill's own: dragging with the Command
/// key (Super or Ctrl) moves the status item, the right button opens a menu.
class StatusHostingView : public QQuickView
{
    Q_OBJECT

public:
    StatusHostingView();
    ~StatusHostingView() override;

    /// Makes the context menu that a right click pops up. Used when there is no `rightClickHandler`.
    std::function<std::unique_ptr<QMenu>()> contextMenuProvider;

    /// Takes a right click as a whole.
    std::function<void(const QMouseEvent& event)> rightClickHandler;

Q_SIGNALS:
    /// The item is dragged; `dx` is the way since the last signal, in points.
    void itemDragged(int dx);
    void itemDropped();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void drop();
    void openContextMenu(const QMouseEvent& event);

    bool _isDragging = false;
    double _lastX = 0;
    std::unique_ptr<QMenu> _menu;
};
