#pragma once

#include "prefs/PellarShortcut.h"

#include <QObject>
#include <QProperty>

#include <optional>

class GlobalShortcuts;
class HotKeys;
class KeyboardShortcutManager;
class QKeyEvent;

/// Takes the next chord that is pressed in one of the program's windows as the binding of an action. Escape,
/// and turning to another window, give up; a chord without a modifier is refused, and the next one is waited
/// for.
class ShortcutRecorder : public QObject
{
    Q_OBJECT

public:
    /// What the recorder builds on. Everything outlives it.
    struct Dependencies {
        KeyboardShortcutManager& manager;
        GlobalShortcuts& registered;
        HotKeys& hotKeys;
    };

    explicit ShortcutRecorder(const Dependencies& dependencies) : _of(dependencies) {}
    ~ShortcutRecorder() override;

    void record(PellarShortcut shortcut);
    void cancel();

    /// The action that a chord is awaited for. Bindable.
    std::optional<PellarShortcut> recording() const { return _recording; }

    /// Whether the last chord had no modifier. Bindable.
    bool isRefused() const { return _isRefused; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void take(const QKeyEvent& event);

    Dependencies _of;
    QProperty<std::optional<PellarShortcut>> _recording;
    QProperty<bool> _isRefused;
};
