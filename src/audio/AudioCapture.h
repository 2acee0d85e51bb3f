#pragma once

#include <QList>
#include <QObject>

/// Hears what the computer plays, as four band levels from bass to treble.
class AudioCapture : public QObject
{
    Q_OBJECT

public:
    virtual void start() = 0;
    virtual void stop() = 0;

    /// How often somebody looks at the levels; frames may be made together as far as nobody sees it.
    virtual void setPace(int framesPerSecond) = 0;

    /// Publishes at once what is ready. Who looks at the levels at times of its own calls this first, so that
    /// the main thread need not be woken for them in between.
    virtual void catchUp() = 0;

Q_SIGNALS:
    /// A new frame: four levels, each 0 to 1. On the main thread.
    void bandsPublished(const QList<float>& bands);

    /// Whether sound was heard lately. On the main thread, when it changes.
    void liveChanged(bool isLive);
};
