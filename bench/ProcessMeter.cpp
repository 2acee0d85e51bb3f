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
    const double processor = processorSeconds();
    const double before = wakeUps();
    QElapsedTimer timer;
    timer.start();
    QTest::qWait(static_cast<int>(seconds * 1000));
    const double passed = static_cast<double>(timer.elapsed()) / 1000;
    return {.processor = (processorSeconds() - processor) / passed * 100,
            .wakeUpsASecond = (wakeUps() - before) / passed};
}

double ProcessMeter::residentMegabytes() const
{
    return labelled(content(QStringLiteral("/proc/%1/status").arg(_id)), "VmRSS") / 1024;
}

double ProcessMeter::processorSeconds() const
{
    // Nanoseconds on a processor, of each thread: finer than the clock ticks of "stat".
    double nanoseconds = 0;
    const QString tasks = QStringLiteral("/proc/%1/task").arg(_id);
    const auto names = QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& task : names) {
        nanoseconds +=
            content(tasks + u'/' + task + QStringLiteral("/schedstat")).split(' ').first().toDouble();
    }
    return nanoseconds / 1e9;
}

double ProcessMeter::wakeUps() const
{
    double count = 0;
    const QString tasks = QStringLiteral("/proc/%1/task").arg(_id);
    const auto names = QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& task : names) {
        count +=
            labelled(content(tasks + u'/' + task + QStringLiteral("/status")), "voluntary_ctxt_switches");
    }
    return count;
}
