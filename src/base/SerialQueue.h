#pragma once

#include <QString>
#include <QThreadPool>

#include <functional>

/// Work that runs one piece after another, in the order given, off the main thread. The thread ends by itself
/// when there has been nothing to do for a few seconds. The destructor waits for what is queued.
class SerialQueue
{
public:
    explicit SerialQueue(const QString& label);

    void async(std::function<void()> work);

    /// Blocks until everything queued so far has run.
    void drain();

private:
    QThreadPool _thread;
};
