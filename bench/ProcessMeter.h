#pragma once

#include <QHash>
#include <QString>

/// What the kernel counts for a running process.
class ProcessMeter
{
public:
    explicit ProcessMeter(qint64 processId) : _id(processId) {}

    struct Load {
        double processor = 0;      ///< percent of one core
        double wakeUpsASecond = 0; ///< of all threads
    };

    /// Watches for some seconds while the event loop runs. Threads that end meanwhile do not count.
    Load watch(double seconds) const;

    /// Resident memory in MB.
    double residentMegabytes() const;

    /// The part of it that is the process's own, and no page of a file, in MB.
    double ownMegabytes() const;

private:
    struct Count {
        double nanoseconds = 0;
        double wakeUps = 0;
    };
    using Counts = QHash<QString, Count>; ///< by thread

    Counts counts() const;

    qint64 _id;
};
