#include "ui/controls/FrameClock.h"

#include <QVarLengthArray>

#include <algorithm>
#include <iterator>

namespace {

constexpr int fastest = 60;

} // namespace

FrameClock::FrameClock(RunLoop& runLoop) : _runLoop(runLoop) {}

void FrameClock::setRate(QObject* client, int framesPerSecond, RunLoop::Work draw)
{
    const int rate = std::clamp(framesPerSecond, 0, fastest);
    std::erase_if(_clients,
                  [client](const Client& other) { return other.object.isNull() || other.object == client; });
    if (rate > 0) {
        _clients.push_back({client, rate, std::move(draw)});
    }
    restart();
}

/// A timer that runs at the right rate keeps its beat.
void FrameClock::restart()
{
    int rate = 0;
    for (const Client& client : _clients) {
        rate = std::max(rate, client.rate);
    }
    if (rate == _rate) {
        return;
    }
    _rate = rate;
    _ticks = 0;
    _timer = rate > 0 ? _runLoop.every(1.0 / rate, this, [this] { tick(); }) : nullptr;
}

void FrameClock::tick()
{
    const auto hasTurn = [this](const Client& client) {
        return (_ticks + 1) * client.rate / _rate != _ticks * client.rate / _rate;
    };
    QVarLengthArray<Client, 4> due; // a copy: what is called may change the rates
    std::copy_if(_clients.begin(), _clients.end(), std::back_inserter(due), hasTurn);
    ++_ticks;
    for (const Client& client : due) {
        if (client.object != nullptr) {
            client.draw();
        }
    }
    if (std::erase_if(_clients, [](const Client& client) { return client.object.isNull(); }) > 0) {
        restart();
    }
}
