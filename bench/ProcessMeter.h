#pragma once

#include <QtGlobal>

/// What the kernel counts for a running process.
class ProcessMeter
{
public:
    explicit ProcessMeter(qint64 processId) : _id(processId) {}

    struct Load {
        double processor;      ///< percent of one core
        double wakeUpsASecond; ///< of all threads
    };

    /// Watches for some seconds while the event loop runs.
    Load watch(double seconds) const;

    /// Resident memory in MB.
    double residentMegabytes() const;

private:
    double processorSeconds() const;
    double wakeUps() const;

    qint64 _id;
};
