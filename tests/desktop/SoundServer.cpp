#include "SoundServer.h"

#include "support/Command.h"

#include <QFile>
#include <QTest>

#include <csignal>

namespace {

/// Ends a service that tools/desktop has started, by the id that it left.
void killService(const QString& name)
{
    QFile file(qEnvironmentVariable("PELLAR_DESKTOP_PID") + u'/' + name);
    bool isNumber = false;
    if (file.open(QIODevice::ReadOnly)) {
        const int id = file.readAll().trimmed().toInt(&isNumber);
        if (isNumber && id > 1) {
            ::kill(id, SIGKILL);
        }
        file.remove(); // the id may soon be another's
    }
}

void killProcess(QProcess& process)
{
    process.kill();
    process.waitForFinished();
}

bool succeeds(const QString& command)
{
    const QStringList words = command.split(u' ');
    return output(words.first(), words.mid(1)) != QStringLiteral("?");
}

} // namespace

void SoundServer::kill()
{
    for (const char* name : {"pipewire", "wireplumber", "pipewire-pulse"}) {
        killService(QString::fromUtf8(name));
    }
    killProcess(_pipewire);
    killProcess(_manager);
}

bool SoundServer::start()
{
    _pipewire.start(QStringLiteral("pipewire"), QStringList());
    if (!QTest::qWaitFor([] { return succeeds(QStringLiteral("pw-cli info 0")); }, 10000)) {
        return false;
    }
    _manager.start(QStringLiteral("wireplumber"), QStringList());
    output(QStringLiteral("pw-cli"),
           {QStringLiteral("create-node"), QStringLiteral("adapter"),
            QStringLiteral("{ factory.name=support.null-audio-sink node.name=speakers media.class=Audio/Sink "
                           "object.linger=true audio.position=[FL FR] }")});
    return QTest::qWaitFor(
        [] {
            return output(QStringLiteral("pw-cli"), {QStringLiteral("list-objects"), QStringLiteral("Port")})
                .contains(QStringLiteral("playback_FL"));
        },
        10000);
}
