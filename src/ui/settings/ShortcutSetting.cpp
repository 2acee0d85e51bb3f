#include "ui/settings/ShortcutSetting.h"

#include "prefs/GlobalShortcuts.h"
#include "prefs/KeyboardShortcutManager.h"

ShortcutSetting::ShortcutSetting(PellarShortcut shortcut, const ShortcutRecorder::Dependencies& dependencies,
                                 ShortcutRecorder& recorder)
    : _shortcut(shortcut)
    , _of(dependencies)
    , _recorder(recorder)
{
    _isRecording.setBinding([this] { return _recorder.recording() == _shortcut; });
    _isBound.setBinding([this] { return _of.manager.binding(_shortcut).has_value(); });
    _display.setBinding([this] {
        const auto binding = _of.manager.binding(_shortcut);
        if (_isRecording.value()) {
            return tr("Press a chord…");
        }
        return binding ? binding->displayString() : tr("Disabled");
    });
    _note.setBinding([this] {
        if (_isRecording.value()) {
            return _recorder.isRefused() ? tr("Hold at least one modifier with it.") : QString();
        }
        return _of.registered.note(_shortcut);
    });
}

void ShortcutSetting::change()
{
    if (isRecording()) {
        _recorder.cancel();
    } else {
        _recorder.record(_shortcut);
    }
}

void ShortcutSetting::disable()
{
    _recorder.cancel();
    _of.manager.setBinding(std::nullopt, _shortcut);
}
