#pragma once

#include "support/Command.h"
#include "support/Program.h"

#include <QtTest>

#include <csignal>
#include <map>

using namespace Qt::Literals::StringLiterals;

/// The private session's sound server, which a test can stop, end and start anew.
class SoundServer
{
public:
    /// Ends the one that the session came with, or was started last, as a crash would.
    void kill()
    {
        _services.clear();
        for (const char* const name : {"pipewire", "wireplumber", "pipewire-pulse"}) {
            if (const int id = sessionsOwn(name); id > 1) {
                ::kill(id, SIGKILL);
                // One that is still ending would keep the lock that its successor needs.
                static_cast<void>(QTest::qWaitFor([id] { return ::kill(id, 0) != 0; }));
                QFile::remove(idFile(name)); // the id may soon be another's
            }
        }
    }

    /// Starts it with the sinks that the session came with, but perhaps without a module. False when it does
    /// not come up within some seconds.
    bool start(const QByteArray& missingModule = {})
    {
        QFile usual(u"/usr/share/pipewire/pipewire.conf"_s);
        QTemporaryFile configuration;
        if (!usual.open(QIODevice::ReadOnly) || !configuration.open()) {
            return false;
        }
        while (!usual.atEnd()) {
            const QByteArray line = usual.readLine();
            configuration.write(missingModule.isEmpty() || !line.contains(missingModule) ? line : "");
        }
        configuration.close();
        const auto isThere = [] { return output(pwCli, {u"info"_s, u"0"_s}, 1000) != u"?"; };
        const auto hasMetadata = [] {
            const QStringList question = {u"ls"_s, u"Metadata"_s};
            return output(pwCli, question, 1000).contains(u"\"default\""_s);
        };
        return startService("pipewire", {u"-c"_s, configuration.fileName()}, isThere) &&
               startService("wireplumber", {}, hasMetadata) && startService("pipewire-pulse", {}, hasSinks);
    }

    /// Sends a signal to PipeWire itself.
    void send(int signal) const
    {
        const auto own = _services.find("pipewire");
        const auto id = own != _services.end() ? own->second.processId() : sessionsOwn("pipewire");
        if (id > 1) {
            ::kill(static_cast<pid_t>(id), signal);
        }
    }

private:
    bool startService(const char* name, const QStringList& arguments, const std::function<bool()>& isUp)
    {
        constexpr int limit = 15'000; // milliseconds
        _services.try_emplace(name, QString::fromUtf8(name), arguments);
        return QTest::qWaitFor(isUp, limit);
    }

    static bool hasSinks()
    {
        const QString load = u"pactl load-module module-null-sink media.class=Audio/Sink sink_name="_s;
        const QString sinks = run(u"pactl list short sinks"_s);
        if (!sinks.contains(u"speakers"_s)) {
            run(load + u"speakers sink_properties=device.description=Speakers");
        }
        if (!sinks.contains(u"headphones"_s)) {
            run(load + u"headphones sink_properties=device.description=Headphones");
        }
        run(u"pactl set-default-sink speakers"_s);
        return run(u"pactl get-default-sink"_s) == u"speakers"_s;
    }

    /// The file in which tools/desktop left the id of a service.
    static QString idFile(const char* name)
    {
        return qEnvironmentVariable("PELLAR_DESKTOP_PID") + u'/' + QString::fromUtf8(name);
    }

    /// 0 when it is gone.
    static int sessionsOwn(const char* name)
    {
        QFile file(idFile(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toInt() : 0;
    }

    static inline const QString pwCli = u"pw-cli"_s;
    std::map<QByteArray, Program> _services; ///< those that the session did not come with
};
