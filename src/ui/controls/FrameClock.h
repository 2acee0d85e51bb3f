#pragma once

#include "base/RunLoop.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include <vector>

/// The beat of everything that moves in a view. All of it shares one timer, so that slow and fast things are
/// drawn in the same frames; there is no timer while nothing moves.
class FrameClock : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit FrameClock(RunLoop& runLoop);

    Uptime uptime() const { return _runLoop.uptime(); }

    /// Calls `draw` so many times a second, 1 to 60, while `client` lives and until another rate is set for
    /// it; 0 stops.
    void setRate(QObject* client, int framesPerSecond, RunLoop::Work draw = {});

private:
    struct Client {
        QPointer<QObject> object;
        int rate;
        RunLoop::Work draw;
    };

    void restart();
    void tick();

    RunLoop& _runLoop;
    std::vector<Client> _clients;
    std::unique_ptr<RunLoop::Timer> _timer;
    int _rate = 0; ///< that of the timer: the highest of the clients'
    qint64 _ticks = 0;
};
