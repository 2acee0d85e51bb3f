#include "ProcessMeter.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <unistd.h>

namespace {

QByteArray content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The number behind a label of a status file, as in "VmRSS:   47540 kB".
double labelled(const QByteArray& text, const QByteArray& label)
{
    const qsizetype at = text.indexOf(QByteArray("\n" + label + ":"));
    return at < 0 ? 0 : text.mid(at + label.size() + 2).simplified().split(' ').first().toDouble();
}

} // namespace

ProcessMeter::Load ProcessMeter::watch(double seconds) const
{
    const Counts before = counts();
    QElapsedTimer timer;
    timer.start();
    QTest::qWait(static_cast<int>(seconds * 1000));
    const double passed = static_cast<double>(timer.elapsed()) / 1000;
    Load load;
    const Counts after = counts();
    for (auto thread = after.begin(); thread != after.end(); ++thread) {
        const Count earlier = before.value(thread.key());
        load.processor += (thread->nanoseconds - earlier.nanoseconds) / 1e9 / passed * 100;
        load.wakeUpsASecond += (thread->wakeUps - earlier.wakeUps) / passed;
    }
    return load;
}

double ProcessMeter::residentMegabytes() const
{
    return labelled(content(QStringLiteral("/proc/%1/status").arg(_id)), "VmRSS") / 1024;
}

double ProcessMeter::ownMegabytes() const
{
    return labelled(content(QStringLiteral("/proc/%1/status").arg(_id)), "RssAnon") / 1024;
}

/// Nanoseconds on a processor are finer than the clock ticks of "stat".
ProcessMeter::Counts ProcessMeter::counts() const
{
    Counts counts;
    const QString tasks = QStringLiteral("/proc/%1/task").arg(_id);
    const auto threads = QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& thread : threads) {
        const QString folder = tasks + u'/' + thread;
        counts.insert(
            thread,
            {.nanoseconds = content(folder + QStringLiteral("/schedstat")).split(' ').first().toDouble(),
             .wakeUps = labelled(content(folder + QStringLiteral("/status")), "voluntary_ctxt_switches")});
    }
    return counts;
}
