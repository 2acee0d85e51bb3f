#pragma once

#include "accounts/LoopbackServer.h"

#include <memory>

/// Serves the sign-in page, so that it has the origin of a web page and not that of a file.
class AppleMusicAuthLoopback
{
public:
    static constexpr quint16 firstPort = 7423;
    static constexpr quint16 lastPort = 7428;

    explicit AppleMusicAuthLoopback(RunLoop& runLoop) : _runLoop(runLoop) {}

    /// Answers every request with the page from now on, on the first free one of the ports. Gives that port;
    /// none, and a line in the log, when all are taken.
    std::optional<quint16> start(const QString& html);

    /// Ends the connections, too.
    void stop() { _listener.reset(); }

private:
    RunLoop& _runLoop;
    std::unique_ptr<LoopbackServer> _listener;
};
