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

QString SerialQueue::label() const
{
    return _thread.objectName();
}

void SerialQueue::async(std::function<void()> work)
{
    _thread.start(std::move(work));
}

void SerialQueue::drain()
{
    _thread.waitForDone();
}
