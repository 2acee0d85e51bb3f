#pragma once

#include <QProcess>

/// The private session's sound server, which a test can end and start anew.
class SoundServer
{
public:
    /// Ends the one that the session came with, or was started last, as a crash would.
    void kill();

    /// Starts it with one sink, "speakers". False when it does not come up within some seconds.
    bool start();

private:
    QProcess _pipewire;
    QProcess _manager;
};
