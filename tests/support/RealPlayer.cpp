#include "support/RealPlayer.h"

#include "support/Command.h"

#include <QDir>
#include <QTest>

#include <csignal>

namespace {

QString ask(const QStringList& words)
{
    return output(QStringLiteral("playerctl"), QStringList{QStringLiteral("--player=mpv")} + words);
}

} // namespace

RealPlayer::RealPlayer()
{
    QProcess::execute(QStringLiteral(PELLAR_SOURCE_DIR "/tools/make-music"), {_music.path()});
}

RealPlayer::~RealPlayer()
{
    send(SIGCONT);
    kill();
}

bool RealPlayer::start()
{
    QStringList arguments = {QStringLiteral("--no-video"), QStringLiteral("--no-terminal"),
                             QStringLiteral("--ao=null"), QStringLiteral("--loop-playlist=inf")};
    const auto tracks = QDir(_music.path()).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo& track : tracks) {
        arguments << track.filePath();
    }
    _process.start(QStringLiteral("mpv"), arguments);
    return QTest::qWaitFor([] { return status() == QStringLiteral("Playing"); }, 15000);
}

void RealPlayer::kill()
{
    if (isRunning()) {
        _process.kill();
        _process.waitForFinished();
    }
}

void RealPlayer::send(int signal) const
{
    if (isRunning()) {
        ::kill(static_cast<pid_t>(_process.processId()), signal);
    }
}

QString RealPlayer::status()
{
    return ask({QStringLiteral("status")});
}

QString RealPlayer::metadata(const QString& key)
{
    return ask({QStringLiteral("metadata"), key});
}

double RealPlayer::position()
{
    return ask({QStringLiteral("position")}).toDouble();
}

void RealPlayer::tell(const QString& command)
{
    ask({command});
}
