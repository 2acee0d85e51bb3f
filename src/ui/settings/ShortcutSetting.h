#pragma once

#include "ui/settings/ShortcutRecorder.h"

#include <QQmlEngine>

/// The hot key of one action, as its row shows it.
class ShortcutSetting : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(QString display READ display NOTIFY changed)
    Q_PROPERTY(QString note READ note NOTIFY changed)
    Q_PROPERTY(bool isBound READ isBound NOTIFY changed)
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY changed)

public:
    ShortcutSetting(PellarShortcut shortcut, const ShortcutRecorder::Dependencies& dependencies,
                    ShortcutRecorder& recorder);

    QString name() const { return displayName(_shortcut); }
    /// The chord, as "⇧⌘ Space", or what there is instead.
    QString display() const { return _display; }
    /// What is wrong with it; mostly empty.
    QString note() const { return _note; }
    bool isBound() const { return _isBound; }
    bool isRecording() const { return _isRecording; }

    /// Waits for another chord, or gives up waiting.
    Q_INVOKABLE void change();
    /// Takes the chord away.
    Q_INVOKABLE void disable();

Q_SIGNALS:
    void changed();

private:
    PellarShortcut _shortcut;
    ShortcutRecorder::Dependencies _of;
    ShortcutRecorder& _recorder;
    Q_OBJECT_BINDABLE_PROPERTY(ShortcutSetting, bool, _isRecording, &ShortcutSetting::changed)
    Q_OBJECT_BINDABLE_PROPERTY(ShortcutSetting, bool, _isBound, &ShortcutSetting::changed)
    Q_OBJECT_BINDABLE_PROPERTY(ShortcutSetting, QString, _display, &ShortcutSetting::changed)
    Q_OBJECT_BINDABLE_PROPERTY(ShortcutSetting, QString, _note, &ShortcutSetting::changed)
};
