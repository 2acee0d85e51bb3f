#pragma once

#include "support/Command.h"

#include <QtTest>

#include <csignal>

using namespace Qt::Literals::StringLiterals;

/// mpv, playing three tagged tracks without a sound, and playerctl, which asks it what it does.
class RealPlayer
{
public:
    /// Makes the tracks, which takes a second or so.
    RealPlayer()
    {
        QProcess::execute(QStringLiteral(PELLAR_SOURCE_DIR "/tools/make-music"), {_music.path()});
    }
    ~RealPlayer()
    {
        send(SIGCONT);
        kill();
    }

    /// Starts mpv and waits until it is on the bus. False when it does not come.
    bool start(const QStringList& options = {})
    {
        QStringList arguments = options;
        arguments += QProcess::splitCommand(u"--no-video --no-terminal --ao=null --loop-playlist=inf"_s);
        const auto tracks = QDir(_music.path()).entryInfoList({u"*.flac"_s}, QDir::Files, QDir::Name);
        for (const QFileInfo& track : tracks) {
            arguments << track.filePath();
        }
        _process.start(u"mpv"_s, arguments);
        return QTest::qWaitFor([] { return status() == u"Playing"_s; }, 15000);
    }
    /// Where the tracks are.
    QString folder() const { return _music.path(); }
    void kill()
    {
        if (isRunning()) {
            _process.kill();
            _process.waitForFinished();
        }
    }
    void send(int signal) const
    {
        if (isRunning()) {
            ::kill(static_cast<pid_t>(_process.processId()), signal);
        }
    }
    bool isRunning() const { return _process.state() == QProcess::Running; }

    /// playerctl's answer: "Playing", or the value of a metadata key, or the position in seconds.
    static QString status() { return tell(u"status"_s); }
    static QString metadata(const QString& key) { return tell(u"metadata " + key); }
    static double position() { return tell(u"position"_s).toDouble(); }

    /// One of playerctl's commands: "play", "pause", "next".
    static QString tell(const QString& command) { return run(u"playerctl --player=mpv " + command); }

private:
    QTemporaryDir _music;
    QProcess _process;
};
