#pragma once

#include <QProcess>
#include <QTemporaryDir>

/// A page with a sound in Chromium. It plays a 440 Hz tone from the start, pauses and plays on a space, and
/// counts "next" and "previous" on Shift+N, Shift+P and the browser's own media commands.
class WebPage
{
public:
    WebPage();
    ~WebPage();

    /// With "#deaf", keys do nothing.
    bool start(const QString& fragment = {});

    /// What the page says of itself, as in "playing 0 toggles 1 next 0 previous"; empty before it is there.
    QString state() const;

    /// The tone, a minute of it.
    QString soundFile() const { return _folder.filePath(QStringLiteral("tone.wav")); }

private:
    QTemporaryDir _folder;
    QProcess _browser;
};
