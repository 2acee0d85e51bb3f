#pragma once

#include <QHash>
#include <QProcess>

#include <functional>
#include <memory>

/// The private session's sound server, which a test can stop, end and start anew.
class SoundServer
{
public:
    SoundServer() = default;
    ~SoundServer();
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;

    /// Ends the one that the session came with, or was started last, as a crash would.
    void kill();

    /// Starts it with the sinks that the session came with, but perhaps without a module. False when it does
    /// not come up within some seconds.
    bool start(const QString& missingModule = {});

    /// Sends a signal to PipeWire itself.
    void send(int signal) const;

private:
    void killOwn();
    bool startService(const QString& name, const QStringList& arguments, const std::function<bool()>& isUp);

    QHash<QString, std::shared_ptr<QProcess>> _services; ///< those that the session did not come with
};
