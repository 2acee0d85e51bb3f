#include "app/StatusHostingView.h"

#include <QMenu>
#include <QMouseEvent>
#include <QQuickItem>

#include <cmath>

namespace {

bool isCommandHeld(const QMouseEvent& event)
{
    return event.modifiers().testAnyFlags(Qt::MetaModifier | Qt::ControlModifier);
}

} // namespace

StatusHostingView::StatusHostingView()
{
    setColor(Qt::transparent);
    setResizeMode(QQuickView::SizeRootObjectToView);
}

StatusHostingView::~StatusHostingView() = default;

void StatusHostingView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::RightButton) {
        openContextMenu(*event);
    } else if (event->button() == Qt::LeftButton && isCommandHeld(*event)) {
        _isDragging = true;
        _lastX = event->globalPosition().x();
    } else {
        QQuickView::mousePressEvent(event);
    }
}

void StatusHostingView::mouseMoveEvent(QMouseEvent* event)
{
    if (_isDragging && !event->buttons().testFlag(Qt::LeftButton)) { // the release got lost
        drop();
    }
    if (!_isDragging) {
        QQuickView::mouseMoveEvent(event);
        return;
    }
    const double way = std::round(event->globalPosition().x() - _lastX);
    if (way != 0) {
        _lastX += way;
        Q_EMIT itemDragged(static_cast<int>(way));
    }
}

void StatusHostingView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && _isDragging) {
        drop();
    } else {
        QQuickView::mouseReleaseEvent(event);
    }
}

void StatusHostingView::drop()
{
    _isDragging = false;
    Q_EMIT itemDropped();
}

void StatusHostingView::openContextMenu(const QMouseEvent& event)
{
    // A menu takes the mouse: the release of a left button that is down will not come here any more.
    if (QQuickItem* const pressed = mouseGrabberItem()) {
        pressed->ungrabMouse();
    }
    if (rightClickHandler) {
        rightClickHandler(event);
    } else if (contextMenuProvider) {
        _menu = contextMenuProvider();
        _menu->popup(event.globalPosition().toPoint());
    }
}
