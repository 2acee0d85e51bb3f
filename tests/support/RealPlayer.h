#pragma once

#include <QProcess>
#include <QTemporaryDir>

/// mpv, playing three tagged tracks without a sound, and playerctl, which asks it what it does.
class RealPlayer
{
public:
    static constexpr double firstLength = 40; ///< seconds

    /// Makes the tracks, which takes a second or so.
    RealPlayer();
    ~RealPlayer();

    /// Starts mpv and waits until it is on the bus. False when it does not come.
    bool start();
    void kill();
    void send(int signal) const;
    bool isRunning() const { return _process.state() == QProcess::Running; }

    /// playerctl's answer: "Playing", or the value of a metadata key, or the position in seconds.
    static QString status();
    static QString metadata(const QString& key);
    static double position();

    /// One of playerctl's commands: "play", "pause", "next".
    static void tell(const QString& command);

private:
    QTemporaryDir _music;
    QProcess _process;
};
