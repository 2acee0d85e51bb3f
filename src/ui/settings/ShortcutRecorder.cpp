#include "ui/settings/ShortcutRecorder.h"

#include "platform/HotKeys.h"
#include "prefs/GlobalShortcuts.h"
#include "prefs/KeyboardShortcutManager.h"

#include <QGuiApplication>
#include <QKeyEvent>

ShortcutRecorder::~ShortcutRecorder()
{
    cancel();
}

void ShortcutRecorder::record(PellarShortcut shortcut)
{
    cancel();
    _of.registered.setRecording(true);
    qGuiApp->installEventFilter(this);
    _recording = shortcut;
}

void ShortcutRecorder::cancel()
{
    if (_recording.value()) {
        qGuiApp->removeEventFilter(this);
        _recording = std::nullopt;
        _isRefused = false;
        _of.registered.setRecording(false);
    }
}

bool ShortcutRecorder::eventFilter(QObject* watched, QEvent* event)
{
    if (!watched->isWindowType()) {
        return false;
    }
    switch (event->type()) {
    case QEvent::KeyPress:
        take(*static_cast<QKeyEvent*>(event));
        return true;
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
        return true;
    case QEvent::FocusOut:
        cancel();
        return false;
    default:
        return false;
    }
}

void ShortcutRecorder::take(const QKeyEvent& event)
{
    const auto key = _of.hotKeys.keyDown(event);
    if (event.key() == Qt::Key_Escape && (!key || key->modifiers == 0)) {
        cancel();
        return;
    }
    if (!key) { // a modifier by itself
        return;
    }
    if (const auto binding = ShortcutBinding::from(*key)) {
        _of.manager.setBinding(binding, *_recording.value());
        cancel();
    } else {
        _isRefused = true;
    }
}
