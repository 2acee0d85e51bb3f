#include "SoundServer.h"

#include "support/Command.h"

#include <QFile>
#include <QTest>

#include <csignal>

namespace {

/// Ends a service that tools/desktop has started, by the id that it left. One that is still ending would keep
/// the lock that its successor needs.
void killService(const QString& name)
{
    QFile file(qEnvironmentVariable("PELLAR_DESKTOP_PID") + u'/' + name);
    bool isNumber = false;
    if (file.open(QIODevice::ReadOnly)) {
        const int id = file.readAll().trimmed().toInt(&isNumber);
        if (isNumber && id > 1) {
            ::kill(id, SIGKILL);
            static_cast<void>(QTest::qWaitFor([id] { return ::kill(id, 0) != 0; }));
        }
        file.remove(); // the id may soon be another's
    }
}

void killProcess(QProcess& process)
{
    process.kill();
    process.waitForFinished();
}

/// pw-cli's answer; "?" when it fails, or hangs, as it may while the server is starting.
QString pwCli(const QStringList& words)
{
    constexpr int limit = 1000; // milliseconds
    return output(QStringLiteral("pw-cli"), words, limit);
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
    constexpr int limit = 15'000; // milliseconds
    const QString failed = QStringLiteral("?");
    _pipewire.start(QStringLiteral("pipewire"), QStringList());
    const auto isUp = [&] { return pwCli({QStringLiteral("info"), QStringLiteral("0")}) != failed; };
    if (!QTest::qWaitFor(isUp, limit)) {
        return false;
    }
    _manager.start(QStringLiteral("wireplumber"), QStringList());
    const QString sink = QStringLiteral("{ factory.name=support.null-audio-sink node.name=speakers "
                                        "media.class=Audio/Sink object.linger=true audio.position=[FL FR] }");
    const auto isMade = [&] {
        return pwCli({QStringLiteral("create-node"), QStringLiteral("adapter"), sink}) != failed;
    };
    const auto hasPorts = [] {
        return pwCli({QStringLiteral("list-objects"), QStringLiteral("Port")})
            .contains(QStringLiteral("playback_FL"));
    };
    return QTest::qWaitFor(isMade, limit) && QTest::qWaitFor(hasPorts, limit);
}
