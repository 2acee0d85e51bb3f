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

    /// How often the levels are read; frames in between may be analysed together.
    virtual void setPace(int framesPerSecond) = 0;

    /// Publishes at once what is ready. Called before the levels are read, so that the main thread is not
    /// woken for frames that nobody reads.
    virtual void catchUp() = 0;

Q_SIGNALS:
    /// A new frame: four levels, each 0 to 1. On the main thread.
    void bandsPublished(const QList<float>& bands);

    /// Whether sound was heard lately. On the main thread, when it changes.
    void liveChanged(bool isLive);
};
