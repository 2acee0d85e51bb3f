#include "accounts/AppleMusicAuthLoopback.h"

#include "accounts/AccountsLog.h"

std::optional<quint16> AppleMusicAuthLoopback::start(const QString& html)
{
    const QByteArray reply = pageReply(html.toUtf8(), "Cache-Control: no-store\r\n");
    _listener = std::make_unique<LoopbackServer>(
        _runLoop, [reply](const QByteArray& /*requestLine*/) { return std::optional(reply); });
    for (quint16 port = firstPort; port <= lastPort; ++port) {
        if (_listener->listen(port)) {
            return port;
        }
    }
    _listener.reset();
    systemLog(QStringLiteral("AM loopback failed: Pellar.AMLoopback -1: no port available in %1-%2")
                  .arg(firstPort)
                  .arg(lastPort));
    return std::nullopt;
}
