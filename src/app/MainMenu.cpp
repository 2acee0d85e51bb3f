#include "app/MainMenu.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWindow>

MainMenu::MainMenu()
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool MainMenu::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress || qobject_cast<QWindow*>(watched) == nullptr) {
        return false;
    }
    const auto* const press = static_cast<const QKeyEvent*>(event);
    const bool isQuit = press->key() == Qt::Key_Q && press->modifiers() == Qt::ControlModifier;
    if (isQuit) {
        QCoreApplication::quit();
    }
    return isQuit;
}
