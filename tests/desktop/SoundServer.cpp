#include "SoundServer.h"

#include "support/Command.h"

#include <QFile>
#include <QTemporaryFile>
#include <QTest>

#include <csignal>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString pipewire = u"pipewire"_s;
const QString manager = u"wireplumber"_s;
const QString pulse = u"pipewire-pulse"_s;

/// The file in which tools/desktop left the id of a service.
QString idFile(const QString& name)
{
    return qEnvironmentVariable("PELLAR_DESKTOP_PID") + u'/' + name;
}

/// 0 when it is gone.
int sessionsOwn(const QString& name)
{
    QFile file(idFile(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toInt() : 0;
}

} // namespace

SoundServer::~SoundServer()
{
    killOwn();
}

void SoundServer::killOwn()
{
    for (const auto& service : std::exchange(_services, {})) {
        service->kill();
        service->waitForFinished();
    }
}

void SoundServer::kill()
{
    killOwn();
    for (const QString& name : {pipewire, manager, pulse}) {
        if (const int id = sessionsOwn(name); id > 1) {
            ::kill(id, SIGKILL);
            // One that is still ending would keep the lock that its successor needs.
            static_cast<void>(QTest::qWaitFor([id] { return ::kill(id, 0) != 0; }));
            QFile::remove(idFile(name)); // the id may soon be another's
        }
    }
}

void SoundServer::send(int signal) const
{
    const auto service = _services.value(pipewire);
    const int id = service ? static_cast<int>(service->processId()) : sessionsOwn(pipewire);
    if (id > 1) {
        ::kill(id, signal);
    }
}

bool SoundServer::startService(const QString& name, const QStringList& arguments,
                               const std::function<bool()>& isUp)
{
    constexpr int limit = 15'000; // milliseconds
    const auto service = std::make_shared<QProcess>();
    _services.insert(name, service);
    service->start(name, arguments);
    return QTest::qWaitFor(isUp, limit);
}

bool SoundServer::start(const QString& missingModule)
{
    QFile usual(u"/usr/share/pipewire/pipewire.conf"_s);
    QTemporaryFile configuration;
    if (!usual.open(QIODevice::ReadOnly) || !configuration.open()) {
        return false;
    }
    while (!usual.atEnd()) {
        const QByteArray line = usual.readLine();
        if (missingModule.isEmpty() || !line.contains(missingModule.toUtf8())) {
            configuration.write(line);
        }
    }
    configuration.close();
    const auto hasMetadata = [] {
        return output(u"pw-cli"_s, {u"ls"_s, u"Metadata"_s}, 1000).contains(u"\"default\""_s);
    };
    const auto hasSinks = [] {
        for (const char* sink : {"speakers", "headphones"}) {
            const QString name = QString::fromUtf8(sink);
            if (!run(u"pactl list short sinks"_s).contains(name)) {
                run(u"pactl load-module module-null-sink media.class=Audio/Sink sink_name=%1 "
                    "sink_properties=device.description=%2"_s.arg(name,
                                                                  name.left(1).toUpper() + name.mid(1)));
            }
        }
        run(u"pactl set-default-sink speakers"_s);
        return run(u"pactl get-default-sink"_s) == u"speakers"_s;
    };
    const auto answers = [](const QString& tool, const QStringList& words) {
        return [=] { return output(tool, words, 1000) != u"?"_s; };
    };
    return startService(pipewire, {u"-c"_s, configuration.fileName()},
                        answers(u"pw-cli"_s, {u"info"_s, u"0"_s})) &&
           startService(manager, {}, hasMetadata) &&
           startService(pulse, {}, answers(u"pactl"_s, {u"info"_s})) && QTest::qWaitFor(hasSinks);
}
