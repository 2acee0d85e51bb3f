#include "app/DisplayGuard.h"

#include <QDebug>

#include <cstdio>
#include <cstdlib>

namespace {

struct Message {
    QtMsgType type;
    QString text;
};

QtMessageHandler handlerBefore = nullptr;
QList<Message> kept;

void keep(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
{
    if (type == QtFatalMsg) {
        const QString display = qEnvironmentVariable("DISPLAY", qEnvironmentVariable("WAYLAND_DISPLAY"));
        const QString why = display.isEmpty() ? QStringLiteral("there is none")
                                              : QStringLiteral("“%1” cannot be opened").arg(display);
        std::fprintf(stderr, "Pellar needs a display to be shown on, and %s.\n", qUtf8Printable(why));
        std::_Exit(EXIT_FAILURE);
    }
    kept.append({type, text});
}

} // namespace

DisplayGuard::DisplayGuard()
{
    handlerBefore = qInstallMessageHandler(keep);
}

DisplayGuard::~DisplayGuard()
{
    qInstallMessageHandler(handlerBefore);
    for (const Message& each : std::exchange(kept, {})) {
        QDebug(each.type).noquote() << each.text;
    }
}
