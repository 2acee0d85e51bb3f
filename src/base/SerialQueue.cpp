#include "base/SerialQueue.h"

namespace {
constexpr int idleMilliseconds = 5000;
}

SerialQueue::SerialQueue(const QString& label)
{
    _thread.setObjectName(label);
    _thread.setMaxThreadCount(1);
    _thread.setExpiryTimeout(idleMilliseconds);
}

void SerialQueue::async(std::function<void()> work)
{
    _thread.start(std::move(work));
}

void SerialQueue::drain()
{
    _thread.waitForDone();
}
